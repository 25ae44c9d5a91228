#include "media/StereoResampler.h"

#include "media/AudioReader.h"
#include "media/FFmpegError.h"

namespace pointloom::media {

namespace {

constexpr int lowestRate = 1000;     // Hz
constexpr int highestRate = 768'000; // Hz

/// The frame's layout; the usual one for its number of channels where it names none.
void copyLayout(AVChannelLayout& target, const AVChannelLayout& source) {
    if (source.order == AV_CHANNEL_ORDER_NATIVE)
        check(av_channel_layout_copy(&target, &source), "sound could not be converted");
    else
        av_channel_layout_default(&target, source.nb_channels);
}

}

StereoResampler::StereoResampler(const AVFrame& frame)
    : m_format(frame.format)
    , m_rate(frame.sample_rate)
    , m_isMono(frame.ch_layout.nb_channels == 1) {
    if (m_rate < lowestRate || m_rate > highestRate)
        throw MediaError("sound could not be converted: its sample rate is not plausible");
    copyLayout(m_layout, frame.ch_layout);
    AVChannelLayout output{};
    av_channel_layout_default(&output, m_isMono ? 1 : audioChannels);

    SwrContext* context = nullptr;
    const int made = swr_alloc_set_opts2(&context, &output, AV_SAMPLE_FMT_FLTP, audioSampleRate, &m_layout,
                                         static_cast<AVSampleFormat>(m_format), m_rate, 0, nullptr);
    m_resampler.reset(context);
    check(made, "sound could not be converted");
    av_opt_set_double(context, "rematrix_maxval", 1.0, 0);
    check(swr_init(context), "sound could not be converted");
}

StereoResampler::~StereoResampler() {
    av_channel_layout_uninit(&m_layout);
}

bool StereoResampler::takes(const AVFrame& frame) const {
    if (frame.format != m_format || frame.sample_rate != m_rate)
        return false;
    AVChannelLayout layout{};
    copyLayout(layout, frame.ch_layout);
    const bool same = av_channel_layout_compare(&layout, &m_layout) == 0;
    av_channel_layout_uninit(&layout);
    return same;
}

StereoSamples StereoResampler::convert(const AVFrame* frame) {
    const int entering = frame == nullptr ? 0 : frame->nb_samples;
    const int room = std::max(swr_get_out_samples(m_resampler.get(), entering), 0);
    StereoSamples samples;
    samples.fill(std::vector<float>(static_cast<std::size_t>(room)));
    std::array<std::uint8_t*, 2> outputs{};
    for (std::size_t i = 0; i < outputs.size(); ++i)
        outputs[i] = reinterpret_cast<std::uint8_t*>(samples[i].data());
    std::vector<const std::uint8_t*> inputs;
    if (frame != nullptr)
        inputs.assign(frame->extended_data,
                      frame->extended_data +
                          (av_sample_fmt_is_planar(static_cast<AVSampleFormat>(m_format)) != 0
                               ? m_layout.nb_channels
                               : 1));

    const int produced = swr_convert(m_resampler.get(), outputs.data(), room,
                                     frame == nullptr ? nullptr : inputs.data(), entering);
    check(produced, "sound could not be converted");
    for (std::vector<float>& channel : samples)
        channel.resize(static_cast<std::size_t>(produced));
    if (m_isMono)
        samples[1] = samples[0];
    return samples;
}

}
