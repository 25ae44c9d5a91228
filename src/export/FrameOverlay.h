// The overlay of one export: drawn when what it shows changes, blended into every frame.
#pragma once

#include "export/Compositor.h"
#include "export/PictureLayout.h"
#include "export/PlanarLayer.h"

#include <functional>
#include <optional>

namespace pointloom {

/// Memory and the time for a frame do not depend on the number of markers or frames.
class FrameOverlay {
public:
    /// Reads the logo and the watermark from disk. `format` is the layout of the frames to come.
    FrameOverlay(const OverlayDescription& overlay, const PictureLayout& layout,
                 const media::FrameFormat& format);

    /// Draws the overlay with the score that holds at `time` (seconds of the source) over a frame of the
    /// layout's size, stored orientation, whose buffer is writable.
    void drawInto(const media::VideoFrame& frame, double time);

private:
    using Draw = std::function<void(QPainter&)>;
    PlanarLayer makeLayer(QRectF canvasRectangle, const Draw& draw) const;
    void showScore(const SportScoreState& score);

    const OverlayDescription& m_overlay;
    PictureLayout m_layout;
    media::FrameFormat m_format;
    Compositor::Canvas m_canvas;
    Compositor::Pictures m_pictures;
    std::vector<PlanarLayer> m_marks; // the watermark and the licence mark never change
    std::optional<PlanarLayer> m_scoreboard;
    const SportScoreState* m_shownScore = nullptr; // inside of m_overlay
};

}
