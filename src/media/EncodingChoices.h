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

/// `preview` is for copies that are looked at while they are searched: coarse, and quick to encode, to decode
/// and to seek in.
enum class EncodingQuality { standard, fast, smaller, better, preview };

}
