// The overlay of one export: drawn when what it shows changes, blended into every frame.
#pragma once

#include "export/Compositor.h"
#include "export/PictureLayout.h"
#include "export/PlanarLayer.h"

#include <optional>
#include <QByteArray>

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

    /// A digest of the pixels and the places of the marks, and of the scoreboard with that score.
    QByteArray marksDigest() const;
    QByteArray scoreboardDigest(const SportScoreState& score) const;

private:
    struct PlacedImage {
        QImage image; // null when nothing is seen
        QPoint position;
    };

    static PlacedImage turnToStored(const PlacedImage& upright, QSize uprightSize,
                                    const media::Orientation& orientation);
    static QByteArray digestOf(const PlacedImage& placed);
    PlacedImage draw(const OverlayPart& part) const;
    PlanarLayer makeLayer(const OverlayPart& part) const;

    PictureLayout m_layout;
    media::FrameFormat m_format;
    Compositor m_compositor;
    ScoreCursor m_score;
    std::vector<PlanarLayer> m_marks;
    std::optional<PlanarLayer> m_scoreboard;
};

}
