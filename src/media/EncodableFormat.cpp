#include "media/MediaWriter.h"

namespace pointloom::media {

FrameFormat encodableFormat(VideoCodec codec, const FrameFormat& source) {
    const bool isHdr = source.color.transfer != Transfer::sdr;
    FrameFormat format = source;
    switch (codec) {
    case VideoCodec::h264:
        format.subsampling = Subsampling::s420;
        format.bitDepth = 8;
        if (isHdr)
            format.color = ColorDescription{};
        break;
    case VideoCodec::hevc:
        format.subsampling = Subsampling::s420;
        format.bitDepth = source.bitDepth > 8 || isHdr ? 10 : 8; // HDR in 8 bits would show bands
        break;
    case VideoCodec::prores:
        format.subsampling = Subsampling::s422;
        format.bitDepth = 10;
        format.color.range = Range::limited;
        break;
    }
    if (format.subsampling != source.subsampling)
        format.color.chromaLocation = ChromaLocation::left;
    return format;
}

}
