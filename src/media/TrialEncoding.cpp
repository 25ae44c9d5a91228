#include "media/TrialEncoding.h"

#include "media/FFmpeg.h"
#include "media/FrameEncoder.h"

namespace pointloom::media {

namespace {

int keyFrameDistance(const AVCodecContext& context) {
    constexpr int ofX264AndX265 = 250; // where FFmpeg leaves it to them
    const AVCodecDescriptor* codec = avcodec_descriptor_get(context.codec_id);
    if (codec != nullptr && (codec->props & AV_CODEC_PROP_INTRA_ONLY) != 0)
        return 1;
    return context.gop_size > 0 ? context.gop_size : ofX264AndX265;
}

}

EncodedSizes encodedSizes(const VideoSettings& settings,
                          const std::function<std::optional<VideoFrame>()>& next) {
    prepareFFmpeg();
    FrameEncoder encoder(settings, true);
    EncodedSizes sizes{{}, keyFrameDistance(encoder.context())};
    bool isDone = false;
    while (!isDone) {
        if (const auto frame = next()) {
            encoder.send(*frame, frame->timestamp());
        } else {
            encoder.finish();
            isDone = true;
        }
        while (const AVPacket* packet = encoder.next())
            sizes.bytes.push_back(packet->size);
    }
    return sizes;
}

}
