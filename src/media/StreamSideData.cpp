#include "media/StreamSideData.h"

#include "media/MediaError.h"

#include <algorithm>

namespace pointloom::media {

// FFmpeg 6.1 moved side data from the stream to its codec parameters.
#define POINTLOOM_SIDE_DATA_IN_PARAMETERS (LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102))

const std::uint8_t* findSideData(const AVStream& stream, AVPacketSideDataType type, std::size_t size) {
#if POINTLOOM_SIDE_DATA_IN_PARAMETERS
    const AVPacketSideData* found =
        av_packet_side_data_get(stream.codecpar->coded_side_data, stream.codecpar->nb_coded_side_data, type);
    return found != nullptr && found->size >= size ? found->data : nullptr;
#else
    std::size_t available = 0;
    const std::uint8_t* data = av_stream_get_side_data(&stream, type, &available);
    return available >= size ? data : nullptr;
#endif
}

std::uint8_t* addSideData(AVStream& stream, AVPacketSideDataType type, std::size_t size) {
#if POINTLOOM_SIDE_DATA_IN_PARAMETERS
    const AVPacketSideData* added = av_packet_side_data_new(
        &stream.codecpar->coded_side_data, &stream.codecpar->nb_coded_side_data, type, size, 0);
    std::uint8_t* data = added == nullptr ? nullptr : added->data;
#else
    std::uint8_t* data = av_stream_new_side_data(&stream, type, size);
#endif
    if (data == nullptr)
        throw MediaError("out of memory");
    std::fill_n(data, size, std::uint8_t{0});
    return data;
}

}
