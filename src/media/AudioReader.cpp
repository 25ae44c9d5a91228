#include "media/AudioReader.h"

#include "media/AudioSamples.h"
#include "media/AudioTrack.h"
#include "media/VideoTrack.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pointloom::media {

namespace {

constexpr std::int64_t samplesAtOnce = 1024; // what one AAC frame holds
constexpr std::size_t mostTracksMixed = 16;

}

std::span<const float> AudioFrame::channel(int index) const {
    return {reinterpret_cast<const float*>(frame->extended_data[index]),
            static_cast<std::size_t>(sampleCount)};
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

std::optional<AudioReader> AudioReader::open(const QString& path, double start, std::optional<double> end) {
    const InputFile file = InputFile::open(path);
    auto state = std::make_unique<State>();
    for (const int stream : findAudioTracks(*file.context())) {
        if (state->tracks.size() == mostTracksMixed)
            break;
        try {
            state->tracks.push_back(std::make_unique<AudioTrack>(path, stream, start));
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
