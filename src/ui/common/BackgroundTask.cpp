#include "ui/common/BackgroundTask.h"

#include <limits>
#include <mutex>
#include <QCoreApplication>
#include <QThreadPool>
#include <sys/resource.h>

namespace pointloom {

namespace {

// Never deleted: the pool would wait for its threads, and one of them may be blocked on a disk. The end of
// the program waits for at most two seconds.
QThreadPool& lowPriorityPool() {
    static auto* const pool = [] {
        auto* result = new QThreadPool;
        result->setMaxThreadCount(std::numeric_limits<int>::max());
        qAddPostRoutine([] { lowPriorityPool().waitForDone(2000); });
        return result;
    }();
    return *pool;
}

// Niceness of the calling thread. Not SCHED_IDLE, Qt's lowest priority: on a busy machine such a thread is
// starved, and its process cannot exit, which keeps the session locked.
void lowerPriority() {
    constexpr int niceness = 15;
    (void)setpriority(PRIO_PROCESS, 0, niceness);
}

}

struct BackgroundWorker::Link::State {
    std::mutex mutex;
    bool isCancelled = false;
};

bool BackgroundWorker::Link::isCancelled() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->isCancelled;
}

// While the lock is held neither the worker nor the application, which outlives it, can end.
void BackgroundWorker::Link::post(std::function<void()> result) {
    const std::scoped_lock lock(m_state->mutex);
    if (m_state->isCancelled)
        return;
    const auto deliver = [link = *this, result = std::move(result)] {
        if (!link.isCancelled())
            result();
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), deliver, Qt::QueuedConnection);
}

void BackgroundWorker::start(std::function<void(Link)> work, Priority priority) {
    cancel();
    m_link.m_state = std::make_shared<Link::State>();
    const bool isLow = priority == Priority::low;
    QThreadPool& pool = isLow ? lowPriorityPool() : *QThreadPool::globalInstance();
    pool.start([link = m_link, work = std::move(work), isLow] {
        if (isLow)
            lowerPriority();
        if (!link.isCancelled())
            work(link);
    });
}

void BackgroundWorker::cancel() {
    if (!m_link.m_state)
        return;
    const std::scoped_lock lock(m_link.m_state->mutex);
    m_link.m_state->isCancelled = true;
}

}
