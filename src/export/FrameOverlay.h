// The overlay of one export: drawn when what it shows changes, blended into every frame.
#pragma once

#include "export/Compositor.h"
#include "export/PictureLayout.h"
#include "export/PlanarLayer.h"

#include <optional>

namespace pointloom {

/// Memory and the time for a frame do not depend on the number of markers or frames.
class FrameOverlay {
public:
    /// Reads the logo and the watermark from disk. `format` is the layout of the frames to come. `job` must
    /// outlive this.
    FrameOverlay(const ExportJob& job, const PictureLayout& layout, const media::FrameFormat& format);

    /// Draws the overlay with the score that holds at `time` (seconds of the source) over a frame of the
    /// layout's size, stored orientation, whose buffer is writable.
    void drawInto(const media::VideoFrame& frame, double time);

private:
    PlanarLayer makeLayer(const OverlayPart& part) const;

    PictureLayout m_layout;
    media::FrameFormat m_format;
    Compositor m_compositor;
    ScoreCursor m_score;
    std::vector<PlanarLayer> m_marks;
    std::optional<PlanarLayer> m_scoreboard;
};

}
