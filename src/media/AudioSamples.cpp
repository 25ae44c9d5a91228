#include "media/AudioSamples.h"

#include "media/FFmpegError.h"
#include "media/FFmpegHandles.h"

namespace pointloom::media {

AVFramePtr makeSilence(int sampleCount) {
    AVFramePtr frame = makeFrame();
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = audioSampleRate;
    frame->nb_samples = sampleCount;
    av_channel_layout_default(&frame->ch_layout, audioChannels);
    check(av_frame_get_buffer(frame.get(), 0), "sound could not be stored");
    av_samples_set_silence(frame->extended_data, 0, sampleCount, audioChannels, AV_SAMPLE_FMT_FLTP);
    return frame;
}

}
