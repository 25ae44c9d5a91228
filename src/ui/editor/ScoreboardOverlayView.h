// The scoreboard over the picture: dragged, resized and nudged into place.
#pragma once

#include "session/AppState.h"
#include "ui/common/LiveScoreboard.h"
#include "ui/common/UiContext.h"
#include "ui/editor/ScoreboardPainter.h"
#include "ui/style/Bindings.h"

#include <QWidget>

namespace pointloom {

/// Covers the whole preview area. A move in progress is known here alone and becomes an edit of the session
/// when it ends; a resize and a held arrow key change the session at once and become one edit when they end.
class ScoreboardOverlayView : public QWidget {
    Q_OBJECT

public:
    explicit ScoreboardOverlayView(const UiContext& context, QWidget* parent = nullptr);

    /// The area of the picture, in points of this widget.
    void setVideoRect(const QRectF& videoRect);
    const QRectF& videoRect() const { return m_videoRect; }

    QSizeF dragOffset() const { return m_dragOffset; }
    bool isHovering() const { return m_isHovering; }
    bool isResizing() const { return m_isResizing; }

    /// Preview points per pixel of the video.
    double previewScale() const;
    /// The centre of the scoreboard as it is shown.
    QPointF displayPosition() const;
    /// The scoreboard as it is shown, its canvas's margin left out; empty when there is no scoreboard.
    QRectF scoreboardRect() const;
    QRectF handleRect() const;

    void resetPosition();
    void resetSize();

Q_SIGNALS:
    /// A press on the picture beside the scoreboard.
    void picturePressed();
    void editNamesRequested();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Grip { none, scoreboard, handle };

    void place(const ScoreboardPlace& standard, L10nKey name);
    Grip gripAt(QPointF point) const;
    void showGrip(QPointF point);
    void refreshScoreboard();
    void updateDrawOrigin();

    void moveDrag(QPointF point, bool snaps);
    void endMoveDrag();
    void resizeDrag(QPointF point);
    void endResizeDrag();
    void abandonDrag();

    bool isOurKey(const QKeyEvent& event) const;
    void nudge(QSizeF points, double scaleFactor);
    void concludeNudging();

    double displayScale() const;
    QRectF outlineRect() const;
    void paintAdornments(QPainter& painter) const;

    UiContext m_context;
    ScoreboardPainter m_painter;
    LiveScoreboard m_scoreboard;
    QRectF m_videoRect;

    QSizeF m_dragOffset{0, 0}; // preview points
    bool m_isHovering = false;
    bool m_isResizing = false;
    double m_resizeStartScale = 1;

    Grip m_grip = Grip::none;
    bool m_isDragging = false; // the pointer has gone far enough to mean it
    QPointF m_pressedAt;
    std::optional<double> m_verticalGuide; // points
    std::optional<double> m_horizontalGuide;
    std::optional<ScoreboardPlace> m_nudgedFrom; // while a key is held
    Bindings m_bindings;
};

}
