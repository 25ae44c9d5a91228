#include "ui/editor/ScoreboardOverlayView.h"

#include "render/OverlayPlacement.h"
#include "render/ScoreboardTemplate.h"
#include "ui/common/CommandMenu.h"
#include "ui/style/Theme.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

namespace pointloom {

namespace {

constexpr double outlineDistance = 5; // points between the scoreboard and its outline
constexpr double handleSide = 12;
constexpr QSizeF noOffset(0, 0);  // a size left to itself is (-1, -1)
constexpr double handleReach = 6; // around the handle that still counts as the handle

constexpr L10nKey moveName = L10nKey::undoMoveScoreboard;
constexpr L10nKey resizeName = L10nKey::undoResizeScoreboard;

QSizeF asSize(QPointF point) {
    return {point.x(), point.y()};
}

QAccessibleInterface* makePictureInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<ScoreboardOverlayView*>(object);
    return view ? new QAccessibleWidget(view, QAccessible::Graphic) : nullptr;
}

constexpr double edgeMargin = 0.04; // kept from the edges of the picture, of its shorter side
constexpr double snapReach = 7;     // points

struct Axis {
    double low; // of the picture
    double high;
    double margin;
};

struct AxisSnap {
    double shift = 0;
    std::optional<double> guide;
};

// `from` and `to` are the ends of the dragged scoreboard on this axis.
AxisSnap snapAxis(const Axis& axis, double from, double to) {
    struct Candidate {
        double place; // of the scoreboard
        double line;  // of the picture
    };
    const std::array<Candidate, 3> candidates = {{
        {(from + to) / 2, (axis.low + axis.high) / 2},
        {from, axis.low + axis.margin},
        {to, axis.high - axis.margin},
    }};
    const auto distance = [](const Candidate& candidate) {
        return std::abs(candidate.line - candidate.place);
    };
    const auto& nearest = *std::ranges::min_element(candidates, {}, distance);
    if (distance(nearest) > snapReach)
        return {};
    return {nearest.line - nearest.place, nearest.line};
}

struct Snap {
    QSizeF translation;
    std::optional<double> verticalGuide;   // x of a line to show, points
    std::optional<double> horizontalGuide; // y
};

// The drag by `translation` of `scoreboard`, its place without the drag, moved to the picture's centre lines
// or the margin at its edges where they are within reach, on each axis alone.
Snap snapped(const QRectF& videoRect, const QRectF& scoreboard, QSizeF translation) {
    const QRectF dragged = scoreboard.translated(translation.width(), translation.height());
    const double margin = edgeMargin * std::min(videoRect.width(), videoRect.height());
    const AxisSnap x =
        snapAxis({videoRect.left(), videoRect.right(), margin}, dragged.left(), dragged.right());
    const AxisSnap y =
        snapAxis({videoRect.top(), videoRect.bottom(), margin}, dragged.top(), dragged.bottom());
    return {translation + QSizeF(x.shift, y.shift), x.guide, y.guide};
}

}

ScoreboardOverlayView::ScoreboardOverlayView(const UiContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_scoreboard(context.state) {
    QAccessible::installFactory(makePictureInterface); // once is enough, again does nothing
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus); // a press takes it only when it meets the scoreboard
    AppState& state = m_context.state;
    connect(&m_scoreboard, &LiveScoreboard::changed, this, &ScoreboardOverlayView::refreshScoreboard);
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
    refreshScoreboard();
    m_bindings.watchAll(
        [this] {
            updateDrawOrigin();
            update();
        },
        state.scoreboardPosition, state.scoreboardUserScale, state.videoWidth);
    m_bindings.watch(state.language, [this] {
        setAccessibleName(m_context.text(L10nKey::editorScoreboard));
        setAccessibleDescription(m_context.text(L10nKey::editorScoreboardHint));
    });
}

void ScoreboardOverlayView::setVideoRect(const QRectF& videoRect) {
    m_videoRect = videoRect;
    updateDrawOrigin();
    update();
}

void ScoreboardOverlayView::refreshScoreboard() {
    m_painter.setScoreboard(m_scoreboard.scoreboard());
    updateDrawOrigin();
    update();
}

void ScoreboardOverlayView::updateDrawOrigin() {
    if (m_painter.isEmpty() || m_videoRect.isEmpty())
        return;
    AppState& state = m_context.state;
    state.scoreboardDrawOrigin = OverlayPlacement::drawOrigin(m_videoRect, state.scoreboardPosition,
                                                              m_painter.canvasSize(), displayScale());
}

double ScoreboardOverlayView::previewScale() const {
    return OverlayPlacement::previewScale(m_videoRect, m_context.state.videoWidth);
}

double ScoreboardOverlayView::displayScale() const {
    return previewScale() * m_context.state.scoreboardUserScale;
}

QPointF ScoreboardOverlayView::displayPosition() const {
    return OverlayPlacement::displayPosition(m_videoRect, m_context.state.scoreboardPosition, m_dragOffset);
}

QRectF ScoreboardOverlayView::scoreboardRect() const {
    if (m_painter.isEmpty() || m_videoRect.isEmpty())
        return {};
    const double scale = displayScale();
    const QSizeF fromCentre = (QSizeF(canvasMargin, canvasMargin) - m_painter.canvasSize() / 2) * scale;
    const QPointF origin = displayPosition() + QPointF(fromCentre.width(), fromCentre.height());
    return {origin, m_painter.boardSize() * scale};
}

QRectF ScoreboardOverlayView::outlineRect() const {
    return scoreboardRect().adjusted(-outlineDistance, -outlineDistance, outlineDistance, outlineDistance);
}

QRectF ScoreboardOverlayView::handleRect() const {
    if (m_painter.isEmpty())
        return {};
    QRectF handle(0, 0, handleSide, handleSide);
    handle.moveCenter(outlineRect().bottomRight());
    // Inside the widget wherever the scoreboard is.
    handle.moveRight(std::min(handle.right(), static_cast<double>(width())));
    handle.moveBottom(std::min(handle.bottom(), static_cast<double>(height())));
    return handle;
}

ScoreboardOverlayView::Grip ScoreboardOverlayView::gripAt(QPointF point) const {
    if (m_painter.isEmpty())
        return Grip::none;
    if (handleRect().adjusted(-handleReach, -handleReach, handleReach, handleReach).contains(point))
        return Grip::handle;
    return outlineRect().contains(point) ? Grip::scoreboard : Grip::none;
}

void ScoreboardOverlayView::showGrip(QPointF point) {
    const Grip grip = gripAt(point);
    if (grip == Grip::none)
        unsetCursor();
    else
        setCursor(grip == Grip::handle ? Qt::SizeFDiagCursor : Qt::OpenHandCursor);
    const bool wasHovering = std::exchange(m_isHovering, grip != Grip::none);
    if (m_isHovering != wasHovering)
        update();
}

void ScoreboardOverlayView::mousePressEvent(QMouseEvent* event) {
    const Grip grip = event->button() == Qt::LeftButton ? gripAt(event->position()) : Grip::none;
    if (grip == Grip::none) {
        if (m_grip == Grip::none)
            Q_EMIT picturePressed();
        return;
    }
    m_grip = grip;
    m_pressedAt = event->position();
    m_isDragging = false;
    setFocus(Qt::MouseFocusReason);
    if (grip == Grip::scoreboard)
        setCursor(Qt::ClosedHandCursor);
}

void ScoreboardOverlayView::mouseMoveEvent(QMouseEvent* event) {
    constexpr double jitter = 3; // points that a press may move without meaning it
    if (m_grip == Grip::none) {
        showGrip(event->position());
        return;
    }
    m_isDragging = m_isDragging || (event->position() - m_pressedAt).manhattanLength() >= jitter;
    if (!m_isDragging)
        return;
    if (m_grip == Grip::scoreboard)
        moveDrag(event->position(), event->modifiers().testFlag(Qt::ShiftModifier));
    else
        resizeDrag(event->position());
}

void ScoreboardOverlayView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const Grip grip = std::exchange(m_grip, Grip::none);
    if (std::exchange(m_isDragging, false)) {
        if (grip == Grip::scoreboard)
            endMoveDrag();
        else
            endResizeDrag();
    }
    showGrip(event->position());
}

void ScoreboardOverlayView::moveDrag(QPointF point, bool snaps) {
    m_dragOffset = noOffset;
    const QRectF scoreboard = scoreboardRect();
    Snap snap{asSize(point - m_pressedAt), {}, {}};
    if (snaps)
        snap = snapped(m_videoRect, scoreboard, snap.translation);
    m_dragOffset = snap.translation;
    m_verticalGuide = snap.verticalGuide;
    m_horizontalGuide = snap.horizontalGuide;
    update();
}

void ScoreboardOverlayView::endMoveDrag() {
    AppState& state = m_context.state;
    const QPointF position = OverlayPlacement::movedPosition(
        state.scoreboardPosition, std::exchange(m_dragOffset, noOffset), m_videoRect);
    m_verticalGuide.reset();
    m_horizontalGuide.reset();
    state.placeScoreboard({position, state.scoreboardUserScale}, moveName, &m_context.undo);
    update();
}

void ScoreboardOverlayView::resizeDrag(QPointF point) {
    AppState& state = m_context.state;
    if (!std::exchange(m_isResizing, true))
        m_resizeStartScale = state.scoreboardUserScale;
    state.scoreboardUserScale = OverlayPlacement::resizedScale(
        m_resizeStartScale, asSize(point - m_pressedAt), previewScale() * m_painter.canvasSize().width());
}

void ScoreboardOverlayView::endResizeDrag() {
    if (!std::exchange(m_isResizing, false))
        return;
    AppState& state = m_context.state;
    state.concludePlacing({state.scoreboardPosition, m_resizeStartScale}, resizeName, &m_context.undo);
    update();
}

void ScoreboardOverlayView::abandonDrag() {
    m_grip = Grip::none;
    m_isDragging = false;
    m_dragOffset = noOffset;
    m_verticalGuide.reset();
    m_horizontalGuide.reset();
    if (std::exchange(m_isResizing, false))
        m_context.state.scoreboardUserScale = m_resizeStartScale;
    update();
}

void ScoreboardOverlayView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    if (m_painter.isEmpty() || (!isByKey && gripAt(event->pos()) == Grip::none))
        return;
    auto* menu = new CommandMenu(m_context, this);
    menu->add(Command::editNames, [this] { Q_EMIT editNamesRequested(); });
    menu->addSeparator();
    const ScoreboardPlace place = m_context.state.scoreboardPlace();
    menu->add(Command::resetScoreboardPlace, [this] { resetPosition(); })
        ->setEnabled(place.position != AppState::defaultScoreboardPosition);
    menu->add(Command::resetScoreboardSize, [this] { resetSize(); })->setEnabled(place.userScale != 1);
    menu->popup(isByKey ? mapToGlobal(scoreboardRect().center().toPoint()) : event->globalPos());
}

void ScoreboardOverlayView::resetPosition() {
    place({AppState::defaultScoreboardPosition, m_context.state.scoreboardPlace().userScale}, moveName);
}

void ScoreboardOverlayView::resetSize() {
    place({m_context.state.scoreboardPlace().position, 1}, resizeName);
}

void ScoreboardOverlayView::place(const ScoreboardPlace& standard, L10nKey name) {
    if (standard != m_context.state.scoreboardPlace())
        m_context.state.placeScoreboard(standard, name, &m_context.undo);
}

void ScoreboardOverlayView::leaveEvent(QEvent*) {
    if (m_grip == Grip::none && std::exchange(m_isHovering, false))
        update();
}

bool ScoreboardOverlayView::isOurKey(const QKeyEvent& event) const {
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return !m_painter.isEmpty();
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

bool ScoreboardOverlayView::event(QEvent* event) {
    // Accepted keys are left to this widget by the editor.
    if (event->type() == QEvent::ShortcutOverride && isOurKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ScoreboardOverlayView::keyPressEvent(QKeyEvent* event) {
    constexpr double resizeFactor = 1.05;
    const bool resizes = event->modifiers().testFlag(Qt::ControlModifier);
    const double distance = event->modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1; // points
    if (!isOurKey(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Escape:
        if (m_grip != Grip::none)
            abandonDrag();
        else
            clearFocus();
        return;
    case Qt::Key_Left:
        nudge({resizes ? 0 : -distance, 0}, resizes ? 1 / resizeFactor : 1);
        return;
    case Qt::Key_Right:
        nudge({resizes ? 0 : distance, 0}, resizes ? resizeFactor : 1);
        return;
    case Qt::Key_Up:
        nudge({0, resizes ? 0 : -distance}, resizes ? resizeFactor : 1);
        return;
    default:
        nudge({0, resizes ? 0 : distance}, resizes ? 1 / resizeFactor : 1);
    }
}

// The scoreboard moves at once while a key is held; all of it is one step of undo.
void ScoreboardOverlayView::nudge(QSizeF points, double scaleFactor) {
    AppState& state = m_context.state;
    if (!m_nudgedFrom)
        m_nudgedFrom = state.scoreboardPlace();
    if (!points.isNull())
        state.scoreboardPosition =
            OverlayPlacement::movedPosition(state.scoreboardPosition, points, m_videoRect);
    if (scaleFactor != 1) // otherwise a scale that a document brought stays, even outside of the limits
        state.scoreboardUserScale =
            std::clamp(state.scoreboardUserScale * scaleFactor, OverlayPlacement::smallestScale,
                       OverlayPlacement::largestScale);
}

void ScoreboardOverlayView::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat())
        concludeNudging();
    QWidget::keyReleaseEvent(event);
}

void ScoreboardOverlayView::concludeNudging() {
    const auto from = std::exchange(m_nudgedFrom, std::nullopt);
    if (!from)
        return;
    const bool isMove = from->position != m_context.state.scoreboardPosition.value();
    m_context.state.concludePlacing(*from, isMove ? moveName : resizeName, &m_context.undo);
}

void ScoreboardOverlayView::focusInEvent(QFocusEvent*) {
    update();
}

void ScoreboardOverlayView::focusOutEvent(QFocusEvent*) {
    concludeNudging();
    update();
}

void ScoreboardOverlayView::paintEvent(QPaintEvent*) {
    const QRectF scoreboard = scoreboardRect();
    if (scoreboard.isEmpty())
        return;
    QPainter painter(this);
    m_painter.paint(painter, m_videoRect, scoreboard.topLeft(), displayScale());
    paintAdornments(painter);
}

void ScoreboardOverlayView::paintAdornments(QPainter& painter) const {
    const ColorTokens& colors = tokens();
    painter.setRenderHint(QPainter::Antialiasing);
    const auto guide = [&](const QLineF& line) {
        painter.setPen(QPen(colors.accent, 1));
        painter.drawLine(line);
    };
    if (m_verticalGuide)
        guide({*m_verticalGuide, m_videoRect.top(), *m_verticalGuide, m_videoRect.bottom()});
    if (m_horizontalGuide)
        guide({m_videoRect.left(), *m_horizontalGuide, m_videoRect.right(), *m_horizontalGuide});

    const bool isBusy = m_isDragging || m_isResizing;
    if (!m_isHovering && !isBusy && !hasFocus())
        return;
    // A dark line under the bright one is visible on any picture.
    QColor ground = darkTokens.window;
    ground.setAlphaF(0.55F);
    QColor line = hasFocus() || isBusy ? darkTokens.accent : darkTokens.text;
    const QRectF outline = outlineRect();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ground, 3.5));
    painter.drawRoundedRect(outline, Radius::field, Radius::field);
    painter.setPen(QPen(line, 1.5));
    painter.drawRoundedRect(outline, Radius::field, Radius::field);
    painter.setPen(QPen(darkTokens.window, 1.5));
    painter.setBrush(line);
    painter.drawRoundedRect(handleRect().adjusted(1, 1, -1, -1), 3, 3);
}

}
