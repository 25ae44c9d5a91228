#include "ui/export/ExportRunner.h"

#include "export/ExportSource.h"
#include "export/segments/ReusingExport.h"
#include "files/FreeSpace.h"
#include "l10n/L10nKey.h"
#include "persistence/KeptSegments.h"
#include "ui/export/ExportWords.h"

#include <mutex>
#include <optional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QFileInfo>
#include <QString>
#include <sys/resource.h>

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

using Stage = AppState::ExportStatus::Stage;

ExportReport exportOnThisMachine(ExportJob job, const ExportControl& control) {
    const auto fallback = settleEncoder(job);
    ExportReport report = exportReusing(job, KeptSegments::cache(), control);
    report.fallback = fallback;
    return report;
}

std::int64_t freeBytesFor(const QString& outputPath) {
    const QString folder = QFileInfo(outputPath).absolutePath();
    constexpr std::int64_t unknown = -1;
    if (freeBytes(folder).value_or(unknown) < ExportQueue::leastFree)
        KeptSegments::cache(); // makes room
    return freeBytes(folder).value_or(unknown);
}

}

ExportRunner::ExportRunner(AppState& state, const QString& queueFile, Work work, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_work(work ? std::move(work) : Work(exportOnThisMachine))
    , m_queue(
          {.work = [this](const ExportJob& job, const ExportControl& control) { return run(job, control); },
           .freeBytes = freeBytesFor,
           .words = [this](const std::exception& error,
                           const ExportJob& job) { return ExportWords::fault(error, job, true, m_language); },
           .onChange = [this] { post(); }},
          queueFile) {
    m_bindings.watch(state.language, [this] { m_language = m_state.language; });
    m_bindings.watch(state.isLicensed, [this] { m_isLicensed = m_state.isLicensed; });
}

ExportRunner::~ExportRunner() {
    m_queue.stop();
    m_worker = {};
    if (m_shown)
        m_state.exportStatus = AppState::ExportStatus{};
}

void ExportRunner::begin() {
    if (!m_worker.joinable())
        m_worker = std::jthread([this](const std::stop_token& stop) { work(stop); });
}

void ExportRunner::start(QueuedExport entry) {
    release();
    m_shown = entry.id;
    m_state.exportProgress = 0;
    m_state.exportStatus = AppState::ExportStatus{Stage::exporting, {}};
    m_queue.add(std::move(entry));
    begin();
}

void ExportRunner::add(QueuedExport entry) {
    m_queue.add(std::move(entry));
    begin();
}

void ExportRunner::cancel() {
    m_isStopping = true;
    if (m_shown)
        m_queue.cancel(*m_shown);
}

void ExportRunner::release() {
    if (!m_shown)
        return;
    if (const auto shown = m_queue.entry(*m_shown); shown && !shown->isLeft())
        m_queue.remove(*m_shown);
    m_shown.reset();
    m_isStopping = false;
    m_state.exportStatus = AppState::ExportStatus{};
}

bool ExportRunner::isRunning() const {
    return m_state.exportStatus.value().stage == Stage::exporting;
}

ExportProgress ExportRunner::progress() const {
    const QueueStatus status = m_queue.status();
    return m_shown && status.running == m_shown ? status.progress : ExportProgress{};
}

// Several changes in a row are followed once.
void ExportRunner::post() {
    if (!m_isPosted.exchange(true))
        QMetaObject::invokeMethod(this, &ExportRunner::follow, Qt::QueuedConnection);
}

// The session has the state of the export that the sheet shows.
void ExportRunner::follow() {
    m_isPosted = false;
    const auto shown = m_shown ? m_queue.entry(*m_shown) : std::nullopt;
    if (shown && shown->state == QueueState::running) {
        m_state.exportProgress = m_queue.status().progress.fraction;
    } else if (shown && isRunning() && !shown->isLeft()) {
        const bool isDone = shown->state == QueueState::done;
        m_report = shown->report;
        m_isStopping = false;
        if (isDone)
            m_state.exportProgress = 1;
        if (shown->state == QueueState::cancelled)
            release();
        else
            m_state.exportStatus =
                AppState::ExportStatus{isDone ? Stage::done : Stage::error, shown->message};
    }
    Q_EMIT changed();
}

// On the background thread from here on. Its threads inherit the niceness, so that what the user does with
// another match comes first.
void ExportRunner::work(const std::stop_token& stop) {
    constexpr int niceness = 10;
    (void)setpriority(PRIO_PROCESS, 0, niceness);
    while (m_queue.waitForWork(stop))
        m_queue.runNext();
}

// The desktop may sleep while the queue is paused.
ExportReport ExportRunner::run(ExportJob job, const ExportControl& control) {
    job.overlay.isLicensed = m_isLicensed;
    const QString reason = t(m_language, L10nKey::exporting);
    std::mutex mutex; // guards the next
    std::optional<SleepInhibitor> awake(reason);
    ExportControl own = control;
    own.isCancelled = [&] {
        const std::scoped_lock lock(mutex);
        if (!m_queue.status().isHeld())
            return control.isCancelled();
        awake.reset();
        const bool isCancelled = control.isCancelled(); // waits for the end of the pause
        awake.emplace(reason);
        return isCancelled;
    };
    return m_work(job, own);
}

}
