// Which encoder makes the pictures of a file, and how much it may spend on them.
#pragma once

#include <cmath>

namespace pointloom::media {

enum class VideoCodec { h264, hevc, prores };

/// Software is x264, x265 and FFmpeg's ProRes; all others encode H.264 and HEVC on a graphics card.
enum class EncoderKind { software, vaapi, nvenc, qsv, videotoolbox };

/// As people know it.
constexpr const char* nameOf(EncoderKind kind) {
    switch (kind) {
    case EncoderKind::software:
        return "software";
    case EncoderKind::vaapi:
        return "VAAPI";
    case EncoderKind::nvenc:
        return "NVENC";
    case EncoderKind::qsv:
        return "Quick Sync";
    case EncoderKind::videotoolbox:
        break;
    }
    return "VideoToolbox";
}

enum class EncodingQuality { standard, smaller, better };

/// The rate factor of x264 and x265, the quantiser elsewhere, [0, 51]; smaller is better. The standard ones
/// are the defaults of x264 and x265, whose numbers do not mean the same. ProRes has none.
constexpr int rateFactor(VideoCodec codec, EncodingQuality quality) {
    const int standard = codec == VideoCodec::hevc ? 28 : 23;
    switch (quality) {
    case EncodingQuality::standard:
        return standard;
    case EncodingQuality::smaller:
        return standard + 4;
    case EncodingQuality::better:
        break;
    }
    return standard - 5;
}

/// How many times the data of the standard quality H.264 and HEVC take: 6 less double it, roughly.
inline double dataRatio(VideoCodec codec, EncodingQuality quality) {
    constexpr double factorsPerDoubling = 6;
    return std::exp2((rateFactor(codec, EncodingQuality::standard) - rateFactor(codec, quality)) /
                     factorsPerDoubling);
}

}
