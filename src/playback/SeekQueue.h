// Keeps at most one seek under way in the player and the newest one waiting, so that seeks do not queue up
// while the playhead is dragged.
#pragma once

#include <optional>

namespace pointloom::playback {

struct Seek {
    enum class Kind { exact, keyframe, stepBack };

    Kind kind = Kind::exact;
    double time = 0;              // seconds on the source's timeline; unused by a step back
    bool fromFurtherBack = false; // a second try that starts decoding earlier

    bool operator==(const Seek&) const = default;
};

class SeekQueue {
public:
    /// Most steps that wait, so that stepping ends soon after a held key is released.
    static constexpr int maximumWaitingSteps = 3;

    bool busy() const { return m_current.has_value(); }
    std::optional<Seek> current() const { return m_current; }
    std::optional<Seek> waiting() const { return m_waiting; }

    /// Queues a seek in place of any that waits. Returns it when it can start now; it is then under way.
    std::optional<Seek> request(Seek seek);

    /// Queues single steps, backward when negative. Returns how many to go now.
    int requestSteps(int frames);

    /// The opening of a file counts as a seek: it ends with a first frame.
    void begin(Seek seek) { m_current = seek; }

    /// The current seek has ended.
    void finish() { m_current.reset(); }

    /// The seek that was waiting, when nothing is under way; it is then under way.
    std::optional<Seek> takeWaiting();

    /// The steps that were waiting, when nothing else is under way or waiting: one backward (which is
    /// then under way), or all forward.
    int takeSteps();

    void clear();

private:
    std::optional<Seek> m_current;
    std::optional<Seek> m_waiting;
    int m_waitingSteps = 0; // after m_waiting
};

}
