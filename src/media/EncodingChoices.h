// The encoders of video and their qualities.
#pragma once

namespace pointloom::media {

enum class VideoCodec { h264, hevc, prores };

/// Software is x264, x265 and FFmpeg's ProRes; all others encode H.264 and HEVC on a graphics card.
enum class EncoderKind { software, vaapi, nvenc, qsv, videotoolbox };

/// The name for users.
constexpr const char* nameOf(EncoderKind kind) {
    constexpr const char* names[] = {"software", "VAAPI", "NVENC", "Quick Sync", "VideoToolbox"};
    return names[static_cast<int>(kind)];
}

enum class EncodingQuality { standard, smaller, better };

/// The rate factor of x264 and x265, the quantiser elsewhere, [0, 51]; smaller is better. The standard ones
/// are the defaults of x264 and x265, whose scales differ. ProRes has none.
constexpr int rateFactor(VideoCodec codec, EncodingQuality quality) {
    constexpr int offsets[] = {0, 4, -5}; // by EncodingQuality
    return (codec == VideoCodec::hevc ? 28 : 23) + offsets[static_cast<int>(quality)];
}

}
