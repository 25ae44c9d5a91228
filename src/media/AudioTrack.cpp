#include "media/AudioTrack.h"

#include "media/AudioReader.h"

#include <algorithm>
#include <cmath>

namespace pointloom::media {

namespace {

// Decoders need some sound before the wanted one to settle: two frames of AAC, 80 ms of Opus.
constexpr double lead = 1.0; // seconds

// Phones give timestamps that swing by ten milliseconds around steady sound; beyond this they mean a gap or
// an overlap. A lost frame of AAC is 21 ms or more.
constexpr double toleratedShift = 0.020 * audioSampleRate; // samples

constexpr double farthest = 1e12;     // samples; timestamps beyond are nonsense
constexpr double farthestTick = 1e17; // a damaged file may name a duration with no end

}

AudioTrack::AudioTrack(const QString& path, int streamIndex, double start)
    : m_file(InputFile::open(path))
    , m_start(start)
    , m_secondsPerTick(av_q2d(m_file.context()->streams[streamIndex]->time_base))
    , m_decoder(m_file.context(), streamIndex, 1) {
    m_file.keepOnly(streamIndex);
    if (start > lead) {
        const double exactTicks = std::floor((start - lead) / m_secondsPerTick);
        const auto ticks = static_cast<std::int64_t>(std::min(exactTicks, farthestTick));
        if (av_seek_frame(m_file.context(), streamIndex, ticks, AVSEEK_FLAG_BACKWARD) >= 0)
            m_decoder.flush();
    }
}

int AudioTrack::mixInto(float* left, float* right, std::int64_t position, int count) {
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

/// Decodes until a piece is ready. False at the end of the track.
bool AudioTrack::decodeMore() {
    while (m_pieces.empty()) {
        const AVFramePtr frame = m_decoder.next();
        try {
            if (frame)
                place(*frame);
            else
                endRun();
        } catch (const MediaError&) {
            m_resampler.reset(); // sound that cannot be converted is silence
        }
        if (!frame)
            break;
    }
    return !m_pieces.empty();
}

void AudioTrack::place(const AVFrame& frame) {
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

/// Where the frame belongs, in samples of the output.
double AudioTrack::placeOf(const AVFrame& frame) const {
    if (frame.best_effort_timestamp != AV_NOPTS_VALUE)
        return (static_cast<double>(frame.best_effort_timestamp) * m_secondsPerTick - m_start) *
               audioSampleRate;
    if (m_runRate > 0)
        return m_runPosition + static_cast<double>(m_runConsumed) * audioSampleRate / m_runRate;
    return -m_start * audioSampleRate;
}

void AudioTrack::beginRun(const AVFrame& frame, double position) {
    endRun();
    m_resampler.emplace(frame);
    m_runPosition = position;
    m_runRate = frame.sample_rate;
    m_runConsumed = 0;
    m_runProduced = 0;
}

void AudioTrack::endRun() {
    if (!m_resampler)
        return;
    append(m_resampler->convert(nullptr));
    m_resampler.reset();
}

void AudioTrack::append(StereoSamples samples) {
    const auto count = static_cast<std::int64_t>(samples[0].size());
    if (count > 0)
        m_pieces.push_back({std::llround(m_runPosition) + m_runProduced, std::move(samples)});
    m_runProduced += count;
}

}
