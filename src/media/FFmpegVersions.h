// What differs between the versions of FFmpeg that Debian 12 (5.1) and 13 (7.1) have, under one name each.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace pointloom::media {

inline std::int64_t frameDuration(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

inline void setFrameDuration(AVFrame& frame, std::int64_t duration) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    frame.duration = duration;
#else
    frame.pkt_duration = duration;
#endif
}

inline bool isInterlaced(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(58, 7, 100)
    return (frame.flags & AV_FRAME_FLAG_INTERLACED) != 0;
#else
    return frame.interlaced_frame != 0;
#endif
}

// Since FFmpeg 6.1 the side data of a track are among its codec parameters.
#define POINTLOOM_SIDE_DATA_IN_PARAMETERS (LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102))

/// Null when the track has none of that type, or less than `size` bytes of it.
inline const std::uint8_t* findSideData(const AVStream& track, AVPacketSideDataType type, std::size_t size) {
#if POINTLOOM_SIDE_DATA_IN_PARAMETERS
    const AVPacketSideData* found =
        av_packet_side_data_get(track.codecpar->coded_side_data, track.codecpar->nb_coded_side_data, type);
    return found != nullptr && found->size >= size ? found->data : nullptr;
#else
    std::size_t available = 0;
    const std::uint8_t* data = av_stream_get_side_data(&track, type, &available);
    return available >= size ? data : nullptr;
#endif
}

/// Uninitialised bytes that belong to the track. Null when memory is short.
inline std::uint8_t* newSideData(AVStream& track, AVPacketSideDataType type, std::size_t size) {
#if POINTLOOM_SIDE_DATA_IN_PARAMETERS
    const AVPacketSideData* added = av_packet_side_data_new(
        &track.codecpar->coded_side_data, &track.codecpar->nb_coded_side_data, type, size, 0);
    return added == nullptr ? nullptr : static_cast<std::uint8_t*>(added->data);
#else
    return av_stream_new_side_data(&track, type, size);
#endif
}

/// For a track whose codec parameters were copied from `source`. False when memory is short.
inline bool copySideData([[maybe_unused]] AVStream& track, [[maybe_unused]] const AVStream& source) {
#if !POINTLOOM_SIDE_DATA_IN_PARAMETERS
    for (int i = 0; i < source.nb_side_data; ++i) {
        const AVPacketSideData& data = source.side_data[i];
        std::uint8_t* copy = av_stream_new_side_data(&track, data.type, data.size);
        if (copy == nullptr)
            return false;
        std::copy_n(data.data, data.size, copy);
    }
#endif
    return true;
}

#undef POINTLOOM_SIDE_DATA_IN_PARAMETERS

}
