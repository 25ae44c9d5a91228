#include "ui/timeline/IdleWorker.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <QCoreApplication>
#include <sys/resource.h>

namespace pointloom {

namespace {

/// The threads that run, so that the program does not end under their feet.
struct Running {
    std::mutex mutex;
    std::condition_variable ended;
    int count = 0;
    bool isClosing = false;
};

// Threads that outlast the program's end still find it.
Running& running() {
    static auto* const shared = new Running; // never deleted
    return *shared;
}

void awaitAll() {
    constexpr std::chrono::seconds patience{2};
    Running& all = running();
    std::unique_lock lock(all.mutex);
    all.isClosing = true;
    all.ended.wait_for(lock, patience, [&] { return all.count == 0; });
}

// Of the calling thread alone. Not the idle class that Qt would choose: on a busy machine a thread of it
// never gets to run, not even to die, and its process keeps the session's lock for as long.
void stepBack() {
    constexpr int courteous = 15;
    (void)setpriority(PRIO_PROCESS, 0, courteous);
}

void reopen() {
    const std::scoped_lock lock(running().mutex);
    running().isClosing = false;
}

}

struct IdleWorker::Link::State {
    std::atomic<bool> isCancelled = false;
};

bool IdleWorker::Link::isCancelled() const {
    return m_state->isCancelled;
}

void IdleWorker::Link::post(std::function<void()> result) {
    const std::scoped_lock lock(running().mutex);
    if (running().isClosing || isCancelled())
        return;
    const auto deliver = [state = m_state, result = std::move(result)] {
        if (!state->isCancelled)
            result();
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), deliver, Qt::QueuedConnection);
}

IdleWorker::IdleWorker(std::function<void(Link)> work, QThread::Priority priority) {
    m_link.m_state = std::make_shared<Link::State>();
    {
        const std::scoped_lock lock(running().mutex);
        ++running().count;
    }
    static const bool isRegistered = [] {
        qAddPreRoutine(reopen);
        qAddPostRoutine(awaitAll);
        return true;
    }();
    Q_UNUSED(isRegistered)
    const bool stepsBack = priority == QThread::IdlePriority;
    QThread* thread = QThread::create([link = m_link, work = std::move(work), stepsBack] {
        if (stepsBack)
            stepBack();
        work(link);
        Running& all = running();
        const std::scoped_lock lock(all.mutex);
        --all.count;
        all.ended.notify_all();
    });
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start(stepsBack ? QThread::InheritPriority : priority);
}

IdleWorker::~IdleWorker() {
    m_link.m_state->isCancelled = true;
}

}
