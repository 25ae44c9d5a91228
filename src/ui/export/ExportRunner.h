// Runs an export in the background and reports its state to the session.
#pragma once

#include "export/ExportSource.h"
#include "session/AppState.h"

#include <atomic>
#include <QElapsedTimer>
#include <QObject>
#include <thread>

namespace pointloom {

/// Sets the session's `exportStatus` and `exportProgress`, on the main thread. A runner that is destroyed
/// stops its export first, and what it had written is gone then.
class ExportRunner : public QObject {
    Q_OBJECT

public:
    explicit ExportRunner(AppState& state, QObject* parent = nullptr);
    ~ExportRunner() override;

    /// Nothing happens while an export runs.
    void start(const ExportJob& job);
    /// Stops within a frame; `finished` follows, and the status is idle then.
    void cancel();

    bool isRunning() const { return m_isRunning; }
    bool isStopping() const { return m_isStopping; }

    /// At the frame being written; the session's `exportProgress` moves by whole per cents.
    ExportProgress progress() const;
    double elapsedSeconds() const;

    /// The report of the last export that was completed.
    const ExportReport& report() const { return m_report; }
    /// The encoder that it could not use; empty when it used the requested one.
    const std::optional<EncoderFallback>& fallback() const { return m_fallback; }

Q_SIGNALS:
    void finished();

private:
    void run(ExportJob job, const std::stop_token& stop);
    void post(AppState::ExportStatus status, const ExportReport& report = {},
              const std::optional<EncoderFallback>& fallback = {});

    AppState& m_state;
    Language m_language = Language::english; // of the messages of the export that runs
    bool m_isRunning = false;
    bool m_isStopping = false;
    ExportReport m_report;
    std::optional<EncoderFallback> m_fallback;
    QElapsedTimer m_clock;
    std::atomic<std::int64_t> m_frames = 0;
    std::atomic<std::int64_t> m_expectedFrames = 0; // 0 until the first frame is written
    std::jthread m_worker;                          // ends before anything that it uses
};

}
