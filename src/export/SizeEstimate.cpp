#include "export/SizeEstimate.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

double pixels(QSize size) {
    return static_cast<double>(size.width()) * size.height();
}

double proresBytesPerSecond(QSize size, double frameRate) {
    constexpr double bitsPerPixel = 147e6 / (1920.0 * 1080.0 * 29.97);
    return pixels(size) * frameRate * bitsPerPixel / 8;
}

// Encoders spend less than twice the data on twice the pixels of the same picture.
double compressedBytesPerSecond(const SourceRate& source, QSize size, ExportFormat format) {
    constexpr double hevcSaving = 0.65;
    const double scaled = source.bytesPerSecond * std::pow(pixels(size) / pixels(source.size), 0.75);
    return format == ExportFormat::hevc ? scaled * hevcSaving : scaled;
}

}

std::int64_t estimatedBytes(const SourceRate& source, ExportFormat format, ExportPreset preset,
                            double seconds) {
    if (source.size.isEmpty() || seconds <= 0)
        return 0;
    const QSize size = targetSize(preset).value_or(source.size);
    const double rate = format == ExportFormat::prores
                            ? proresBytesPerSecond(size, std::max(source.frameRate, 1.0))
                            : compressedBytesPerSecond(source, size, format);
    return static_cast<std::int64_t>(rate * seconds);
}

}
