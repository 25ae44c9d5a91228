// The presentation times of a video's frames, read without decoding them.
#pragma once

#include "media/FrameFormat.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <QString>
#include <vector>

namespace pointloom::media {

class FrameTimes {
public:
    /// Opens the first video track of a file as `VideoReader` does. The times begin at or before the frame
    /// that is shown at `start` (seconds), where the file can be searched. Throws MediaError.
    static FrameTimes open(const QString& path, double start);

    FrameTimes(FrameTimes&&) noexcept;
    ~FrameTimes();

    /// Continues `next` at or before the frame that is shown at `time` (seconds), or where it is in a file
    /// that cannot be searched.
    void seek(double time);

    /// The time of the next frame, in ticks, strictly rising; empty at the end.
    std::optional<std::int64_t> next();

    /// The times of the first key frames whose decoding times are at or after each of `times` (seconds,
    /// rising), in ticks, none twice. Takes them from the file's index: empty for a file without one.
    /// Afterwards `seek` before `next`.
    std::vector<std::int64_t> keyFramesFrom(const std::vector<double>& times);

    Rational timeBase() const; // seconds a tick

private:
    struct State;
    explicit FrameTimes(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}
