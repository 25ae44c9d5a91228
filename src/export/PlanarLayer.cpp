#include "export/PlanarLayer.h"

#include "export/LayerColor.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

using media::ChromaLocation;
using media::FrameFormat;
using media::Plane;
using media::Subsampling;

namespace {

constexpr int fractionBits = 15;
constexpr double one = 1 << fractionBits;

// Luma, Cb and Cr in code values, each multiplied by the coverage, and the coverage 0..1.
using Sample = std::array<float, 4>;

QRect coveredRectangle(const QImage& image, QRect inside) {
    QRect covered;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const auto isDrawn = [](QRgb pixel) { return qAlpha(pixel) != 0; };
        const auto* begin = row + inside.left();
        const auto* end = row + inside.right() + 1;
        const auto* first = std::find_if(begin, end, isDrawn);
        if (first == end)
            continue;
        const auto* last =
            std::find_if(std::reverse_iterator(end), std::reverse_iterator(first), isDrawn).base();
        covered |=
            QRect(QPoint(static_cast<int>(first - row), y), QPoint(static_cast<int>(last - row) - 1, y));
    }
    return covered;
}

// Chroma samples reach beyond the pixels that they cover, so the rectangle grows by one of them.
QRect onChromaGrid(QRect rectangle, QSize frameSize) {
    constexpr int reach = 2;
    rectangle.adjust(-reach, -reach, reach, reach);
    rectangle.setLeft(rectangle.left() & ~1);
    rectangle.setTop(rectangle.top() & ~1);
    rectangle.setRight(rectangle.right() | 1);
    rectangle.setBottom(rectangle.bottom() | 1);
    return rectangle & QRect(QPoint(0, 0), frameSize);
}

// Drawings have few colours, and converting one is dear in HDR: the last ones are remembered.
class ColorMemory {
public:
    explicit ColorMemory(const FrameFormat& format)
        : m_color(format)
        , m_entries(size) {}

    const CodeValues& codeValues(QRgb opaque) {
        const std::uint32_t hash = (opaque * 2654435761U) >> (32 - sizeBits); // Knuth's multiplicative hash
        Entry& entry = m_entries[hash];
        if (!entry.isFilled || entry.color != opaque)
            entry = {true, opaque, m_color.codeValues(opaque)};
        return entry.values;
    }

private:
    static constexpr int sizeBits = 11;
    static constexpr std::size_t size = 1U << sizeBits;
    struct Entry {
        bool isFilled = false;
        QRgb color = 0;
        CodeValues values{};
    };
    LayerColor m_color;
    std::vector<Entry> m_entries;
};

std::vector<Sample> convertPixels(const QImage& image, QPoint position, QRect rectangle,
                                  const FrameFormat& format) {
    ColorMemory colors(format);
    std::vector<Sample> samples(static_cast<std::size_t>(rectangle.width()) *
                                static_cast<std::size_t>(rectangle.height()));
    const QRect drawn = rectangle & QRect(position, image.size());
    for (int y = drawn.top(); y <= drawn.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y - position.y()));
        Sample* sample = samples.data() +
                         static_cast<std::ptrdiff_t>(y - rectangle.top()) * rectangle.width() +
                         (drawn.left() - rectangle.left());
        for (int x = drawn.left(); x <= drawn.right(); ++x, ++sample) {
            const QRgb pixel = row[x - position.x()];
            if (qAlpha(pixel) == 0)
                continue;
            const CodeValues& values = colors.codeValues(qUnpremultiply(pixel) | 0xFF000000U);
            const double coverage = qAlpha(pixel) / 255.0;
            *sample = {static_cast<float>(values[0] * coverage), static_cast<float>(values[1] * coverage),
                       static_cast<float>(values[2] * coverage), static_cast<float>(coverage)};
        }
    }
    return samples;
}

struct Tap {
    int offset;
    float weight;
};

// The weights of luma positions in a chroma sample, along one direction.
std::vector<Tap> taps(bool isSubsampled, bool isCosited) {
    if (!isSubsampled)
        return {{0, 1.0F}};
    if (isCosited)
        return {{-1, 0.25F}, {0, 0.5F}, {1, 0.25F}};
    return {{0, 0.5F}, {1, 0.5F}};
}

std::uint16_t keepOf(float coverage) {
    return static_cast<std::uint16_t>(std::lround((1.0 - static_cast<double>(coverage)) * one));
}

std::uint32_t addOf(float value) {
    return static_cast<std::uint32_t>(std::llround(std::max(0.0, static_cast<double>(value)) * one));
}

template <class SampleType>
void blendRow(SampleType* samples, const std::uint16_t* keep, const std::uint32_t* add, int count) {
    constexpr std::uint32_t half = 1U << (fractionBits - 1);
    for (int i = 0; i < count; ++i) {
        const std::uint32_t value = samples[i] * static_cast<std::uint32_t>(keep[i]) + add[i] + half;
        samples[i] = static_cast<SampleType>(value >> fractionBits);
    }
}

}

PlanarLayer::PlanarLayer(const QImage& image, QPoint position, QSize frameSize, const FrameFormat& format)
    : m_format(format) {
    const QRect visible = QRect(position, image.size()) & QRect(QPoint(0, 0), frameSize);
    const QRect covered = coveredRectangle(image, visible.translated(-position)).translated(position);
    if (covered.isEmpty())
        return;
    const QRect rectangle = onChromaGrid(covered, frameSize);
    m_corner = rectangle.topLeft();
    const auto samples = convertPixels(image, position, rectangle, format);
    convertLuma(samples, rectangle.width(), rectangle.height());
    convertChroma(samples, rectangle.width(), rectangle.height());
}

void PlanarLayer::convertLuma(const std::vector<Sample>& samples, int width, int height) {
    Coefficients& luma = m_planes[0];
    luma = {m_corner.x(), m_corner.y(), width, height, {}, {}};
    luma.keep.reserve(samples.size());
    luma.add.reserve(samples.size());
    for (const Sample& sample : samples) {
        luma.keep.push_back(keepOf(sample[3]));
        luma.add.push_back(addOf(sample[0]));
    }
}

void PlanarLayer::convertChroma(const std::vector<Sample>& samples, int width, int height) {
    const int shiftX = m_format.chromaShiftX();
    const int shiftY = m_format.chromaShiftY();
    const ChromaLocation location = m_format.color.chromaLocation;
    const auto across = taps(shiftX != 0, location != ChromaLocation::center);
    const auto down = taps(shiftY != 0, location == ChromaLocation::topLeft);
    const int chromaWidth = (width + shiftX) >> shiftX;
    const int chromaHeight = (height + shiftY) >> shiftY;
    const auto count = static_cast<std::size_t>(chromaWidth) * static_cast<std::size_t>(chromaHeight);
    for (std::size_t plane = 1; plane < 3; ++plane) {
        m_planes[plane] = {m_corner.x() >> shiftX, m_corner.y() >> shiftY, chromaWidth, chromaHeight, {}, {}};
        m_planes[plane].keep.reserve(count);
        m_planes[plane].add.reserve(count);
    }
    for (int y = 0; y < chromaHeight; ++y) {
        for (int x = 0; x < chromaWidth; ++x) {
            Sample sum{};
            for (const Tap& vertical : down) {
                const int row = std::clamp((y << shiftY) + vertical.offset, 0, height - 1);
                for (const Tap& horizontal : across) {
                    const int column = std::clamp((x << shiftX) + horizontal.offset, 0, width - 1);
                    const Sample& sample =
                        samples[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                                static_cast<std::size_t>(column)];
                    for (std::size_t i = 0; i < sum.size(); ++i)
                        sum[i] += vertical.weight * horizontal.weight * sample[i];
                }
            }
            for (std::size_t plane = 1; plane < 3; ++plane) {
                m_planes[plane].keep.push_back(keepOf(sum[3]));
                m_planes[plane].add.push_back(addOf(sum[plane]));
            }
        }
    }
}

void PlanarLayer::blendInto(const media::VideoFrame& frame) const {
    const auto planes = frame.planes();
    const bool isWide = m_format.bitDepth > 8;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const Coefficients& layer = m_planes[i];
        const Plane& plane = planes[i];
        for (int y = 0; y < layer.height; ++y) {
            std::byte* row = plane.data + (layer.y + y) * plane.bytesPerRow;
            const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(layer.width);
            const std::uint16_t* keep = layer.keep.data() + start;
            const std::uint32_t* add = layer.add.data() + start;
            if (isWide)
                blendRow(reinterpret_cast<std::uint16_t*>(row) + layer.x, keep, add, layer.width);
            else
                blendRow(reinterpret_cast<std::uint8_t*>(row) + layer.x, keep, add, layer.width);
        }
    }
}

}
