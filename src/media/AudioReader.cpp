#include "media/AudioReader.h"

#include "media/OpenedMedia.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>
#include <utility>
#include <vector>

namespace pointloom::media {

namespace {

constexpr int lowestRate = 1000;     // Hz
constexpr int highestRate = 768'000; // Hz

/// Copies the frame's layout, or the usual one for its number of channels when it names none.
void copyLayout(AVChannelLayout& target, const AVChannelLayout& source) {
    if (source.order == AV_CHANNEL_ORDER_NATIVE)
        check(av_channel_layout_copy(&target, &source), "sound could not be converted");
    else
        av_channel_layout_default(&target, source.nb_channels);
}

using StereoSamples = std::array<std::vector<float>, 2>; // left, right; of one length

/// Converts decoded sound of any rate, sample format and channel layout to stereo at `audioSampleRate`.
class StereoResampler {
public:
    /// Converts sound like that of `frame`. One channel goes to both sides at its own level; more than two
    /// are mixed so that no sum can exceed full level. Throws MediaError when such sound cannot be converted.
    explicit StereoResampler(const AVFrame& frame)
        : m_format(frame.format)
        , m_rate(frame.sample_rate)
        , m_isMono(frame.ch_layout.nb_channels == 1) {
        if (m_rate < lowestRate || m_rate > highestRate)
            throw MediaError("sound could not be converted: its sample rate is not plausible");
        copyLayout(m_layout, frame.ch_layout);
        AVChannelLayout output{};
        av_channel_layout_default(&output, m_isMono ? 1 : audioChannels);

        SwrContext* context = nullptr;
        const int made =
            swr_alloc_set_opts2(&context, &output, AV_SAMPLE_FMT_FLTP, audioSampleRate, &m_layout,
                                static_cast<AVSampleFormat>(m_format), m_rate, 0, nullptr);
        m_resampler.reset(context);
        check(made, "sound could not be converted");
        av_opt_set_double(context, "rematrix_maxval", 1.0, 0);
        check(swr_init(context), "sound could not be converted");
    }

    ~StereoResampler() { av_channel_layout_uninit(&m_layout); }

    StereoResampler(const StereoResampler&) = delete;
    StereoResampler& operator=(const StereoResampler&) = delete;

    /// Whether `frame` is of the kind that this was made for.
    bool takes(const AVFrame& frame) const {
        if (frame.format != m_format || frame.sample_rate != m_rate)
            return false;
        AVChannelLayout layout{};
        copyLayout(layout, frame.ch_layout);
        const bool same = av_channel_layout_compare(&layout, &m_layout) == 0;
        av_channel_layout_uninit(&layout);
        return same;
    }

    /// Takes `frame` and returns the samples that are ready; null flushes. Throws MediaError.
    StereoSamples convert(const AVFrame* frame) {
        const int entering = frame == nullptr ? 0 : frame->nb_samples;
        const int most = std::max(swr_get_out_samples(m_resampler.get(), entering), 0);
        StereoSamples samples;
        samples.fill(std::vector<float>(static_cast<std::size_t>(most)));
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

        const int produced = swr_convert(m_resampler.get(), outputs.data(), most,
                                         frame == nullptr ? nullptr : inputs.data(), entering);
        check(produced, "sound could not be converted");
        for (std::vector<float>& channel : samples)
            channel.resize(static_cast<std::size_t>(produced));
        if (m_isMono)
            samples[1] = samples[0];
        return samples;
    }

private:
    ResamplerPtr m_resampler;
    AVChannelLayout m_layout{};
    int m_format;
    int m_rate; // Hz
    bool m_isMono;
};

// Decoders need earlier sound to settle: two frames of AAC, 80 ms of Opus.
constexpr double lead = 1.0; // seconds

// Phones write timestamps that vary by ten milliseconds around continuous sound; a larger shift is a gap or
// an overlap. A lost frame of AAC is 21 ms or more.
constexpr double toleratedShift = 0.020 * audioSampleRate; // samples

constexpr double farthest = 1e12;     // samples; timestamps beyond are taken for damage
constexpr double farthestTick = 1e17; // limits what a damaged file gives as duration

// By how much the sound of a split recording's file may be longer than its frames: encoders cut sound into
// blocks, which end at no frame.
constexpr double reachAfterSeam = 0.05; // seconds

// By how much it may begin before its frames, where the file before has no more: programs that split files
// leave there what was stored after the cut, and hide it by an edit list.
constexpr double reachBeforeSeam = 0.5; // seconds

/// Where the sound of a file belongs, seconds of the recording.
struct PlacedSound {
    QString path;
    double offset = 0; // added to the file's own times
    double from = -std::numeric_limits<double>::infinity();
    double until = std::numeric_limits<double>::infinity();
};

std::vector<PlacedSound> placedSounds(const RecordingLayout& layout) {
    std::vector<PlacedSound> sounds;
    for (std::size_t i = 0; i < layout.files.size(); ++i) {
        PlacedSound sound{layout.files[i].path, layout.offsetOf(i)};
        if (i > 0)
            sound.from = layout.beginOf(i) - reachBeforeSeam;
        if (i + 1 < layout.files.size())
            sound.until = layout.beginOf(i + 1) + reachAfterSeam;
        sounds.push_back(sound);
    }
    return sounds;
}

/// Decodes one track of each file and puts its sound in its place on the timeline.
class AudioTrack {
public:
    /// Takes the audio track of that `number`, counted from 0, where a file has one. Opens the files once
    /// more, for this track alone, so that tracks stored far apart need no memory. Sample 0 is at `start`,
    /// seconds of the recording's timeline. `first` may be the only file, open already. Throws MediaError
    /// when the file at `start` cannot be decoded.
    AudioTrack(std::vector<PlacedSound> sounds, std::size_t number, double start,
               std::optional<InputFile> first)
        : m_sounds(std::move(sounds))
        , m_number(number)
        , m_start(start) {
        while (m_current + 1 < m_sounds.size() && m_sounds[m_current].until <= start)
            ++m_current;
        openFile(std::move(first));
    }

    /// Adds the track's sound to `count` samples of both channels, the first of which is sample `position`.
    /// Positions must not go back. Returns how many of them lie before the track's end.
    int mixInto(float* left, float* right, std::int64_t position, int count) {
        const std::int64_t end = position + count;
        for (;;) {
            while (!m_pieces.empty() && m_pieces.front().end() <= position)
                m_pieces.pop_front();
            if (m_pieces.empty()) {
                if (!decodeMore())
                    return static_cast<int>(std::max<std::int64_t>(position - (end - count), 0));
                continue;
            }
            const Piece& piece = m_pieces.front();
            if (piece.position >= end)
                return count;
            const std::int64_t from = std::max(piece.position, position);
            const std::int64_t to = std::min(piece.end(), end);
            for (std::int64_t i = from; i < to; ++i) {
                const auto source = static_cast<std::size_t>(i - piece.position);
                left[i - (end - count)] += piece.samples[0][source];
                right[i - (end - count)] += piece.samples[1][source];
            }
            position = to;
            if (position == end)
                return count;
        }
    }

private:
    struct Piece {
        std::int64_t position = 0;
        StereoSamples samples;

        std::int64_t end() const { return position + static_cast<std::int64_t>(samples[0].size()); }
    };

    /// Opens the current file, at `m_start` where that is inside of it. Throws MediaError.
    void openFile(std::optional<InputFile> opened = {}) {
        m_decoder.reset();
        m_file.emplace(opened ? *std::move(opened) : InputFile::open(m_sounds[m_current].path));
        const std::vector<int> streams = findAudioTracks(*m_file->context());
        if (m_number >= streams.size())
            return;
        const int stream = streams[m_number];
        m_secondsPerTick = av_q2d(m_file->context()->streams[stream]->time_base);
        m_decoder.emplace(m_file->context(), stream, 1,
                          m_current == 0 ? TrackDecoder::Sound::shown : TrackDecoder::Sound::all);
        m_file->keepOnly(stream);
        const double start = m_start - m_sounds[m_current].offset;
        if (start > lead) {
            const double exactTicks = std::floor((start - lead) / m_secondsPerTick);
            const auto ticks = static_cast<std::int64_t>(std::min(exactTicks, farthestTick));
            if (av_seek_frame(m_file->context(), stream, ticks, AVSEEK_FLAG_BACKWARD) >= 0)
                m_decoder->flush();
        }
    }

    /// Decodes until a piece is ready. False at the end of the last file's track.
    bool decodeMore() {
        while (m_pieces.empty()) {
            const AVFramePtr frame = m_decoder ? m_decoder->next() : nullptr;
            if (frame && m_current > 0)
                frame->nb_samples -= TrackDecoder::hiddenAtEnd(*frame);
            try {
                if (frame)
                    place(*frame);
                else
                    endRun();
            } catch (const MediaError&) {
                m_resampler.reset(); // sound that cannot be converted is silence
            }
            if (!frame && m_pieces.empty() && !goToNextFile())
                break;
        }
        return !m_pieces.empty();
    }

    bool goToNextFile() {
        if (m_current + 1 == m_sounds.size())
            return false;
        ++m_current;
        try {
            openFile();
        } catch (const MediaError&) {
            m_decoder.reset(); // a file that cannot be read is silence
        }
        return true;
    }

    void place(const AVFrame& frame) {
        const double position = placeOf(frame);
        if (std::abs(position) > farthest)
            return;
        if (m_resampler && m_resampler->takes(frame)) {
            const double expected =
                m_runPosition + static_cast<double>(m_runConsumed) * audioSampleRate / m_runRate;
            if (std::abs(position - expected) > toleratedShift)
                beginRun(frame, position);
        } else {
            beginRun(frame, position);
        }
        m_runConsumed += frame.nb_samples;
        append(m_resampler->convert(&frame));
    }

    /// The frame's place, in samples of the output.
    double placeOf(const AVFrame& frame) const {
        const double offset = m_sounds[m_current].offset;
        if (frame.best_effort_timestamp != AV_NOPTS_VALUE)
            return (static_cast<double>(frame.best_effort_timestamp) * m_secondsPerTick + offset - m_start) *
                   audioSampleRate;
        if (m_resampler && m_runRate > 0)
            return m_runPosition + static_cast<double>(m_runConsumed) * audioSampleRate / m_runRate;
        return (offset - m_start) * audioSampleRate;
    }

    void beginRun(const AVFrame& frame, double position) {
        endRun();
        m_resampler.emplace(frame);
        m_runPosition = position;
        m_runRate = frame.sample_rate;
        m_runConsumed = 0;
        m_runProduced = 0;
    }

    void endRun() {
        if (!m_resampler)
            return;
        append(m_resampler->convert(nullptr));
        m_resampler.reset();
    }

    void append(StereoSamples samples) {
        const auto count = static_cast<std::int64_t>(samples[0].size());
        Piece piece{std::llround(m_runPosition) + m_runProduced, std::move(samples)};
        m_runProduced += count;
        cutToSeams(piece);
        if (!piece.samples[0].empty())
            m_pieces.push_back(std::move(piece));
    }

    void cutToSeams(Piece& piece) const {
        const auto inside = [&](double seconds) {
            const double position =
                std::clamp((seconds - m_start) * audioSampleRate, static_cast<double>(piece.position),
                           static_cast<double>(piece.end()));
            return std::llround(position) - piece.position;
        };
        const std::int64_t first = inside(m_sounds[m_current].from);
        const std::int64_t last = inside(m_sounds[m_current].until);
        for (std::vector<float>& channel : piece.samples) {
            channel.resize(static_cast<std::size_t>(last));
            channel.erase(channel.begin(), channel.begin() + first);
        }
        piece.position += first;
    }

    std::vector<PlacedSound> m_sounds;
    std::size_t m_number; // of the track in each file
    std::size_t m_current = 0;
    double m_start; // seconds
    std::optional<InputFile> m_file;
    std::optional<TrackDecoder> m_decoder; // none where the current file has no such track
    double m_secondsPerTick = 0;
    std::deque<Piece> m_pieces; // decoded, not yet consumed

    // A run is sound without a gap: its place is computed once, then samples are counted.
    std::optional<StereoResampler> m_resampler;
    double m_runPosition = 0;       // samples of the output
    std::int64_t m_runConsumed = 0; // samples at the source's rate
    std::int64_t m_runProduced = 0; // samples of the output
    int m_runRate = 0;              // Hz
};

constexpr std::int64_t samplesAtOnce = 1024; // as many as an AAC frame holds
constexpr std::size_t mostTracksMixed = 16;

}

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

std::span<const float> AudioFrame::channel(int index) const {
    return {reinterpret_cast<const float*>(frame->extended_data[index]),
            static_cast<std::size_t>(sampleCount)};
}

std::span<float> AudioFrame::channel(int index) {
    return {reinterpret_cast<float*>(frame->extended_data[index]), static_cast<std::size_t>(sampleCount)};
}

void AudioFrame::place(std::int64_t first, int count) {
    firstSample = first;
    sampleCount = std::min(sampleCount, count);
    frame->pts = first;
    frame->nb_samples = sampleCount;
}

struct AudioReader::State {
    std::vector<std::unique_ptr<AudioTrack>> tracks;
    std::int64_t position = 0;
    std::optional<std::int64_t> end; // samples
};

AudioReader::AudioReader(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
AudioReader::AudioReader(AudioReader&&) noexcept = default;
AudioReader& AudioReader::operator=(AudioReader&&) noexcept = default;
AudioReader::~AudioReader() = default;

std::optional<AudioReader> AudioReader::open(const Recording& recording, double start,
                                             std::optional<double> end) {
    const RecordingLayout layout = layoutOf(recording);
    std::optional<InputFile> first;
    if (!layout.isSplit())
        first = InputFile::open(recording.first());
    const std::size_t tracks =
        first ? findAudioTracks(*first->context()).size() : static_cast<std::size_t>(layout.audioTracks);
    const std::vector<PlacedSound> sounds = placedSounds(layout);
    auto state = std::make_unique<State>();
    for (std::size_t number = 0; number < std::min(tracks, mostTracksMixed); ++number) {
        try {
            state->tracks.push_back(
                std::make_unique<AudioTrack>(sounds, number, start, std::exchange(first, std::nullopt)));
        } catch (const MediaError&) {
            continue; // a track that its decoder refuses is silent
        }
    }
    if (state->tracks.empty())
        return std::nullopt;
    if (end)
        state->end = std::llround((*end - start) * audioSampleRate);
    return AudioReader(std::move(state));
}

std::optional<AudioFrame> AudioReader::read() {
    const std::int64_t position = m_state->position;
    const std::int64_t left = m_state->end ? *m_state->end - position : samplesAtOnce;
    const auto count = static_cast<int>(std::min(left, samplesAtOnce));
    if (count <= 0)
        return std::nullopt;

    AudioFrame block{makeSilence(count), position, 0};
    auto* leftChannel = reinterpret_cast<float*>(block.frame->extended_data[0]);
    auto* rightChannel = reinterpret_cast<float*>(block.frame->extended_data[1]);
    for (const auto& track : m_state->tracks)
        block.sampleCount =
            std::max(block.sampleCount, track->mixInto(leftChannel, rightChannel, position, count));
    if (block.sampleCount == 0)
        return std::nullopt;

    for (float* channel : {leftChannel, rightChannel})
        std::transform(channel, channel + count, channel,
                       [](float sample) { return std::clamp(sample, -1.0F, 1.0F); });
    block.frame->nb_samples = block.sampleCount;
    block.frame->pts = position;
    m_state->position += block.sampleCount;
    return block;
}

}
