#include "media/AudioEncoder.h"

#include "media/AudioSamples.h"
#include "media/FFmpegError.h"

#include <algorithm>
#include <array>

namespace pointloom::media {

namespace {

constexpr std::int64_t bitRate = 192'000;

CodecPtr openEncoder(bool globalHeaders) {
    const AVCodec* encoder = avcodec_find_encoder_by_name("aac");
    if (encoder == nullptr)
        throw MediaError("this system's FFmpeg has no encoder aac");
    CodecPtr context(avcodec_alloc_context3(encoder));
    if (!context)
        throw MediaError("out of memory");
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->sample_rate = audioSampleRate;
    context->bit_rate = bitRate;
    context->time_base = {1, audioSampleRate};
    av_channel_layout_default(&context->ch_layout, audioChannels);
    if (globalHeaders)
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    check(avcodec_open2(context.get(), encoder, nullptr), "the sound encoder could not be opened");
    return context;
}

}

AudioEncoder::AudioEncoder(OutputFile& file)
    : m_file(file)
    , m_codec(openEncoder(file.wantsGlobalHeaders()))
    , m_packet(makePacket())
    , m_waiting(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLTP, audioChannels, m_codec->frame_size)) {
    if (!m_waiting)
        throw MediaError("out of memory");
    m_track = &file.addTrack(*m_codec);
}

bool AudioEncoder::write(const AudioFrame& frame) {
    while (frame.firstSample > m_nextSample) {
        const auto missing =
            static_cast<int>(std::min<std::int64_t>(frame.firstSample - m_nextSample, m_codec->frame_size));
        if (!append(*makeSilence(missing), 0, missing))
            return false;
    }
    const auto late =
        static_cast<int>(std::clamp<std::int64_t>(m_nextSample - frame.firstSample, 0, frame.sampleCount));
    return append(*frame.frame, late, frame.sampleCount - late);
}

bool AudioEncoder::append(const AVFrame& samples, int skipped, int count) {
    std::array<void*, audioChannels> channels{};
    for (std::size_t i = 0; i < channels.size(); ++i)
        channels[i] = samples.extended_data[i] + static_cast<std::size_t>(skipped) * sizeof(float);
    if (av_audio_fifo_write(m_waiting.get(), channels.data(), count) < count)
        return false;
    m_nextSample += count;
    return encodeWhole(false);
}

/// Hands the encoder all whole frames that wait, and the rest too when it is the `last`.
bool AudioEncoder::encodeWhole(bool last) {
    for (;;) {
        const int waiting = av_audio_fifo_size(m_waiting.get());
        if (waiting == 0 || (waiting < m_codec->frame_size && !last))
            return true;
        const AVFramePtr frame = makeSilence(std::min(waiting, m_codec->frame_size));
        std::array<void*, audioChannels> channels{};
        std::copy_n(frame->extended_data, channels.size(), channels.begin());
        frame->nb_samples = av_audio_fifo_read(m_waiting.get(), channels.data(), frame->nb_samples);
        frame->pts = m_encodedSamples;
        m_encodedSamples += frame->nb_samples;
        if (!send(frame.get()))
            return false;
    }
}

void AudioEncoder::finish() {
    if (encodeWhole(true))
        send(nullptr);
}

bool AudioEncoder::send(const AVFrame* samples) {
    if (avcodec_send_frame(m_codec.get(), samples) < 0)
        return false;
    for (;;) {
        const int result = avcodec_receive_packet(m_codec.get(), m_packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return true;
        if (result < 0)
            return false;
        m_file.write(*m_packet, *m_track, m_codec->time_base);
    }
}

}
