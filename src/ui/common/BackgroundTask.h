// One computation on Qt's thread pool, its result delivered on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <QFuture>
#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

namespace pointloom {

/// A member of the widget that wants the result. A later start, `cancel` or the end of this object discards
/// the result of an earlier one, whose work may still run to its end: it must own all that it touches.
template <class Result>
class BackgroundTask {
public:
    using Done = std::function<void(Result)>;

    BackgroundTask() {
        QObject::connect(&m_watcher, &QFutureWatcherBase::finished, &m_watcher, [this] { deliver(); });
    }

    ~BackgroundTask() { cancel(); }

    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

    /// Runs `work`, which returns a Result and throws nothing, then `done` with it.
    void start(std::function<Result()> work, Done done) {
        cancel();
        const auto promise = std::make_shared<QPromise<Result>>();
        m_done = std::move(done);
        m_watcher.setFuture(promise->future());
        promise->start();
        QThreadPool::globalInstance()->start([promise, work = std::move(work)] {
            if (!promise->isCanceled())
                promise->addResult(work());
            promise->finish();
        });
    }

    void cancel() {
        m_done = nullptr;
        m_watcher.cancel();
        m_watcher.setFuture({});
    }

    bool isRunning() const { return m_done != nullptr; }

private:
    void deliver() {
        const Done done = std::exchange(m_done, nullptr); // which may start the next one
        if (done && m_watcher.future().resultCount() > 0)
            done(m_watcher.result());
    }

    QFutureWatcher<Result> m_watcher;
    Done m_done;
};

}
