#include "ui/editor/MarkerListView.h"

#include "ui/editor/MarkerRowDelegate.h"
#include "ui/style/TextFonts.h"
#include "ui/style/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScopeGuard>

namespace pointloom {

MarkerListView::MarkerListView(const UiContext& context, QWidget* parent)
    : QListView(parent)
    , m_context(context)
    , m_model(context) {
    setModel(&m_model);
    setItemDelegate(new MarkerRowDelegate(context, m_model, this));
    setUniformItemSizes(true);
    setMouseTracking(true); // for the row under the pointer
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(DoubleClicked);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(this, &QListView::clicked, this, &MarkerListView::jumpTo);
    connect(&Theme::shared(), &Theme::changed, viewport(), qOverload<>(&QWidget::update));
    AppState& state = m_context.state;
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, &MarkerListView::showSelection,
            Qt::QueuedConnection);
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, &MarkerListView::showSelection,
            Qt::QueuedConnection);
    m_bindings.watch(state.selectedMarkerID, [this] { showSelection(); });
    m_bindings.watch(state.language, [this] {
        setAccessibleName(m_context.text(L10nKey::markers));
        viewport()->update();
    });
}

void MarkerListView::jumpTo(const QModelIndex& index) {
    if (!index.isValid())
        return;
    const Marker& marker = m_model.marker(index.row());
    const double time = marker.startTime;
    m_context.state.selectedCutID = std::nullopt;
    m_context.state.selectedMarkerID = marker.id;
    Q_EMIT seekRequested(time);
}

void MarkerListView::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && state() != EditingState)
        jumpTo(currentIndex());
    else if (currentIndex().isValid() &&
             m_context.keys.of(Command::renameMarker).contains(event->keyCombination()))
        edit(currentIndex());
    else
        QListView::keyPressEvent(event);
}

// The list then moves its own selection, which nobody asked for, until `showSelection` puts it right.
void MarkerListView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    m_isFollowing = true;
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

void MarkerListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (!m_isFollowing && current.isValid() && hasFocus())
        jumpTo(current);
}

void MarkerListView::showSelection() {
    m_isFollowing = true;
    const auto done = qScopeGuard([this] { m_isFollowing = false; });
    const int row = m_model.rowOf(m_context.state.selectedMarkerID);
    if (row < 0) {
        selectionModel()->clear();
        return;
    }
    const QModelIndex index = m_model.index(row);
    if (index == currentIndex() && selectionModel()->isSelected(index))
        return;
    setCurrentIndex(index);
    scrollTo(index);
}

// What to do while there is nothing to show.
void MarkerListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (m_model.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(quietFont(font()));
    painter.setPen(tokens().quietText);
    painter.drawText(viewport()->rect().adjusted(Space::l, 0, -Space::l, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, m_context.text(L10nKey::noMarkers));
}

}
