// Work on other threads than the main thread, to which the results return.
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace pointloom {

/// A member of the object that wants the results, used on the main thread. A later start, `cancel` and the
/// end of this object discard the results of earlier work without waiting for it: work owns all that it
/// touches. The object ends before the application does.
class BackgroundWorker {
public:
    enum class Priority {
        normal, // a thread of Qt's pool
        low     // a thread of its own at nice 15, for work that takes seconds or waits
    };

    /// Connects running work with the worker that started it.
    class Link {
    public:
        bool isCancelled() const;

        /// Runs `result` on the main thread unless the work is cancelled before that.
        void post(std::function<void()> result);

    private:
        friend class BackgroundWorker;
        struct State;
        std::shared_ptr<State> m_state;
    };

    BackgroundWorker() = default;
    ~BackgroundWorker() { cancel(); }
    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;

    /// Cancels earlier work and runs `work`, which throws nothing.
    void start(std::function<void(Link)> work, Priority priority = Priority::normal);
    void cancel();

private:
    Link m_link;
};

/// A worker whose work has one result.
template <class Result>
class BackgroundTask {
public:
    /// Runs `work`, which throws nothing, then `done` with its result on the main thread.
    void start(std::function<Result()> work, std::function<void(Result)> done) {
        m_done = std::move(done);
        m_worker.start([this, work = std::move(work)](BackgroundWorker::Link link) {
            link.post([this, result = work()] { std::exchange(m_done, nullptr)(result); });
        });
    }

    void cancel() {
        m_worker.cancel();
        m_done = nullptr;
    }

    bool isRunning() const { return m_done != nullptr; }

private:
    BackgroundWorker m_worker;
    std::function<void(Result)> m_done;
};

}
