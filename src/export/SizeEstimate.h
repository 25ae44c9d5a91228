// About how large an exported file becomes, to warn of a disk that is obviously too full.
#pragma once

#include "export/ExportOptions.h"
#include "media/EncodingChoices.h"

#include <cstdint>
#include <QSize>

namespace pointloom {

struct SourceRate {
    QSize size;                // upright pixels
    double frameRate = 30;     // frames a second
    double bytesPerSecond = 0; // of the whole file
};

/// Bytes of `seconds` of video in the chosen shape; 0 when the source's size is unknown. H.264 and HEVC are
/// judged by the source's own rate, ProRes LT, 422 and HQ by their nominal rates of 102, 147 and 220 Mbit/s
/// at 1920x1080 and 29.97 Hz (Apple ProRes White Paper, "Target Data Rates").
std::int64_t estimatedBytes(const SourceRate& source, ExportFormat format, ExportPreset preset,
                            media::EncodingQuality quality, double seconds);

}
