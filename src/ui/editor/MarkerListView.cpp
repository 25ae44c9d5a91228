#include "ui/editor/MarkerListView.h"

#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/style/Theme.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScopeGuard>
#include <QStyledItemDelegate>

namespace pointloom {

namespace {

constexpr int dotSide = 5; // of the serving side's ball, points

// Rows of the list: time, game, sets and label on one line.
class MarkerRowDelegate : public QStyledItemDelegate {
public:
    MarkerRowDelegate(const UiContext& context, const MarkerListModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

private:
    struct Columns {
        QRect time;
        QRect game;
        QRect rest; // sets, then the label
    };
    Columns columnsOf(const QStyleOptionViewItem& option) const;

    UiContext m_context;
    const MarkerListModel& m_model;
};

MarkerRowDelegate::MarkerRowDelegate(const UiContext& context, const MarkerListModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_context(context)
    , m_model(model) {}

MarkerRowDelegate::Columns MarkerRowDelegate::columnsOf(const QStyleOptionViewItem& option) const {
    const double longest = m_context.state.videoDuration;
    const int timeWidth =
        QFontMetrics(quietFont(option.font)).horizontalAdvance(shortTime(std::max(longest, 600.0), true));
    const int gameWidth = QFontMetrics(strongFont(option.font)).horizontalAdvance(QStringLiteral("Ad–40"));
    QRect row = option.rect.adjusted(Space::m, 0, -Space::s, 0);
    const auto take = [&row](int width) {
        QRect column = row;
        column.setWidth(width);
        row.setLeft(column.right() + 1 + Space::s);
        return column;
    };
    Columns columns;
    columns.time = take(timeWidth);
    columns.game = take(gameWidth + 2 * (dotSide + Space::xs));
    columns.rest = row;
    return columns;
}

void MarkerRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const ColorTokens& colors = tokens();
    const Marker& marker = m_model.marker(index.row());
    const Columns columns = columnsOf(option);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? colors.line : colors.raised);
        painter->drawRoundedRect(option.rect.adjusted(1, 1, -1, -1), Radius::field, Radius::field);
    }
    const bool hasFocus = option.widget && option.widget->hasFocus();
    if (isSelected && hasFocus) {
        painter->setPen(QPen(colors.accent, 2));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(2, 2, -2, -2), Radius::field, Radius::field);
    }
    if (index.data(MarkerListModel::HoldsRole).toBool()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(colors.accent);
        const QRectF bar(option.rect.left() + 4, option.rect.top() + 8, 3, option.rect.height() - 16);
        painter->drawRoundedRect(bar, 1.5, 1.5);
    }

    const auto write = [&](const QRect& place, const QString& text, const QFont& font, const QColor& color,
                           Qt::Alignment alignment) {
        painter->setFont(font);
        painter->setPen(color);
        const QString shown = QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width());
        painter->drawText(place, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
        return QFontMetrics(font).horizontalAdvance(shown);
    };
    write(columns.time, shortTime(marker.startTime, true), quietFont(option.font), colors.quietText,
          Qt::AlignRight);

    const QFont gameFont = strongFont(option.font);
    const QString game = gameText(marker.score);
    const int gameWidth = write(columns.game, game, gameFont, colors.text, Qt::AlignHCenter);
    const double middle = columns.game.center().x();
    const double fromMiddle = gameWidth / 2.0 + Space::xs;
    const double dotLeft =
        servingSide(marker.score) == Side::second ? middle + fromMiddle : middle - fromMiddle - dotSide;
    painter->setPen(Qt::NoPen);
    painter->setBrush(colors.accent);
    painter->drawEllipse(QRectF(dotLeft, option.rect.center().y() - dotSide / 2.0 + 1, dotSide, dotSide));

    QRect rest = columns.rest;
    if (const QString sets = setsText(marker.score); !sets.isEmpty())
        rest.setLeft(rest.left() + write(rest, sets, quietFont(option.font), colors.text, Qt::AlignLeft) +
                     Space::m);
    if (marker.label && rest.width() > Space::xl)
        write(rest, *marker.label, quietFont(option.font), colors.quietText, Qt::AlignLeft);
    painter->restore();
}

QSize MarkerRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {0, option.fontMetrics.height() + 2 * Space::s};
}

QWidget* MarkerRowDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                         const QModelIndex&) const {
    auto* editor = new QLineEdit(parent);
    editor->setAccessibleName(m_context.text(L10nKey::markerLabel));
    editor->setPlaceholderText(m_context.text(L10nKey::editorLabelHint));
    constexpr int longestLabel = 200;
    editor->setMaxLength(longestLabel);
    return editor;
}

void MarkerRowDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                             const QModelIndex&) const {
    QRect place = option.rect;
    place.setLeft(columnsOf(option).game.left());
    editor->setGeometry(place);
}

}

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

// Qt then moves the current row by itself, until `showSelection` restores the session's selection.
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

// A hint while the list is empty.
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
