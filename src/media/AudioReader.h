// All sound of a recording as one stereo track.
#pragma once

#include "media/Recording.h"
#include "media/VideoFrame.h"

#include <memory>
#include <optional>
#include <span>

namespace pointloom::media {

constexpr int audioSampleRate = 44100; // Hz
constexpr int audioChannels = 2;

/// Consecutive samples: planar 32-bit float, `audioChannels` at `audioSampleRate`.
struct AudioFrame {
    AVFramePtr frame; // its pts counts samples from the start of the exported range
    std::int64_t firstSample = 0;
    int sampleCount = 0;

    /// The samples of one channel, 0 or 1; -1 to 1.
    std::span<const float> channel(int index) const;
    std::span<float> channel(int index);

    /// Counts the samples from another start, and leaves out all after the first `count`.
    void place(std::int64_t first, int count);
};

/// A frame of `sampleCount` silent samples in the format of AudioFrame. Throws MediaError when memory is
/// short.
AVFramePtr makeSilence(int sampleCount);

/// Decodes every audio track, mixes them to stereo and cuts the sound to a range of the timeline.
/// Gaps and late starts become silence, so that the sound keeps its place; an early end stays early. Where
/// files of a recording meet, each one's sound keeps its place beside its own frames, and may reach over the
/// seam by as much as an encoder's blocks do.
class AudioReader {
public:
    /// `start` and `end` in seconds of the source's timeline; no end means the end of the sound.
    /// Empty when no file has a track that can be decoded. Throws MediaError as `readMediaInfo`.
    static std::optional<AudioReader> open(const Recording& recording, double start,
                                           std::optional<double> end);

    AudioReader(AudioReader&&) noexcept;
    AudioReader& operator=(AudioReader&&) noexcept;
    ~AudioReader();

    /// The next samples, beginning where the last ones ended; empty at the end. Throws MediaError.
    std::optional<AudioFrame> read();

private:
    struct State;
    explicit AudioReader(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}
