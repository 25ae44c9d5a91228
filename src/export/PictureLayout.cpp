#include "export/PictureLayout.h"

#include <algorithm>
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

PictureLayout planPicture(const media::VideoTrackInfo& track, ExportPreset preset,
                          std::optional<double> fill) {
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
    if (fill && leavesBars(layout.nativeVideoSize, *target)) {
        layout.picture = QRect(QPoint(0, 0), *target);
        layout.seen = fillingPart(layout.nativeVideoSize, *target, *fill);
        layout.nativeVideoSize = {layout.nativeVideoSize.width() * layout.seen.width(),
                                  layout.nativeVideoSize.height() * layout.seen.height()};
    }
    return layout;
}

namespace {

double aspectOf(QSizeF size) {
    return size.width() / size.height();
}

}

bool leavesBars(QSizeF source, QSize target) {
    constexpr double nearlyEqual = 0.02; // of the aspect ratio: stretched rather than barred
    return std::abs(aspectOf(source) - aspectOf(target)) >= nearlyEqual;
}

QRectF fillingPart(QSizeF source, QSize target, double position) {
    const double narrowing = aspectOf(target) / aspectOf(source);
    const QSizeF part = narrowing < 1 ? QSizeF(narrowing, 1) : QSizeF(1, 1 / narrowing);
    const double moved = std::clamp(position, 0.0, 1.0);
    return {QPointF((1 - part.width()) * moved, (1 - part.height()) * moved), part};
}

QRect fittedPicture(QSizeF source, QSize target) {
    if (!leavesBars(source, target))
        return {QPoint(0, 0), target};
    QSize size = target;
    if (aspectOf(source) <= aspectOf(target))
        size.setWidth(std::max(2, nearestEven(target.height() * aspectOf(source))));
    else
        size.setHeight(std::max(2, nearestEven(target.width() / aspectOf(source))));
    const QPoint corner(nearestEven((target.width() - size.width()) / 2.0),
                        nearestEven((target.height() - size.height()) / 2.0));
    return {corner, size};
}

}
