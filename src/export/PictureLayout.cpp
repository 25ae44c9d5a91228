#include "export/PictureLayout.h"

#include <cmath>

namespace pointloom {

namespace {

// 4:2:0 video has whole 2x2 blocks only: an odd last column or row is left out rather than resampled.
QSize flooredToEven(QSize size) {
    return {std::max(2, size.width() & ~1), std::max(2, size.height() & ~1)};
}

int nearestEven(double value) {
    return 2 * static_cast<int>(std::lround(value / 2));
}

PictureLayout storedPicture(const media::VideoTrackInfo& track) {
    PictureLayout layout;
    layout.frameSize = flooredToEven(track.storedSize);
    layout.orientation = track.orientation;
    layout.sampleAspectRatio = track.sampleAspectRatio;
    layout.picture = QRect(QPoint(0, 0), layout.frameSize);
    const QSizeF shown(layout.frameSize.width() * track.sampleAspectRatio.value(), layout.frameSize.height());
    layout.canvas = track.orientation.swapsSides() ? shown.transposed() : shown;
    layout.nativeVideoSize = layout.canvas;
    return layout;
}

}

QSize PictureLayout::uprightFrameSize() const {
    return orientation.swapsSides() ? frameSize.transposed() : frameSize;
}

PictureLayout planPicture(const media::VideoTrackInfo& track, ExportPreset preset) {
    const auto target = targetSize(preset);
    const bool squarePixels = track.sampleAspectRatio.value() == 1;
    if (!target || (squarePixels && *target == track.uprightSize()))
        return storedPicture(track);
    PictureLayout layout;
    layout.frameSize = *target;
    layout.canvas = *target;
    layout.nativeVideoSize = track.uprightSize();
    layout.picture = fittedPicture(layout.nativeVideoSize, *target);
    layout.keepsStoredPicture = false;
    return layout;
}

QRect fittedPicture(QSizeF source, QSize target) {
    constexpr double nearlyEqual = 0.02; // of the aspect ratio: stretched rather than barred
    const double sourceAspect = source.width() / source.height();
    const double targetAspect = static_cast<double>(target.width()) / target.height();
    if (std::abs(sourceAspect - targetAspect) < nearlyEqual)
        return {QPoint(0, 0), target};
    QSize size = target;
    if (sourceAspect <= targetAspect)
        size.setWidth(std::max(2, nearestEven(target.height() * sourceAspect)));
    else
        size.setHeight(std::max(2, nearestEven(target.width() / sourceAspect)));
    const QPoint corner(nearestEven((target.width() - size.width()) / 2.0),
                        nearestEven((target.height() - size.height()) / 2.0));
    return {corner, size};
}

}
