// Long work behind the screens, at a priority that takes time from nobody.
#pragma once

#include <functional>
#include <memory>
#include <QThread>

namespace pointloom {

/// A thread of its own that can be told to stop. Nobody ever waits for it but the end of the program, for a
/// moment: it may be reading from a disk that sleeps.
class IdleWorker {
public:
    class Link {
    public:
        bool isCancelled() const;

        /// Runs `result` on the main thread, unless the work has been cancelled by then.
        void post(std::function<void()> result);

    private:
        friend class IdleWorker;
        struct State;
        std::shared_ptr<State> m_state;
    };

    /// `work` runs on the new thread and owns all that it touches. Call on the main thread.
    explicit IdleWorker(std::function<void(Link)> work, QThread::Priority priority = QThread::IdlePriority);

    /// Cancels the work; nothing that it posts is run any more.
    ~IdleWorker();

    IdleWorker(const IdleWorker&) = delete;
    IdleWorker& operator=(const IdleWorker&) = delete;

private:
    Link m_link;
};

}
