#include "render/Shadow.h"

#include "render/DevicePixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <QImage>
#include <QPainter>
#include <span>
#include <vector>

namespace pointloom {

namespace {

constexpr double reach = 3; // standard deviations; what lies farther out is below one part in 255

/// Coverage of the device's pixels, 0..255.
struct Mask {
    int width = 0;
    int height = 0;
    std::vector<float> values; // row by row

    Mask(int maskWidth, int maskHeight)
        : width(maskWidth)
        , height(maskHeight)
        , values(static_cast<std::size_t>(maskWidth) * static_cast<std::size_t>(maskHeight)) {}

    std::span<float> row(int y) {
        const auto stride = static_cast<std::size_t>(width);
        return std::span(values).subspan(static_cast<std::size_t>(y) * stride, stride);
    }
};

QRect visiblePart(const QPainter& painter, const QRectF& shape, int margin);
Mask coverageOf(const QPainterPath& path, const QRect& area);
std::vector<float> gaussianKernel(double deviation, int radius);
void blurRows(Mask& mask, std::span<const float> kernel);
Mask transposed(Mask& mask);
QImage tinted(Mask& mask, const Rgba& color);

}

void drawShadow(QPainter& painter, const QPainterPath& path, const Shadow& shadow, double fillAlpha) {
    Rgba color = shadow.color;
    color.alpha *= std::clamp(fillAlpha, 0.0, 1.0);
    if (path.isEmpty() || color.alpha <= 0)
        return;
    const DevicePixels pixels(painter);
    const QPainterPath shape = pixels.fromPainter().map(path.translated(shadow.offset));
    const double deviation = shadow.blur / 2 * deviceScale(pixels.fromPainter());
    constexpr double mostDeviation = 512; // pixels; keeps the work bounded at absurd scales
    const double bounded = std::clamp(deviation, 0.0, mostDeviation);
    const int margin = static_cast<int>(std::ceil(bounded * reach));
    const QRect area = visiblePart(painter, shape.boundingRect(), margin);
    if (area.isEmpty())
        return;

    Mask mask = coverageOf(shape, area);
    if (margin > 0) {
        const std::vector<float> kernel = gaussianKernel(bounded, margin);
        blurRows(mask, kernel);
        Mask columns = transposed(mask);
        blurRows(columns, kernel);
        mask = transposed(columns);
    }
    painter.drawImage(area.topLeft(), tinted(mask, color));
}

namespace {

/// The pixels that the shadow can touch and that have an influence on what the device shows.
QRect visiblePart(const QPainter& painter, const QRectF& shape, int margin) {
    const QPaintDevice* device = painter.device();
    const double ratio = device->devicePixelRatio();
    const QRectF screen(0, 0, device->width() * std::max(1.0, ratio),
                        device->height() * std::max(1.0, ratio));
    const double border = margin;
    return shape.adjusted(-border, -border, border, border)
        .intersected(screen.adjusted(-border, -border, border, border))
        .toAlignedRect();
}

Mask coverageOf(const QPainterPath& path, const QRect& area) {
    QImage coverage(area.size(), QImage::Format_Alpha8);
    coverage.fill(0);
    {
        QPainter painter(&coverage);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(-area.topLeft());
        painter.fillPath(path, Qt::black);
    }
    Mask mask(area.width(), area.height());
    for (int y = 0; y < mask.height; ++y)
        std::copy_n(coverage.constScanLine(y), mask.width, mask.row(y).begin());
    return mask;
}

/// Weights of the pixels at distances -radius..radius, each the integral of the bell over that pixel.
std::vector<float> gaussianKernel(double deviation, int radius) {
    const auto integralUpTo = [&](double x) {
        return 0.5 * (1 + std::erf(x / (deviation * std::numbers::sqrt2)));
    };
    std::vector<float> kernel;
    double sum = 0;
    for (int distance = -radius; distance <= radius; ++distance) {
        const double weight = integralUpTo(distance + 0.5) - integralUpTo(distance - 0.5);
        kernel.push_back(static_cast<float>(weight));
        sum += weight;
    }
    for (float& weight : kernel)
        weight = static_cast<float>(weight / sum);
    return kernel;
}

/// A panel's rows are nearly all alike, so a row that equals the one above takes over its result.
void blurRows(Mask& mask, std::span<const float> kernel) {
    const auto width = static_cast<std::size_t>(mask.width);
    const std::size_t radius = kernel.size() / 2;
    std::vector<float> padded(width + 2 * radius);
    const std::span source = std::span(padded).subspan(radius, width);
    std::span<float> previous;
    for (int y = 0; y < mask.height; ++y) {
        const std::span<float> row = mask.row(y);
        if (!previous.empty() && std::ranges::equal(row, source)) {
            std::ranges::copy(previous, row.begin());
        } else {
            std::ranges::copy(row, source.begin());
            std::ranges::fill(row, 0.0F);
            for (std::size_t tap = 0; tap < kernel.size(); ++tap) {
                const float weight = kernel[tap];
                const float* shifted = padded.data() + tap;
                for (std::size_t x = 0; x < width; ++x)
                    row[x] += weight * shifted[x];
            }
        }
        previous = row;
    }
}

Mask transposed(Mask& mask) {
    Mask turned(mask.height, mask.width);
    for (int y = 0; y < mask.height; ++y) {
        const std::span<const float> row = mask.row(y);
        float* column = turned.values.data() + y;
        for (int x = 0; x < mask.width; ++x)
            column[static_cast<std::size_t>(x) * static_cast<std::size_t>(mask.height)] =
                row[static_cast<std::size_t>(x)];
    }
    return turned;
}

QImage tinted(Mask& mask, const Rgba& color) {
    std::array<QRgb, 256> tints{};
    for (std::size_t i = 0; i < tints.size(); ++i) {
        Rgba tint = color;
        tint.alpha *= static_cast<double>(i) / 255;
        tints[i] = qPremultiply(tint.color().rgba());
    }
    QImage image(mask.width, mask.height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < mask.height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (const float value : mask.row(y))
            *line++ = tints[static_cast<std::size_t>(std::clamp(value + 0.5F, 0.0F, 255.0F))];
    }
    return image;
}

}

}
