#include "crash/CrashReporter.h"

#include "crash/CrashCapture.h"
#include "crash/CrashEvent.h"
#include "json/JsonDocument.h"

#include <exception>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr qsizetype largestRecord = 1024 * 1024; // bytes; usual are a few kilobytes

// Links are not followed: they may lead to a file that is no record.
std::optional<PendingCrashReport> readPendingReport(const QString& path) {
    const QFileInfo info(path);
    QFile file(path);
    if (info.isSymLink() || !info.isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    try {
        const QByteArray bytes = file.read(largestRecord + 1);
        return json::decode<PendingCrashReport>(json::parse(bytes, {.bytes = largestRecord}));
    } catch (const json::DecodingError&) {
        return std::nullopt;
    }
}

}

CrashReporter& CrashReporter::shared() {
    static CrashReporter reporter;
    return reporter;
}

CrashReporter::CrashReporter(Upload upload)
    : m_upload(std::move(upload)) {}

CrashReporter::~CrashReporter() {
    stop();
}

void CrashReporter::setConsentQuery(ConsentQuery query) {
    const std::lock_guard lock(m_mutex);
    m_hasConsent = std::move(query);
}

void CrashReporter::setup(const InfoDictionary& info) {
    const auto dsn = SentryDSN::parse(info.text("SentryDSN").value_or(QString()));
    if (!dsn) {
        printCrashReporterLine(QStringLiteral("SentryDSN missing or invalid — monitoring disabled"));
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        if (m_destination)
            return;
        m_destination = Destination{*dsn, info};
    }
    CrashCapture::prepareCrashFilePath();
    CrashCapture::installHandlers();
    flushPending();
}

void CrashReporter::flushPending() {
    run([this] { sendPending(); });
}

void CrashReporter::captureError(const QString& description, const std::map<QString, QString>&) {
    run([this, description] {
        if (permittedDestination())
            printCrashReporterLine(QStringLiteral("error (not sent in DEBUG): ") + description);
    });
}

void CrashReporter::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void CrashReporter::run(std::function<void()> task) {
    const std::lock_guard lock(m_mutex);
    if (m_isStopping)
        return;
    m_tasks.push_back(std::move(task));
    if (!m_thread.joinable())
        m_thread = std::thread([this] { work(); });
    m_wake.notify_one();
}

void CrashReporter::work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_isStopping || !m_tasks.empty(); });
        if (m_tasks.empty() || m_isStopping)
            return;
        const auto task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        try {
            task();
        } catch (const std::exception& error) {
            printCrashReporterLine(QString::fromUtf8(error.what()));
        }
        lock.lock();
    }
}

void CrashReporter::sendPending() {
    const auto destination = permittedDestination();
    if (!destination)
        return;
    const QString path = CrashCapture::crashFilePath();
    const auto report = readPendingReport(path);
    if (!report)
        return;
    QFile::remove(path);
    const auto event = CrashEvent::eventOf(*report, destination->info);
    m_upload(CrashEvent::envelope(event, destination->dsn), destination->dsn,
             [this] { return isStopping(); });
}

// Empty without a DSN or the user's consent.
std::optional<CrashReporter::Destination> CrashReporter::permittedDestination() const {
    ConsentQuery hasConsent;
    std::optional<Destination> destination;
    {
        const std::lock_guard lock(m_mutex);
        hasConsent = m_hasConsent;
        destination = m_destination;
    }
    return destination && hasConsent && hasConsent() ? destination : std::nullopt;
}

bool CrashReporter::isStopping() const {
    const std::lock_guard lock(m_mutex);
    return m_isStopping;
}

}
