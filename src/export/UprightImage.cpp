#include "export/UprightImage.h"

#include <QTransform>

namespace pointloom {

QImage uprightImage(const media::RgbaImage& stored, media::Orientation orientation) {
    const auto bytesPerRow = static_cast<qsizetype>(stored.width) * 4;
    const QImage borrowed(stored.pixels.data(), stored.width, stored.height, bytesPerRow,
                          QImage::Format_RGBX8888);
    return borrowed.mirrored(orientation.mirrored, false)
        .transformed(QTransform().rotate(90.0 * orientation.quarterTurns))
        .convertToFormat(QImage::Format_RGB32); // pixels of its own
}

QImage uprightImage(const media::VideoFrame& frame, media::Orientation orientation, QSize size) {
    const QSize stored = orientation.swapsSides() ? size.transposed() : size;
    return uprightImage(media::toRgb(frame, stored.expandedTo(QSize(1, 1))), orientation);
}

}
