// Keeps at most one jump under way in the player and the newest one waiting, so that dragging the
// playhead never piles up work.
#pragma once

#include <optional>

namespace pointloom::playback {

struct Jump {
    enum class Kind { Exact, Keyframe, StepBack };

    Kind kind = Kind::Exact;
    double time = 0;              // seconds on the source's timeline; without meaning for a step
    bool fromFurtherBack = false; // a second try that starts decoding earlier

    bool operator==(const Jump&) const = default;
};

class SeekQueue {
public:
    /// Steps that may wait; a key held down does not go on stepping long after it is let go.
    static constexpr int maximumWaitingSteps = 3;

    bool busy() const { return m_current.has_value(); }
    std::optional<Jump> current() const { return m_current; }
    std::optional<Jump> waiting() const { return m_waiting; }

    /// Notes a jump to a time, which replaces whatever waits. Returns the jump when it can start now.
    std::optional<Jump> request(Jump jump);

    /// Notes single frames, backward when negative. Returns how many to go now.
    int requestSteps(int frames);

    /// The opening of a file counts as a jump: it ends with a first picture.
    void begin(Jump jump) { m_current = jump; }

    /// The current jump has ended.
    void finish() { m_current.reset(); }

    /// The jump that was waiting, when there is one and nothing is under way; it is then under way.
    std::optional<Jump> takeWaiting();

    /// The steps that were waiting, when nothing else is under way or waiting: one backward (which is
    /// then under way), or all forward.
    int takeSteps();

    void clear();

private:
    std::optional<Jump> m_current;
    std::optional<Jump> m_waiting;
    int m_waitingSteps = 0; // after m_waiting
};

}
