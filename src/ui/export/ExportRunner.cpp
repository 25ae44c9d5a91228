#include "ui/export/ExportRunner.h"

#include "l10n/L10nKey.h"
#include "ui/export/ExportFault.h"
#include "ui/export/SleepInhibitor.h"

#include <algorithm>

namespace pointloom {

ExportRunner::ExportRunner(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state) {}

ExportRunner::~ExportRunner() {
    if (!m_isRunning)
        return;
    m_worker.request_stop();
    m_worker.join();
    m_state.exportStatus = AppState::ExportStatus{};
}

void ExportRunner::start(const ExportJob& job) {
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_isStopping = false;
    m_language = m_state.language;
    m_frames = 0;
    m_expectedFrames = 0;
    m_clock.start();
    m_state.exportProgress = 0;
    m_state.exportStatus = AppState::ExportStatus{AppState::ExportStatus::Stage::exporting, {}};
    m_worker = std::jthread([this, job](const std::stop_token& stop) { run(job, stop); });
}

void ExportRunner::cancel() {
    m_isStopping = true;
    m_worker.request_stop();
}

ExportProgress ExportRunner::progress() const {
    const std::int64_t expected = m_expectedFrames;
    if (expected == 0)
        return {};
    const std::int64_t frames = m_frames;
    return {std::min(1.0, static_cast<double>(frames) / static_cast<double>(expected)), frames, expected};
}

double ExportRunner::elapsedSeconds() const {
    return static_cast<double>(m_clock.elapsed()) / 1000;
}

// On the worker thread from here on.
void ExportRunner::run(ExportJob job, const std::stop_token& stop) {
    using Stage = AppState::ExportStatus::Stage;
    const auto isCancelled = [&] { return stop.stop_requested(); };
    const auto onProgress = [&](const ExportProgress& progress) {
        m_expectedFrames = progress.expectedFrames;
        QMetaObject::invokeMethod(
            this, [this, fraction = progress.fraction] { m_state.exportProgress = fraction; },
            Qt::QueuedConnection);
    };
    try {
        const SleepInhibitor awake(t(m_language, L10nKey::exporting));
        const auto fallback = settleEncoder(job);
        const ExportReport report = ExportManager::exportVideo(job, isCancelled, onProgress, &m_frames);
        post({Stage::done, {}}, report, fallback);
    } catch (const ExportCancelled&) {
        post({Stage::idle, {}});
    } catch (const std::exception& error) {
        post({Stage::error, reasonOf(error, job, true, m_language)});
    }
}

void ExportRunner::post(AppState::ExportStatus status, const ExportReport& report,
                        const std::optional<EncoderFallback>& fallback) {
    const auto take = [this, status = std::move(status), report, fallback] {
        m_isRunning = false;
        m_report = report;
        m_fallback = fallback;
        m_state.exportStatus = status;
        Q_EMIT finished();
    };
    QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
}

}
