#include "media/MediaWriter.h"

#include "media/FrameEncoder.h"
#include "media/OutputFile.h"
#include "media/SideData.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <map>

namespace pointloom::media {

namespace {

/// Times of decoding for packets that leave an encoder in another order than their frames went in. x265
/// returns uninitialised memory as decoding times when a clip ends before its first reordered frame. These
/// are as x264 and x265 define them: the times of the frames in order, moved ahead by as many frames as may
/// be reordered.
class DecodeTimes {
public:
    void frameWentIn(std::int64_t timestamp) { m_timestamps.push_back(timestamp); }

    /// The time for the next packet; call once for each, after its frame went in.
    std::int64_t next() {
        if (m_packets == 0)
            m_lead = m_timestamps.size() > reorderDepth ? m_timestamps[reorderDepth] - m_timestamps.front()
                                                        : m_timestamps.back() - m_timestamps.front() + 1;
        if (m_packets < reorderDepth)
            return m_timestamps.at(m_packets++) - m_lead;
        const std::int64_t time = m_timestamps.front();
        m_timestamps.pop_front();
        return time;
    }

private:
    static constexpr std::size_t reorderDepth = 2; // frames, of x265 with B-frames in a pyramid

    std::deque<std::int64_t> m_timestamps; // that no packet has yet; all while packets are below the depth
    std::size_t m_packets = 0;             // counted up to the depth
    std::int64_t m_lead = 0;               // ticks
};

/// Encodes frames into the packets of one track.
class VideoEncoder {
public:
    /// Opens the encoder and adds its track to `file`, which must outlive it. Throws MediaError.
    VideoEncoder(OutputFile& file, const VideoSettings& settings)
        : m_file(file)
        , m_settings(settings)
        , m_encoder(settings, file.wantsGlobalHeaders())
        , m_track(file.addTrack(m_encoder.context())) {
        writeOrientation(m_track, settings.orientation, settings.size);
        if (settings.isHdr())
            writeHdrMetadata(m_track, settings.hdr);
        const double ticks = 1 / (settings.frameRate.value() * settings.timeBase.value());
        m_usualDuration = std::max<std::int64_t>(1, std::llround(ticks));
    }

    /// Throws MediaError.
    void write(const VideoFrame& frame) {
        if (QSize(frame.width(), frame.height()) != m_settings.size || frame.format() != m_settings.format)
            throw MediaError("a picture does not have the size or layout that the file was made for");
        const std::int64_t timestamp =
            av_rescale_q(frame.timestamp(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
        if (m_lastTimestamp != AV_NOPTS_VALUE && timestamp <= m_lastTimestamp)
            throw MediaError("the times of the pictures do not rise");
        m_lastTimestamp = timestamp;
        const std::int64_t duration =
            av_rescale_q(frame.duration(), toAv(frame.timeBase()), toAv(m_settings.timeBase));
        if (countsDecodeTimes())
            m_decodeTimes.frameWentIn(timestamp);
        m_durations[timestamp] = duration > 0 ? duration : m_usualDuration;

        m_encoder.send(frame, timestamp);
        writePackets();
    }

    /// Flushes the encoder. Throws MediaError.
    void finish() {
        m_encoder.finish();
        writePackets();
    }

private:
    void writePackets() {
        while (AVPacket* packet = m_encoder.next()) {
            if (const auto found = m_durations.find(packet->pts); found != m_durations.end()) {
                packet->duration = found->second;
                m_durations.erase(found);
            }
            packet->dts = decodeTimeOf(*packet);
            m_file.write(*packet, m_track, m_encoder.context().time_base);
        }
    }

    // Hardware encoders keep the frames in order.
    std::int64_t decodeTimeOf(const AVPacket& packet) {
        if (m_settings.encoder != EncoderKind::software)
            return packet.pts;
        return countsDecodeTimes() ? m_decodeTimes.next() : packet.dts;
    }

    bool countsDecodeTimes() const {
        return m_settings.encoder == EncoderKind::software && m_settings.codec == VideoCodec::hevc;
    }

    OutputFile& m_file;
    VideoSettings m_settings;
    FrameEncoder m_encoder;
    AVStream& m_track;                                // owned by the file
    std::map<std::int64_t, std::int64_t> m_durations; // by timestamp, of frames inside of the encoder
    DecodeTimes m_decodeTimes;                        // of x265
    std::int64_t m_lastTimestamp = AV_NOPTS_VALUE;
    std::int64_t m_usualDuration = 1; // ticks
};

CodecPtr openAudioEncoder(bool globalHeaders) {
    const AVCodec* encoder = avcodec_find_encoder_by_name("aac");
    if (encoder == nullptr)
        throw MediaError("this system's FFmpeg has no encoder aac");
    CodecPtr context = allocated(CodecPtr(avcodec_alloc_context3(encoder)));
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->sample_rate = audioSampleRate;
    context->bit_rate = 192'000;
    context->time_base = {1, audioSampleRate};
    av_channel_layout_default(&context->ch_layout, audioChannels);
    if (globalHeaders)
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    check(avcodec_open2(context.get(), encoder, nullptr), "the sound encoder could not be opened");
    return context;
}

/// Encodes stereo sound to AAC into the packets of one track.
class AudioEncoder {
public:
    /// Opens the encoder and adds its track to `file`, which must outlive it. Throws MediaError.
    explicit AudioEncoder(OutputFile& file)
        : m_file(file)
        , m_codec(openAudioEncoder(file.wantsGlobalHeaders()))
        , m_packet(makePacket())
        , m_waiting(allocated(
              AudioFifoPtr(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLTP, audioChannels, m_codec->frame_size)))) {
        m_track = &file.addTrack(*m_codec);
    }

    /// Samples missing before the frame become silence, samples that came before are left out.
    /// False when the encoder refuses them. Throws MediaError when the file cannot be written.
    [[nodiscard]] bool write(const AudioFrame& frame) {
        while (frame.firstSample > m_nextSample) {
            const auto missing = static_cast<int>(
                std::min<std::int64_t>(frame.firstSample - m_nextSample, m_codec->frame_size));
            if (!append(*makeSilence(missing), 0, missing))
                return false;
        }
        const auto late = static_cast<int>(
            std::clamp<std::int64_t>(m_nextSample - frame.firstSample, 0, frame.sampleCount));
        return append(*frame.frame, late, frame.sampleCount - late);
    }

    /// Flushes the encoder. Throws MediaError.
    void finish() {
        if (encodeWhole(true))
            send(nullptr);
    }

private:
    bool append(const AVFrame& samples, int skipped, int count) {
        std::array<void*, audioChannels> channels{};
        for (std::size_t i = 0; i < channels.size(); ++i)
            channels[i] = samples.extended_data[i] + static_cast<std::size_t>(skipped) * sizeof(float);
        if (av_audio_fifo_write(m_waiting.get(), channels.data(), count) < count)
            return false;
        m_nextSample += count;
        return encodeWhole(false);
    }

    /// Passes all whole frames that wait to the encoder, and the rest too when it is the `last`.
    bool encodeWhole(bool last) {
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

    bool send(const AVFrame* samples) {
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

    OutputFile& m_file;
    CodecPtr m_codec;
    AVStream* m_track = nullptr; // owned by the file
    PacketPtr m_packet;
    AudioFifoPtr m_waiting;        // samples that do not yet fill a frame of the encoder
    std::int64_t m_nextSample = 0; // expected from the caller
    std::int64_t m_encodedSamples = 0;
};

}

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

struct MediaWriter::State {
    OutputFile file;
    VideoEncoder video;
    std::optional<AudioEncoder> audio;

    State(const QString& path, const VideoSettings& settings, bool withAudio, const FileTexts& texts)
        : file(path, settings.codec == VideoCodec::prores ? "mov" : "mp4")
        , video(file, settings) {
        if (withAudio) {
            try {
                audio.emplace(file);
            } catch (const MediaError&) {
                audio.reset(); // continue without sound
            }
        }
        file.addTexts(texts);
        file.writeHeader(settings.timeBase);
    }
};

MediaWriter::MediaWriter(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
MediaWriter::~MediaWriter() = default;

MediaWriter MediaWriter::create(const QString& path, const VideoSettings& video, bool withAudio,
                                const FileTexts& texts) {
    return MediaWriter(std::make_unique<State>(path, video, withAudio, texts));
}

bool MediaWriter::hasAudio() const {
    return m_state->audio.has_value();
}

void MediaWriter::writeVideo(const VideoFrame& frame) {
    m_state->video.write(frame);
}

bool MediaWriter::writeAudio(const AudioFrame& frame) {
    return m_state->audio && m_state->audio->write(frame);
}

void MediaWriter::finish() {
    m_state->video.finish();
    if (m_state->audio)
        m_state->audio->finish();
    m_state->file.finish();
}

struct SoundWriter::State {
    OutputFile file;
    AudioEncoder encoder;

    State(const QString& path, const QString& comment)
        : file(path, "mp4")
        , encoder(file) {
        file.addTexts({.comment = comment});
        file.writeHeader({1, audioSampleRate});
    }
};

SoundWriter::SoundWriter(const QString& path, const QString& comment)
    : m_state(std::make_unique<State>(path, comment)) {}
SoundWriter::~SoundWriter() = default;

void SoundWriter::write(const AudioFrame& frame) {
    (void)m_state->encoder.write(frame);
}

void SoundWriter::finish() {
    m_state->encoder.finish();
    m_state->file.finish();
}

}
