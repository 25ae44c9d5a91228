#include "render/Shadow.h"

#include "render/DevicePixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <span>
#include <vector>

namespace pointloom {

namespace {

constexpr std::size_t tapsAtOnce = 4;
constexpr double broadDeviation = 16; // pixels
constexpr double reach = 3;           // standard deviations; farther out the shadow is below one part in 255

/// Coverage of the device's pixels, 0..255.
struct Mask {
    int width = 0;
    int height = 0;
    std::vector<float> values; // row by row

    Mask(int maskWidth, int maskHeight)
        : width(maskWidth)
        , height(maskHeight)
        , values(static_cast<std::size_t>(maskWidth) * static_cast<std::size_t>(maskHeight)) {}

    float& at(int x, int y) {
        return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }

    std::span<float> row(int y) {
        const auto stride = static_cast<std::size_t>(width);
        return std::span(values).subspan(static_cast<std::size_t>(y) * stride, stride);
    }
};

/// Visits every pixel in small squares, which keeps both sides of a transposition in the cache.
template <class Visit>
void inBlocks(int width, int height, Visit visit) {
    constexpr int side = 16;
    for (int top = 0; top < height; top += side) {
        for (int left = 0; left < width; left += side) {
            for (int y = top; y < std::min(top + side, height); ++y) {
                for (int x = left; x < std::min(left + side, width); ++x)
                    visit(x, y);
            }
        }
    }
}

QRect visiblePart(const QPainter& painter, const QRectF& shape, int margin, double coarseness);
Mask coverageOf(const QPainterPath& path, const QRect& area);
std::vector<float> gaussianKernel(double deviation, int radius);
void blurRows(Mask& mask, std::span<const float> kernel, int radius);
void blurRow(const float* padded, std::span<const float> kernel, std::span<float> result);
Mask transposed(Mask& mask);
QImage tinted(Mask& columns, const Rgba& color);

}

void drawShadow(QPainter& painter, const QPainterPath& path, const Shadow& shadow, double fillAlpha) {
    Rgba color = shadow.color;
    color.alpha *= std::clamp(fillAlpha, 0.0, 1.0);
    if (path.isEmpty() || color.alpha <= 0)
        return;
    const DevicePixels pixels(painter);
    const double devicePixels = std::max(0.0, shadow.blur / 2 * deviceScale(pixels.fromPainter()));
    // A broad shadow has no detail: it is computed in coarser pixels and drawn enlarged.
    const double coarseness = std::max(1.0, std::ceil(devicePixels / broadDeviation));
    const double deviation = devicePixels / coarseness;
    const QTransform toMask = pixels.fromPainter() * QTransform::fromScale(1 / coarseness, 1 / coarseness);
    const QPainterPath shape = toMask.map(path.translated(shadow.offset));
    const int margin = static_cast<int>(std::ceil(deviation * reach));
    const QRect area = visiblePart(painter, shape.boundingRect(), margin, coarseness);
    if (area.isEmpty())
        return;

    Mask mask = coverageOf(shape, area);
    const std::vector<float> kernel = gaussianKernel(deviation, margin);
    blurRows(mask, kernel, margin);
    Mask columns = transposed(mask);
    blurRows(columns, kernel, margin);
    painter.scale(coarseness, coarseness);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, coarseness > 1);
    painter.drawImage(area.topLeft(), tinted(columns, color));
}

namespace {

/// The mask's pixels that the shadow can reach and that affect a pixel of the device.
QRect visiblePart(const QPainter& painter, const QRectF& shape, int margin, double coarseness) {
    const QPaintDevice* device = painter.paintEngine()->paintDevice();
    const QRectF screen(0, 0, device->width() / coarseness, device->height() / coarseness);
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

/// Weights of the pixels at distances -radius..radius, each the integral of the Gaussian over that pixel,
/// padded with zeros to a whole number of passes.
std::vector<float> gaussianKernel(double deviation, int radius) {
    const auto integralUpTo = [&](double x) {
        return 0.5 * (1 + std::erf(x / (deviation * std::numbers::sqrt2)));
    };
    std::vector<float> kernel;
    const double whole = integralUpTo(radius + 0.5) - integralUpTo(-radius - 0.5);
    for (int distance = -radius; distance <= radius; ++distance) {
        const double weight = integralUpTo(distance + 0.5) - integralUpTo(distance - 0.5);
        kernel.push_back(deviation > 0 ? static_cast<float>(weight / whole) : 1);
    }
    while (kernel.size() % tapsAtOnce != 0)
        kernel.push_back(0);
    return kernel;
}

/// A panel's rows are nearly all alike, so a row that equals the one above gets a copy of its result.
void blurRows(Mask& mask, std::span<const float> kernel, int kernelRadius) {
    const auto width = static_cast<std::size_t>(mask.width);
    const auto radius = static_cast<std::size_t>(kernelRadius);
    std::vector<float> padded(width + radius + kernel.size());
    const std::span source = std::span(padded).subspan(radius, width);
    std::span<float> previous;
    for (int y = 0; y < mask.height; ++y) {
        const std::span<float> row = mask.row(y);
        if (!previous.empty() && std::memcmp(row.data(), source.data(), row.size_bytes()) == 0) {
            std::ranges::copy(previous, row.begin());
        } else {
            std::ranges::copy(row, source.begin());
            blurRow(padded.data(), kernel, row);
        }
        previous = row;
    }
}

/// Four taps a pass: the compiler turns each into a few loads and one store for four pixels at once.
void blurRow(const float* padded, std::span<const float> kernel, std::span<float> result) {
    std::ranges::fill(result, 0.0F);
    float* sums = result.data();
    const std::size_t width = result.size();
    for (std::size_t tap = 0; tap < kernel.size(); tap += tapsAtOnce) {
        const float weight0 = kernel[tap];
        const float weight1 = kernel[tap + 1];
        const float weight2 = kernel[tap + 2];
        const float weight3 = kernel[tap + 3];
        const float* source = padded + tap;
        for (std::size_t x = 0; x < width; ++x)
            sums[x] += weight0 * source[x] + weight1 * source[x + 1] + weight2 * source[x + 2] +
                       weight3 * source[x + 3];
    }
}

Mask transposed(Mask& mask) {
    Mask turned(mask.height, mask.width);
    inBlocks(mask.width, mask.height, [&](int x, int y) { turned.at(y, x) = mask.at(x, y); });
    return turned;
}

/// The mask, turned back from columns to rows, as an image of the colour.
QImage tinted(Mask& columns, const Rgba& color) {
    std::array<QRgb, 256> tints{};
    const QRgb base = color.color().rgb();
    for (std::size_t i = 0; i < tints.size(); ++i) {
        const int alpha = static_cast<int>(std::lround(color.alpha * static_cast<double>(i)));
        tints[i] = qPremultiply(qRgba(qRed(base), qGreen(base), qBlue(base), alpha));
    }
    QImage image(columns.height, columns.width, QImage::Format_ARGB32_Premultiplied);
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    const auto stride = static_cast<std::size_t>(image.bytesPerLine()) / sizeof(QRgb);
    inBlocks(image.width(), image.height(), [&](int x, int y) {
        const float coverage = std::clamp(columns.at(y, x) + 0.5F, 0.0F, 255.0F);
        pixels[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)] =
            tints[static_cast<std::size_t>(static_cast<int>(coverage))];
    });
    return image;
}

}

}
