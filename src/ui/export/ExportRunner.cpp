#include "ui/export/ExportRunner.h"

#include "export/ExportManager.h"
#include "l10n/L10nKey.h"
#include "ui/export/ExportWords.h"

#include <algorithm>
#include <optional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QString>

namespace pointloom {

namespace {

constexpr int patience = 1000; // milliseconds

QDBusMessage call(const QDBusConnection& bus, const QString& service, const QString& path,
                  const QString& interface, const QString& method, const QVariantList& arguments) {
    if (!bus.isConnected())
        return {};
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false); // do not start the service
    return bus.call(message, QDBus::Block, patience);
}

QDBusMessage callScreenSaver(const QString& method, const QVariantList& arguments) {
    const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
    return call(QDBusConnection::sessionBus(), service, QStringLiteral("/org/freedesktop/ScreenSaver"),
                service, method, arguments);
}

QDBusMessage callLogin(const QString& method, const QVariantList& arguments) {
    return call(QDBusConnection::systemBus(), QStringLiteral("org.freedesktop.login1"),
                QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
                method, arguments);
}

std::optional<QVariant> answerOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return reply.arguments().first();
}

// Keeps the desktop awake. Asks the screen saver and the login service, where the desktop offers them over
// D-Bus; does nothing, and reports nothing, elsewhere. Each question may take up to a second: for a
// background thread.
class SleepInhibitor {
public:
    explicit SleepInhibitor(const QString& reason);
    ~SleepInhibitor();
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

private:
    std::optional<uint> m_screenSaverCookie;
    QDBusUnixFileDescriptor m_loginLock; // held until it is closed
};

SleepInhibitor::SleepInhibitor(const QString& reason) {
    const QString who = QStringLiteral("Pointloom");
    if (const auto cookie = answerOf(callScreenSaver(QStringLiteral("Inhibit"), {who, reason})))
        m_screenSaverCookie = cookie->toUInt();
    if (const auto lock = answerOf(callLogin(
            QStringLiteral("Inhibit"), {QStringLiteral("sleep:idle"), who, reason, QStringLiteral("block")})))
        m_loginLock = lock->value<QDBusUnixFileDescriptor>();
}

SleepInhibitor::~SleepInhibitor() {
    if (m_screenSaverCookie)
        callScreenSaver(QStringLiteral("UnInhibit"), {*m_screenSaverCookie});
}

}

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

// On the background thread from here on.
void ExportRunner::run(ExportJob job, const std::stop_token& stop) {
    using Stage = AppState::ExportStatus::Stage;
    const ExportControl control{
        .isCancelled = [&] { return stop.stop_requested(); },
        .onProgress =
            [&](const ExportProgress& progress) {
                m_expectedFrames = progress.expectedFrames;
                QMetaObject::invokeMethod(
                    this, [this, fraction = progress.fraction] { m_state.exportProgress = fraction; },
                    Qt::QueuedConnection);
            },
        .framesWritten = &m_frames,
    };
    try {
        const SleepInhibitor awake(t(m_language, L10nKey::exporting));
        const auto fallback = settleEncoder(job);
        const ExportReport report = ExportManager::exportVideo(job, control);
        post({Stage::done, {}}, report, fallback);
    } catch (const ExportCancelled&) {
        post({Stage::idle, {}});
    } catch (const std::exception& error) {
        post({Stage::error, ExportWords::fault(error, job, true, m_language)});
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
