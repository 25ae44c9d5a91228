// Draws the overlay of a frame: the watermark in its corner, the licence mark, the scoreboard.
#pragma once

#include "export/ExportJob.h"

#include <functional>
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <vector>

class QPainter;

namespace pointloom {

/// One part of an overlay. Units are the pixels of the canvas: the frame as it is shown, upright, y growing
/// downward.
struct OverlayPart {
    QRectF rectangle; // all that `draw` can touch; may reach beyond the canvas
    std::function<void(QPainter&)> draw;
};

/// `image` must not be null.
OverlayPart watermarkPart(const QImage& image, WatermarkCorner corner, QSizeF canvas);

/// The mark of a copy without a licence.
OverlayPart licenceMarkPart(QSizeF canvas);

/// The canvas, and the size that gives templates their unit.
struct Canvas {
    QSizeF size;            // the frame as it is shown, pixels
    QSizeF nativeVideoSize; // what is seen of the source, in its own pixels
    bool isFilled = false;  // by a part of the source's picture: the scoreboard is kept inside
};

class Compositor {
public:
    /// Reads the logo and the watermark from disk; without one that cannot be read. `job` must outlive this.
    Compositor(const ExportJob& job, const Canvas& canvas);

    /// The watermark and the licence mark, which never change.
    const std::vector<OverlayPart>& marks() const { return m_marks; }

    /// The part and `score` must not outlive the compositor and the call.
    OverlayPart scoreboard(const SportScoreState& score) const;

    /// Draws the whole overlay of a frame with that score. The reference for every faster way of drawing it.
    void draw(QPainter& painter, const SportScoreState& score) const;

private:
    double scale() const;

    const OverlayDescription& m_overlay;
    Canvas m_canvas;
    double m_scale; // of templates: the same for all scores
    QImage m_logo;
    std::vector<OverlayPart> m_marks;
};

/// Follows the score from frame to frame.
class ScoreCursor {
public:
    /// `overlay` must outlive the cursor.
    explicit ScoreCursor(const OverlayDescription& overlay)
        : m_overlay(overlay) {}

    /// The score that holds at `time` (seconds of the source) when it differs from that of the last call;
    /// else null.
    const SportScoreState* changedAt(double time);

private:
    const OverlayDescription& m_overlay;
    const SportScoreState* m_shown = nullptr; // inside of m_overlay
};

}
