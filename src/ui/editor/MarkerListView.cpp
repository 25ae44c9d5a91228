#include "ui/editor/MarkerListView.h"

#include "session/PointEdits.h"
#include "ui/common/CommandMenu.h"
#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/editor/EditorCommands.h"
#include "ui/style/Icons.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <cmath>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QResizeEvent>
#include <QScopeGuard>
#include <QStyledItemDelegate>

namespace pointloom {

namespace {

constexpr int dotSide = 5;     // of the serving side's ball, points
constexpr int pencilSide = 14; // of the sign of what was entered by hand

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
        QRect firstDot;
        QRect first;
        QRect dash;
        QRect second;
        QRect secondDot;
        std::vector<QRect> sets;
        QRect label;
    };
    struct Widths {
        int side = 0; // of one side's points
        std::vector<int> sets;
    };
    Columns columnsOf(const QStyleOptionViewItem& option) const;
    const Widths& widths(const QFont& font) const;

    UiContext m_context;
    const MarkerListModel& m_model;
    mutable std::optional<Widths> m_widths; // of the widest texts of all rows, until a marker changes
    mutable QFont m_measured;
};

// Figures of equal width keep their columns.
QFont timeFont(const QFont& font) {
    QFont result = quietFont(font);
    result.setKerning(false);
    return result;
}

QFont gameFont(const QFont& font) {
    QFont result = strongFont(font);
    result.setKerning(false);
    return result;
}

// Rounded up: a text that is wider by a fraction of a point would be cut.
int textWidth(const QFont& font, const QString& text) {
    return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}

MarkerRowDelegate::MarkerRowDelegate(const UiContext& context, const MarkerListModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_context(context)
    , m_model(model) {
    connect(&model, &QAbstractItemModel::rowsInserted, this, [this] { m_widths.reset(); });
    connect(&model, &QAbstractItemModel::rowsRemoved, this, [this] { m_widths.reset(); });
    connect(&model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                if (roles.isEmpty())
                    m_widths.reset();
            });
}

const MarkerRowDelegate::Widths& MarkerRowDelegate::widths(const QFont& font) const {
    if (m_widths && m_measured == font)
        return *m_widths;
    m_measured = font;
    const QFont game = gameFont(font);
    const QFont set = timeFont(font);
    Widths widest;
    widest.side = std::max(textWidth(game, QStringLiteral("40")), textWidth(game, QStringLiteral("Ad")));
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const SportScoreState& score = m_model.marker(row).score;
        const auto [first, second] = gameTexts(score);
        widest.side = std::max({widest.side, textWidth(game, first), textWidth(game, second)});
        const QStringList sets = setTexts(score);
        widest.sets.resize(std::max<std::size_t>(widest.sets.size(), static_cast<std::size_t>(sets.size())));
        for (qsizetype i = 0; i < sets.size(); ++i) {
            int& width = widest.sets[static_cast<std::size_t>(i)];
            width = std::max(width, textWidth(set, sets[i]));
        }
    }
    return m_widths.emplace(widest);
}

MarkerRowDelegate::Columns MarkerRowDelegate::columnsOf(const QStyleOptionViewItem& option) const {
    const double longest = m_context.state.videoDuration;
    const int timeWidth = textWidth(timeFont(option.font), shortTime(std::max(longest, 600.0), true));
    const int dashWidth = textWidth(gameFont(option.font), QStringLiteral("–"));
    const Widths& widest = widths(option.font);
    QRect row = option.rect.adjusted(Space::m, 0, -Space::s, 0);
    const auto take = [&row](int width, int gap) {
        QRect column = row;
        column.setWidth(width);
        row.setLeft(column.right() + 1 + gap);
        return column;
    };
    Columns columns;
    columns.time = take(timeWidth, Space::s);
    columns.firstDot = take(dotSide, Space::xs);
    columns.first = take(widest.side, 0);
    columns.dash = take(dashWidth, 0);
    columns.second = take(widest.side, Space::xs);
    columns.secondDot = take(dotSide, Space::s);
    for (const int width : widest.sets)
        columns.sets.push_back(take(width, Space::s));
    columns.label = row;
    return columns;
}

// A dashed line before the row and a pencil at its end: the count begins anew with it.
void paintBreak(QPainter& painter, const QStyleOptionViewItem& option) {
    const QRectF row = QRectF(option.rect).adjusted(Space::m, 0, -Space::s, 0);
    painter.setPen(QPen(tokens().quietText, 1, Qt::DashLine));
    painter.drawLine(row.topLeft() + QPointF(0, 0.5), row.topRight() + QPointF(0, 0.5));
    const double ratio = option.widget ? option.widget->devicePixelRatioF() : 1;
    painter.drawPixmap(QPointF(row.right() - pencilSide, row.center().y() - pencilSide / 2.0),
                       Icons::pixmap(QStringLiteral("edit"), pencilSide, tokens().quietText, ratio));
}

void MarkerRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const ColorTokens& colors = tokens();
    const Marker& marker = m_model.marker(index.row());
    const bool isBreak = index.data(MarkerListModel::BreaksRole).toBool();
    QStyleOptionViewItem content = option;
    if (isBreak)
        content.rect.setRight(content.rect.right() - pencilSide - Space::xs);
    const Columns columns = columnsOf(content);
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

    if (isBreak)
        paintBreak(*painter, option);

    const auto write = [&](const QRect& place, const QString& text, const QFont& font, const QColor& color,
                           Qt::Alignment alignment) {
        painter->setFont(font);
        painter->setPen(color);
        const QString shown = QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width());
        painter->drawText(place, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
    };
    write(columns.time, shortTime(marker.startTime, true), timeFont(option.font), colors.quietText,
          Qt::AlignRight);
    const auto [first, second] = gameTexts(marker.score);
    write(columns.first, first, gameFont(option.font), colors.text, Qt::AlignRight);
    write(columns.dash, QStringLiteral("–"), gameFont(option.font), colors.text, Qt::AlignHCenter);
    write(columns.second, second, gameFont(option.font), colors.text, Qt::AlignLeft);
    const QStringList sets = setTexts(marker.score);
    for (qsizetype i = 0; i < sets.size(); ++i)
        write(columns.sets[static_cast<std::size_t>(i)], sets[i], timeFont(option.font), colors.text,
              Qt::AlignLeft);
    // Where the sets leave little of the row, a label follows those of its own marker.
    constexpr int roomForLabel = 70; // points
    QRect label = columns.label;
    if (label.width() < roomForLabel && !columns.sets.empty())
        label.setLeft(sets.isEmpty()
                          ? columns.sets.front().left()
                          : columns.sets[static_cast<std::size_t>(sets.size() - 1)].right() + Space::s);
    if (marker.label && label.width() > Space::xl)
        write(label, *marker.label, quietFont(option.font), colors.quietText, Qt::AlignLeft);

    const QRect& dot = servingSide(marker.score) == Side::second ? columns.secondDot : columns.firstDot;
    painter->setPen(Qt::NoPen);
    painter->setBrush(colors.accent);
    painter->drawEllipse(QRectF(dot.left(), option.rect.center().y() - dotSide / 2.0 + 1, dotSide, dotSide));
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
    place.setLeft(columnsOf(option).firstDot.left());
    editor->setGeometry(place);
}

QString pointKeysHint(const UiContext& context) {
    const auto key = [&](Command command) {
        return keyOrName(command, context.keys, context.state.language);
    };
    const QString first = format(context.text(L10nKey::editorPointKeys), key(Command::pointFirst),
                                 sideName(context, Side::first));
    return format(first, key(Command::pointSecond), sideName(context, Side::second));
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
    // Names and keys in the hint, and the width of the longest time.
    m_bindings.watchAll([this] { viewport()->update(); }, state.matchConfig, state.videoDuration,
                        m_context.keys.chosen());
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
    else
        QListView::keyPressEvent(event);
}

void MarkerListView::renameSelected() {
    if (const int row = m_model.rowOf(m_context.state.selectedMarkerID); row >= 0)
        edit(m_model.index(row));
}

void MarkerListView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    auto* menu = new CommandMenu(m_context, this);
    if (index.isValid()) {
        const QUuid id = m_model.marker(index.row()).id;
        if (m_context.state.selectedMarkerID.value() != id)
            jumpTo(index);
        menu->add(Command::renameMarker, [this] { renameSelected(); });
        menu->add(Command::swapServe, [this] { EditorCommands::swapServeOfSelectedMarker(m_context); });
        menu->addSeparator();
        menu->add(Command::deleteSelection,
                  [this, id] { PointEdits::removeMarker(m_context.state, id, &m_context.undo); });
    } else {
        menu->add(Command::addMarker, [this] { Q_EMIT addMarkerRequested(); });
    }
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
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

// The selected row stays in sight when a message above the list takes a part of it.
void MarkerListView::resizeEvent(QResizeEvent* event) {
    const bool wasSeen = QRect(QPoint(), event->oldSize()).intersects(visualRect(currentIndex()));
    QListView::resizeEvent(event);
    if (wasSeen)
        scrollTo(currentIndex());
}

// A hint while the list is empty.
void MarkerListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (m_model.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(quietFont(font()));
    painter.setPen(tokens().quietText);
    painter.drawText(
        viewport()->rect().adjusted(Space::l, 0, -Space::l, 0), Qt::AlignCenter | Qt::TextWordWrap,
        withKeysInUse(m_context.text(L10nKey::noMarkers), m_context.keys, m_context.state.language) +
            QStringLiteral("\n\n") + pointKeysHint(m_context));
}

}
