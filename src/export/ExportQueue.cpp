#include "export/ExportQueue.h"

#include "export/ExportQueueFile.h"

#include <chrono>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr int secondMilliseconds = 1000;

bool isSamePath(const QString& one, const QString& other) {
    return QFileInfo(one).absoluteFilePath() == QFileInfo(other).absoluteFilePath();
}

// "exports-damaged.json" beside the file, with a number where that is taken.
QString setAside(const QString& path) {
    const QFileInfo file(path);
    const QString base = file.absolutePath() + u'/' + file.completeBaseName() + QStringLiteral("-damaged");
    constexpr int mostTries = 1000;
    for (int number = 1; number <= mostTries; ++number) {
        const QString place =
            base + (number > 1 ? QStringLiteral("-%1").arg(number) : QString()) + u'.' + file.suffix();
        if (QFile::rename(path, place))
            return place;
        if (!QFileInfo::exists(place))
            break;
    }
    return {};
}

}

ExportQueue::ExportQueue(Parts parts, QString file)
    : m_parts(std::move(parts))
    , m_file(std::move(file)) {}

std::optional<ExportQueue::Damage> ExportQueue::restore() {
    std::optional<Damage> damage;
    edit([&] {
        try {
            StoredQueue queue = m_file.isEmpty() ? StoredQueue() : readQueue(m_file);
            m_entries = std::move(queue.entries);
            m_isPaused = queue.isPaused;
        } catch (const std::exception& error) {
            damage = Damage{QString::fromUtf8(error.what()), setAside(m_file)};
            if (damage->setAside.isEmpty())
                m_file.clear();
        }
        std::erase_if(m_entries, [](const QueuedExport& entry) {
            return entry.state == QueueState::done || entry.state == QueueState::cancelled;
        });
        for (QueuedExport& entry : m_entries) {
            if (entry.state == QueueState::running)
                entry.state = entry.starts < mostStarts ? QueueState::waiting : QueueState::failed;
        }
    });
    return damage;
}

// Changes the list, keeps it and tells of it.
template <class Edit>
void ExportQueue::edit(const Edit& edit) {
    {
        const std::scoped_lock lock(m_mutex);
        edit();
        followClock();
        save();
    }
    m_changed.notify_all();
    if (m_parts.onChange)
        m_parts.onChange();
}

void ExportQueue::save() {
    if (m_file.isEmpty())
        return;
    try {
        writeQueue(m_file, {.isPaused = m_isPaused, .entries = m_entries});
        m_faultOfFile.clear();
    } catch (const std::exception& error) {
        m_faultOfFile = QString::fromUtf8(error.what()); // the next change tries again
    }
}

QueuedExport* ExportQueue::find(const QUuid& id) {
    const auto found = std::ranges::find(m_entries, id, &QueuedExport::id);
    return found != m_entries.end() ? &*found : nullptr;
}

void ExportQueue::add(QueuedExport entry) {
    edit([&] {
        if (std::ranges::none_of(m_entries, &QueuedExport::isLeft))
            m_isPaused = false;
        const bool isTaken = std::ranges::any_of(m_entries, [&](const QueuedExport& other) {
            return other.isLeft() && isSamePath(other.job.outputPath, entry.job.outputPath);
        });
        if (isTaken)
            entry.job.ifExists = IfExists::addNumber;
        m_entries.push_back(std::move(entry));
    });
}

void ExportQueue::move(const QUuid& id, bool forward) {
    edit([&] {
        const auto isWaiting = [](const QueuedExport& entry) { return entry.state == QueueState::waiting; };
        const auto at = std::ranges::find(m_entries, id, &QueuedExport::id);
        if (at == m_entries.end() || !isWaiting(*at))
            return;
        if (forward) {
            const auto before = std::find_if(std::reverse_iterator(at), m_entries.rend(), isWaiting);
            if (before != m_entries.rend())
                std::swap(*at, *before);
        } else if (const auto after = std::find_if(at + 1, m_entries.end(), isWaiting);
                   after != m_entries.end()) {
            std::swap(*at, *after);
        }
    });
}

void ExportQueue::cancel(const QUuid& id) {
    edit([&] {
        QueuedExport* entry = find(id);
        if (entry != nullptr && entry->state == QueueState::waiting)
            entry->state = QueueState::cancelled;
        else if (m_running == id)
            m_isCancelled = true;
    });
}

void ExportQueue::cancelAll() {
    for (const QueuedExport& entry : entries())
        cancel(entry.id);
}

void ExportQueue::retry(const QUuid& id) {
    edit([&] {
        const auto at = std::ranges::find(m_entries, id, &QueuedExport::id);
        if (at == m_entries.end() || at->isLeft() || at->state == QueueState::done)
            return;
        at->state = QueueState::waiting;
        at->message.clear();
        at->starts = 0;
        std::rotate(at, at + 1, m_entries.end());
    });
}

void ExportQueue::remove(const QUuid& id) {
    edit([&] {
        std::erase_if(m_entries,
                      [&](const QueuedExport& entry) { return entry.id == id && m_running != id; });
    });
}

void ExportQueue::removeEnded() {
    edit([&] { std::erase_if(m_entries, std::not_fn(&QueuedExport::isLeft)); });
}

void ExportQueue::pause() {
    edit([&] { m_isPaused = true; });
}

void ExportQueue::resume() {
    edit([&] {
        m_isPaused = false;
        m_ignoresSpace = m_ignoresSpace || m_lowSpace;
        m_lowSpace.reset();
    });
}

void ExportQueue::stop() {
    edit([&] { m_isStopping = true; });
}

std::vector<QueuedExport> ExportQueue::entries() const {
    const std::scoped_lock lock(m_mutex);
    return m_entries;
}

std::optional<QueuedExport> ExportQueue::entry(const QUuid& id) const {
    const std::scoped_lock lock(m_mutex);
    const auto found = std::ranges::find(m_entries, id, &QueuedExport::id);
    return found != m_entries.end() ? std::optional(*found) : std::nullopt;
}

bool ExportQueue::isKept() const {
    const std::scoped_lock lock(m_mutex);
    return !m_file.isEmpty() && m_faultOfFile.isEmpty();
}

QString ExportQueue::faultOfFile() const {
    const std::scoped_lock lock(m_mutex);
    return m_faultOfFile;
}

QueueStatus ExportQueue::status() const {
    const std::scoped_lock lock(m_mutex);
    QueueStatus status{.isPaused = m_isPaused,
                       .lowSpace = m_lowSpace,
                       .running = m_running,
                       .progress = m_progress,
                       .elapsed = secondsRun(),
                       .secondsLeft = secondsLeft()};
    // Progress is told at each per cent, frames are counted at once.
    if (ExportProgress& now = status.progress; now.fraction > 0) {
        now.frames = std::max<std::int64_t>(now.frames, m_frames);
        now.fraction = std::max(now.fraction, std::min(1.0, static_cast<double>(now.frames) /
                                                                static_cast<double>(now.expectedFrames)));
    }
    double all = 0;
    double done = 0;
    for (const QueuedExport& entry : m_entries) {
        const double work = entry.work > 0 ? entry.work : 1;
        status.left += entry.isLeft() ? 1 : 0;
        status.done += entry.state == QueueState::done ? 1 : 0;
        status.failed += entry.state == QueueState::failed ? 1 : 0;
        status.cancelled += entry.state == QueueState::cancelled ? 1 : 0;
        all += entry.isLeft() || entry.state == QueueState::done ? work : 0;
        done += entry.id == m_running             ? work * m_progress.fraction
                : entry.state == QueueState::done ? work
                                                  : 0;
    }
    status.fraction = all > 0 ? done / all : 0;
    return status;
}

// The exports that wait take their work at the pace of the one that runs.
std::optional<double> ExportQueue::secondsLeft() const {
    const double elapsed = secondsRun();
    const auto pace = m_running ? paceOf(m_progress, elapsed) : std::nullopt;
    if (!pace || m_progress.fraction >= 1)
        return std::nullopt;
    double running = 0;
    double waiting = 0;
    for (const QueuedExport& entry : m_entries) {
        if (entry.isLeft() && entry.work <= 0)
            return std::nullopt;
        running += entry.id == m_running ? entry.work : 0;
        waiting += entry.state == QueueState::waiting ? entry.work : 0;
    }
    const double whole = pace->secondsLeft / (1 - m_progress.fraction); // all of it encoded
    return pace->secondsLeft + whole * waiting / running;
}

double ExportQueue::secondsRun() const {
    return m_secondsBefore +
           (m_clock.isValid() ? static_cast<double>(m_clock.elapsed()) / secondMilliseconds : 0);
}

void ExportQueue::followClock() {
    const bool isGoing = m_running && !m_isPaused && !m_lowSpace;
    if (isGoing && !m_clock.isValid()) {
        m_clock.start();
    } else if (!isGoing && m_clock.isValid()) {
        m_secondsBefore = secondsRun();
        m_clock.invalidate();
    }
}

bool ExportQueue::waitForWork(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait(lock, stop, [&] {
        return !m_isPaused && !m_isStopping &&
               std::ranges::count(m_entries, QueueState::waiting, &QueuedExport::state) > 0;
    });
}

std::optional<QueuedExport> ExportQueue::takeNext() {
    std::optional<QueuedExport> next;
    edit([&] {
        const auto found = std::ranges::find(m_entries, QueueState::waiting, &QueuedExport::state);
        if (found == m_entries.end() || m_isStopping)
            return;
        found->state = QueueState::running;
        ++found->starts;
        m_running = found->id;
        m_isCancelled = false;
        m_ignoresSpace = false;
        m_lookedAtSpace.invalidate();
        m_progress = {};
        m_frames = 0;
        m_secondsBefore = 0;
        next = *found;
    });
    return next;
}

std::optional<QueuedExport> ExportQueue::runNext(const ExportControl& control) {
    const auto next = takeNext();
    if (!next)
        return std::nullopt;
    try {
        return finish(next->id, QueueState::done, {}, exportOne(*next, control));
    } catch (const ExportCancelled&) {
        return finish(next->id, QueueState::cancelled);
    } catch (const std::exception& error) {
        return finish(next->id, QueueState::failed,
                      m_parts.words ? m_parts.words(error, next->job) : QString::fromUtf8(error.what()));
    }
}

ExportReport ExportQueue::exportOne(const QueuedExport& entry, const ExportControl& control) {
    const ExportControl own{.isCancelled = [&] { return mustStop(control); },
                            .onProgress =
                                [&](const ExportProgress& progress) {
                                    {
                                        const std::scoped_lock lock(m_mutex);
                                        m_progress = progress;
                                    }
                                    if (control.onProgress)
                                        control.onProgress(progress);
                                    if (m_parts.onChange)
                                        m_parts.onChange();
                                },
                            .framesWritten = &m_frames};
    own.throwIfCancelled(); // waits for space
    requireNoInputOfOthers(entry);
    return m_parts.work(entry.job, own);
}

// What exports read that are still to come is not replaced.
void ExportQueue::requireNoInputOfOthers(const QueuedExport& entry) const {
    for (const QueuedExport& other : entries()) {
        if (other.state != QueueState::waiting)
            continue;
        const auto inputs = inputFiles(other.job);
        if (const InputFile* replaced = replacedInput(entry.job.outputPath, inputs))
            throw ExportError::exportFailed(
                QStringLiteral("the new file would replace %1 of another export (%2)")
                    .arg(replaced->role, other.name));
    }
}

std::optional<QueuedExport> ExportQueue::finish(const QUuid& id, QueueState state, const QString& message,
                                                const ExportReport& report) {
    std::optional<QueuedExport> ended;
    edit([&] {
        QueuedExport& entry = *find(id); // one that runs is not removed
        entry.state =
            m_isStopping && state == QueueState::cancelled && !m_isCancelled ? QueueState::waiting : state;
        entry.message = message;
        entry.report = report;
        entry.starts = 0;
        m_running.reset();
        m_lowSpace.reset();
        m_progress = {};
        ended = entry;
    });
    return ended;
}

// Of the threads of the export that runs. Blocks while the queue is paused.
bool ExportQueue::mustStop(const ExportControl& control) {
    constexpr auto moment = std::chrono::milliseconds(200);
    while (true) {
        lookAtSpace();
        if (control.isCancelled && control.isCancelled())
            return true;
        std::unique_lock lock(m_mutex);
        if (m_isStopping || m_isCancelled)
            return true;
        if (!m_isPaused && !m_lowSpace)
            return false;
        m_changed.wait_for(lock, moment);
    }
}

// Once a second, outside the lock: a disk may be slow to answer.
void ExportQueue::lookAtSpace() {
    QString path;
    {
        const std::scoped_lock lock(m_mutex);
        const bool isDue = !m_lookedAtSpace.isValid() || m_lookedAtSpace.elapsed() >= secondMilliseconds;
        if (!m_parts.freeBytes || m_ignoresSpace || !isDue || !m_running)
            return;
        m_lookedAtSpace.start();
        path = find(*m_running)->job.outputPath;
    }
    const std::int64_t free = m_parts.freeBytes(path);
    {
        const std::scoped_lock lock(m_mutex);
        const bool isLow = free >= 0 && free < leastFree && !m_ignoresSpace;
        if (!isLow && !m_lowSpace)
            return;
        m_lowSpace = isLow ? std::optional(free) : std::nullopt;
        followClock();
    }
    m_changed.notify_all();
    if (m_parts.onChange)
        m_parts.onChange();
}

}
