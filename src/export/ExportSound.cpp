#include "export/ExportSound.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

constexpr double fadeLength = 0.01 * media::audioSampleRate; // samples at each side of a seam

}

std::optional<ExportSound> ExportSound::open(const media::Recording& recording,
                                             const std::vector<ExportPart>& parts, media::Rational timeBase) {
    std::vector<Part> sound;
    for (const ExportPart& part : parts)
        sound.push_back(
            {part.range.decodingStart(timeBase), part.range.decodingEnd(timeBase),
             std::llround(static_cast<double>(part.offset) * timeBase.value() * media::audioSampleRate)});
    auto reader = media::AudioReader::open(recording, sound.front().start, sound.front().end);
    if (!reader)
        return std::nullopt;
    return ExportSound(recording, std::move(sound), *std::move(reader));
}

std::optional<media::AudioFrame> ExportSound::read() {
    while (true) {
        if (auto run = m_reader ? m_reader->read() : std::nullopt) {
            place(*run);
            if (run->sampleCount > 0)
                return run;
        }
        if (m_current + 1 == m_parts.size())
            return std::nullopt;
        const Part& next = m_parts[++m_current];
        m_reader = media::AudioReader::open(m_recording, next.start, next.end);
    }
}

// None for the last part.
std::optional<std::int64_t> ExportSound::endOf(std::size_t part) const {
    return part + 1 < m_parts.size() ? std::optional(m_parts[part + 1].firstSample) : std::nullopt;
}

// Moves a run to its place in the new file, cuts what would reach into the next part, and fades it at seams.
void ExportSound::place(media::AudioFrame& run) const {
    const std::int64_t start = m_parts[m_current].firstSample;
    const std::optional<std::int64_t> end = endOf(m_current);
    const std::int64_t first = start + run.firstSample;
    const std::int64_t space = end ? std::max<std::int64_t>(*end - first, 0) : run.sampleCount;
    run.place(first, static_cast<int>(std::min<std::int64_t>(space, run.sampleCount)));
    for (int channel = 0; channel < media::audioChannels; ++channel) {
        double position = static_cast<double>(first) + 0.5;
        for (float& sample : run.channel(channel)) {
            const double sinceSeam = m_current > 0 ? (position - static_cast<double>(start)) / fadeLength : 1;
            const double untilSeam = end ? (static_cast<double>(*end) - position) / fadeLength : 1;
            sample *= static_cast<float>(std::min({1.0, sinceSeam, untilSeam}));
            ++position;
        }
    }
}

}
