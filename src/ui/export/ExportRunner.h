// Runs the queue of exports on a thread of its own, and reports the one that the export sheet shows to the
// session.
#pragma once

#include "export/ExportQueue.h"
#include "session/AppState.h"
#include "ui/style/Bindings.h"

#include <atomic>
#include <QObject>
#include <thread>

namespace pointloom {

/// Exports one after the other, at low priority, in threads that inherit it. Each carries a licence mark or
/// none as the session says when it starts. `exportStatus` and `exportProgress` of the session are those of
/// the shown export. A runner that is destroyed stops what runs, which stays in the queue.
class ExportRunner : public QObject {
    Q_OBJECT

public:
    using Work = decltype(ExportQueue::Parts::work);

    /// The queue is kept in `queueFile`, if that is named. Tests replace `work`.
    explicit ExportRunner(AppState& state, const QString& queueFile = {}, Work work = {},
                          QObject* parent = nullptr);
    ~ExportRunner() override;

    ExportQueue& queue() { return m_queue; }
    const ExportQueue& queue() const { return m_queue; }

    /// Starts with the exports that were restored. `start` and `add` do so too.
    void begin();
    /// Adds an export and shows it.
    void start(QueuedExport entry);
    /// Adds an export that is not shown.
    void add(QueuedExport entry);
    /// Stops the shown one soon; it leaves the queue and the status is idle then.
    void cancel();
    /// Shows none; the status is idle. An export that is left goes on, one that has ended leaves the queue.
    void release();

    /// Of the shown export.
    bool isRunning() const;
    bool isStopping() const { return m_isStopping; }
    /// At the frame being written; the session's `exportProgress` moves by whole per cents.
    ExportProgress progress() const;
    /// The report of the last that was completed.
    const ExportReport& report() const { return m_report; }

Q_SIGNALS:
    /// The queue, its status or the progress of its export.
    void changed();

private:
    void post();
    void follow();
    void work(const std::stop_token& stop);
    ExportReport run(ExportJob job, const ExportControl& control);

    AppState& m_state;
    const Work m_work;
    std::optional<QUuid> m_shown;
    bool m_isStopping = false;
    ExportReport m_report;
    std::atomic<Language> m_language = Language::english; // of messages
    std::atomic<bool> m_isLicensed = false;
    std::atomic<bool> m_isPosted = false;
    ExportQueue m_queue;
    Bindings m_bindings;
    std::jthread m_worker; // ends before anything that it uses
};

}
