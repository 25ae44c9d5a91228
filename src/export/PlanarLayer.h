// A drawn image as premultiplied planes of a frame's own layout, and its blending into frames.
#pragma once

#include "media/FrameFormat.h"
#include "media/VideoFrame.h"

#include <array>
#include <cstdint>
#include <QImage>
#include <QPoint>
#include <vector>

namespace pointloom {

/// Made once for each drawing, blended into any number of frames of the same layout and size.
class PlanarLayer {
public:
    /// `image` is premultiplied ARGB; its top left pixel is at `position` of frames of `frameSize`, stored
    /// orientation. It is cut at the edges of the frame, and transparent borders are left out.
    PlanarLayer(const QImage& image, QPoint position, QSize frameSize, const media::FrameFormat& format);

    /// Draws over a frame whose buffer is writable and whose layout and size are those given above.
    void blendInto(const media::VideoFrame& frame) const;

private:
    // Each sample of the frame becomes (sample * keep + add) / 2^15.
    struct Coefficients {
        int x = 0; // position of the first sample in the plane
        int y = 0;
        int width = 0;
        int height = 0;
        std::vector<std::uint16_t> keep; // transparency, 0..2^15
        std::vector<std::uint32_t> add;  // code value times coverage times 2^15
    };

    void convertLuma(const std::vector<std::array<float, 4>>& samples, int width, int height);
    void convertChroma(const std::vector<std::array<float, 4>>& samples, int width, int height);

    media::FrameFormat m_format;
    QPoint m_corner; // of the covered rectangle in the frame, on the chroma grid
    std::array<Coefficients, 3> m_planes;
};

}
