// The queue of exports: one after the other, with pause, order, retry, and a file from which the next start
// goes on.
#pragma once

#include "export/ExportJob.h"

#include <condition_variable>
#include <mutex>
#include <QElapsedTimer>
#include <QUuid>
#include <stop_token>

namespace pointloom {

POINTLOOM_NAMED_ENUM(QueueState, waiting, running, done, failed, cancelled);

struct QueuedExport {
    QUuid id = QUuid::createUuid();
    QString name = {}; // of the match
    ExportJob job = {};
    double work = 0; // seconds of the new file times pixels of a frame; 0 is unknown
    QueueState state = QueueState::waiting;
    QString message = {};     // why it failed, fit for a user; empty where `mostStarts` is why
    ExportReport report = {}; // of one that is done
    int starts = 0;           // in a row whose end was not seen: the program was killed

    bool isLeft() const { return state == QueueState::waiting || state == QueueState::running; }
};

/// What the queue is doing, at one moment.
struct QueueStatus {
    int left = 0; // waiting or running
    int done = 0; // this and the next as long as they are in the list
    int failed = 0;
    int cancelled = 0;
    bool isPaused = false;
    std::optional<std::int64_t> lowSpace = {}; // bytes that are free: too few to go on
    std::optional<QUuid> running = {};
    ExportProgress progress = {}; // of the one that runs, at the frame being written
    double elapsed = 0;           // seconds, without pauses
    double fraction = 0;          // of all exports in the list that are left or done
    std::optional<double> secondsLeft = {};

    bool isHeld() const { return isPaused || lowSpace.has_value(); }
};

/// All functions can be called from any thread. Identifiers that are not in the list are ignored.
class ExportQueue {
public:
    static constexpr std::int64_t leastFree = 64'000'000; // bytes; exports pause below that
    static constexpr int mostStarts = 3;

    /// All but `work` may be empty. They are called without the queue's lock, by the thread that causes them.
    struct Parts {
        std::function<ExportReport(const ExportJob&, const ExportControl&)> work;
        std::function<std::int64_t(const QString& outputPath)> freeBytes;      // negative: unknown
        std::function<QString(const std::exception&, const ExportJob&)> words; // `what()` by default
        std::function<void()> onChange; // of the list, of the status, and at each per cent
    };

    /// The list is kept in `file`; without one it is not.
    explicit ExportQueue(Parts parts, QString file = {});

    struct Damage {
        QString reason;
        QString setAside; // path of what could not be read; empty where it stays and nothing is kept in it
    };
    /// Takes over what the run before left: exports that waited, ran, which wait again, and failed.
    std::optional<Damage> restore();

    /// A name that another export is going to have gets a number. Exports added to a queue with nothing left
    /// are not paused.
    void add(QueuedExport entry);
    /// Changes places with the waiting export before or after it.
    void move(const QUuid& id, bool forward);
    /// Ends one that is running soon, and one that is waiting at once; both stay in the list.
    void cancel(const QUuid& id);
    void cancelAll();
    /// At the end of the queue.
    void retry(const QUuid& id);
    /// Only what is not running.
    void remove(const QUuid& id);
    void removeEnded();
    void pause();
    /// Goes on also where space is low: the export that runs is not paused for that again.
    void resume();
    /// Ends the one that runs, which is waiting again then, and starts no other.
    void stop();

    std::vector<QueuedExport> entries() const;
    std::optional<QueuedExport> entry(const QUuid& id) const;
    QueueStatus status() const;
    /// Whether the next start goes on with it.
    bool isKept() const;
    /// Why the list is not in its file; empty where it is, or none was named.
    QString faultOfFile() const;

    /// Blocks until an export may start; false when `stop` is requested first.
    bool waitForWork(const std::stop_token& stop);
    /// Exports the first that waits, on the calling thread, and returns it as it ended; none when none waits.
    /// Pauses block it. `control` may be empty; an export that it cancels is cancelled.
    std::optional<QueuedExport> runNext(const ExportControl& control = {});

private:
    template <class Edit>
    void edit(const Edit& edit);
    QueuedExport* find(const QUuid& id);
    std::optional<QueuedExport> takeNext();
    ExportReport exportOne(const QueuedExport& entry, const ExportControl& control);
    std::optional<QueuedExport> finish(const QUuid& id, QueueState state, const QString& message = {},
                                       const ExportReport& report = {});
    void requireNoInputOfOthers(const QueuedExport& entry) const;
    bool mustStop(const ExportControl& control);
    void lookAtSpace();
    void followClock();
    double secondsRun() const;
    std::optional<double> secondsLeft() const;
    void save();

    const Parts m_parts;
    QString m_file;
    std::atomic<std::int64_t> m_frames = 0; // written by the export that runs

    mutable std::mutex m_mutex; // guards the members below
    std::condition_variable_any m_changed;
    std::vector<QueuedExport> m_entries; // in their order
    bool m_isPaused = false;
    bool m_isStopping = false;
    QString m_faultOfFile;

    // Of the export that runs.
    std::optional<QUuid> m_running;
    bool m_isCancelled = false;
    bool m_ignoresSpace = false;
    std::optional<std::int64_t> m_lowSpace; // bytes that are free
    QElapsedTimer m_lookedAtSpace;
    ExportProgress m_progress;
    QElapsedTimer m_clock;      // stopped while it is held
    double m_secondsBefore = 0; // that the clock was stopped
};

}
