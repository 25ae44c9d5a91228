#include "export/SizeEstimate.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

using media::EncodingQuality;

namespace {

double pixels(QSize size) {
    return static_cast<double>(size.width()) * size.height();
}

// Bits a second at 1920x1080 and 29.97 Hz.
double nominalProresRate(EncodingQuality quality) {
    switch (quality) {
    case EncodingQuality::smaller:
        return 102e6;
    case EncodingQuality::standard:
        return 147e6;
    case EncodingQuality::better:
        break;
    }
    return 220e6;
}

double proresBytesPerSecond(QSize size, double frameRate, EncodingQuality quality) {
    constexpr double nominalPixels = 1920.0 * 1080.0 * 29.97; // a second
    return pixels(size) * frameRate * nominalProresRate(quality) / nominalPixels / 8;
}

// Encoders spend less than twice the data on twice the pixels of the same picture.
double compressedBytesPerSecond(const SourceRate& source, QSize size, ExportFormat format,
                                EncodingQuality quality) {
    constexpr double hevcSaving = 0.65;
    const bool isHevc = format == ExportFormat::hevc;
    const double ratio =
        media::dataRatio(isHevc ? media::VideoCodec::hevc : media::VideoCodec::h264, quality);
    const double scaled = source.bytesPerSecond * std::pow(pixels(size) / pixels(source.size), 0.75);
    return ratio * (isHevc ? scaled * hevcSaving : scaled);
}

}

std::int64_t estimatedBytes(const SourceRate& source, ExportFormat format, ExportPreset preset,
                            EncodingQuality quality, double seconds) {
    if (source.size.isEmpty() || seconds <= 0)
        return 0;
    const QSize size = targetSize(preset).value_or(source.size);
    const double rate = format == ExportFormat::prores
                            ? proresBytesPerSecond(size, std::max(source.frameRate, 1.0), quality)
                            : compressedBytesPerSecond(source, size, format, quality);
    return static_cast<std::int64_t>(rate * seconds);
}

}
