// The presentation times of a video's frames, read without decoding them.
#pragma once

#include "media/Recording.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace pointloom::media {

class FrameTimes {
public:
    /// Opens the first video track as `VideoReader` does. The times begin at or before the frame that is
    /// shown at `start` (seconds), where the file can be searched. Throws MediaError.
    static FrameTimes open(const Recording& recording, double start);

    FrameTimes(FrameTimes&&) noexcept;
    ~FrameTimes();

    /// Continues `next` at or before the frame that is shown at `time` (seconds), or where it is in a file
    /// that cannot be searched. Throws MediaError.
    void seek(double time);

    /// The time of the next frame, in ticks, strictly rising; empty at the end. Throws MediaError.
    std::optional<std::int64_t> next();

    /// The times of the first key frames whose decoding times are at or after each of `times` (seconds,
    /// rising), in ticks, none twice; of a split recording also some with which its files begin. Takes them
    /// from the index: empty for a file without one. Afterwards `seek` before `next`. Throws MediaError.
    std::vector<std::int64_t> keyFramesFrom(const std::vector<double>& times);

    Rational timeBase() const; // seconds a tick

private:
    struct State;
    explicit FrameTimes(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}
