#include "render/OverlayPlacement.h"

#include "render/ScoreboardTemplate.h"

#include <algorithm>

namespace pointloom::OverlayPlacement {

namespace {

QPointF pointAt(const QRectF& videoRect, QPointF position) {
    return {videoRect.left() + position.x() * videoRect.width(),
            videoRect.top() + position.y() * videoRect.height()};
}

QPointF half(QSizeF size) {
    return {size.width() / 2, size.height() / 2};
}

constexpr QPointF margin(canvasMargin, canvasMargin);
constexpr double closestToEdge = 0.02; // as a fraction

}

double previewScale(const QRectF& videoRect, double videoWidth) {
    constexpr double assumedHeight = 1080;
    return videoWidth >= 1 ? videoRect.width() / videoWidth : videoRect.height() / assumedHeight;
}

QPointF displayPosition(const QRectF& videoRect, QPointF position, QSizeF dragOffset) {
    const QPointF dragged = pointAt(videoRect, position) + QPointF(dragOffset.width(), dragOffset.height());
    return {std::clamp(dragged.x(), videoRect.left(), std::max(videoRect.left(), videoRect.right())),
            std::clamp(dragged.y(), videoRect.top(), std::max(videoRect.top(), videoRect.bottom()))};
}

QPointF drawOrigin(const QRectF& videoRect, QPointF position, QSizeF canvas, double scale) {
    return pointAt(videoRect, position) + (margin - half(canvas)) * scale;
}

QPointF movedPosition(QPointF position, QSizeF translation, const QRectF& videoRect) {
    if (videoRect.isEmpty())
        return position;
    return {clampNorm(position.x() + translation.width() / videoRect.width()),
            clampNorm(position.y() + translation.height() / videoRect.height())};
}

double clampNorm(double fraction) {
    return std::clamp(fraction, closestToEdge, 1 - closestToEdge);
}

double resizedScale(double startScale, QSizeF translation, double baseWidth) {
    if (!(baseWidth > 0))
        return startScale;
    const double enlargement = (translation.width() + translation.height()) / 2;
    const double width = std::max(baseWidth * smallestScale, baseWidth * startScale + enlargement);
    return std::min(largestScale, width / baseWidth);
}

double exportScale(double frameWidth, double nativeVideoWidth, double userScale) {
    constexpr double smallestExported = 0.1;
    const double resized = nativeVideoWidth > 0 ? frameWidth / nativeVideoWidth : 1;
    return resized * std::max(smallestExported, userScale);
}

QPointF exportOrigin(QSizeF frame, QPointF position, QSizeF canvas, double scale) {
    const QPointF center(position.x() * frame.width() / scale, position.y() * frame.height() / scale);
    return center - half(canvas) + margin;
}

namespace {

double frameMargin(QSizeF frame) {
    return closestToEdge * std::min(frame.width(), frame.height());
}

}

double fittingScale(QSizeF frame, QSizeF board, double scale) {
    const double margins = 2 * frameMargin(frame);
    return std::min(
        {scale, (frame.width() - margins) / board.width(), (frame.height() - margins) / board.height()});
}

QPointF originInside(QSizeF frame, QPointF origin, QSizeF board, double scale) {
    const double least = frameMargin(frame) / scale;
    const auto inside = [&](double place, double length, double whole) {
        return std::clamp(place, least, std::max(least, whole / scale - length - least));
    };
    return {inside(origin.x(), board.width(), frame.width()),
            inside(origin.y(), board.height(), frame.height())};
}

}
