#include "licensing/RecordStore.h"

#include "files/FileDescriptor.h"
#include "files/NewFile.h"
#include "licensing/LicenceKey.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <qt6keychain/keychain.h>
#include <QThread>
#include <system_error>

namespace pointloom {

namespace {

[[noreturn]] void fail(const QString& words, const QString& path, const QString& reason) {
    throw LicenceError(LicenceFault::file, words.arg(path, reason));
}

[[noreturn]] void failToRead(const QString& path, const QString& reason) {
    fail(QStringLiteral("The licence file %1 cannot be read: %2"), path, reason);
}

std::filesystem::path nativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

}

FileRecordStore::FileRecordStore(const QString& path)
    : m_path(path) {}

QString FileRecordStore::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Pointloom/licence.json");
}

bool FileRecordStore::exists() const {
    std::error_code error;
    return std::filesystem::status(nativePath(m_path), error).type() != std::filesystem::file_type::not_found;
}

std::optional<QByteArray> FileRecordStore::load(const StopQuery&) {
    std::error_code error;
    const auto type = std::filesystem::status(nativePath(m_path), error).type();
    if (type == std::filesystem::file_type::not_found)
        return std::nullopt;
    if (type != std::filesystem::file_type::regular)
        failToRead(m_path,
                   error ? QString::fromStdString(error.message()) : QStringLiteral("it is not a file"));
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        failToRead(m_path, file.errorString());
    const QByteArray bytes = file.read(largestRecord + 1);
    if (file.error() != QFile::NoError)
        failToRead(m_path, file.errorString());
    if (bytes.size() > largestRecord)
        failToRead(m_path, QStringLiteral("it is too large"));
    return bytes;
}

void FileRecordStore::save(const QByteArray& bytes, const StopQuery&) {
    QDir().mkpath(QFileInfo(m_path).path());
    try {
        writeWhole(m_path, bytes, Access::ownerOnly);
    } catch (const FileError& error) {
        fail(QStringLiteral("The licence file %1 cannot be written: %2"), m_path, error.reason());
    }
}

namespace {

const QString service = QStringLiteral("Pointloom");
const QString entry = QStringLiteral("licence");

// The library reports a general error when its service is not running.
bool isAnyKeychainRunning() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    for (const char* name :
         {"org.freedesktop.secrets", "org.kde.kwalletd", "org.kde.kwalletd5", "org.kde.kwalletd6"}) {
        if (bus.interface()->isServiceRegistered(QLatin1StringView(name)))
            return true;
    }
    return false;
}

Keychain::Answer answerOf(const QKeychain::Job& job) {
    using Outcome = Keychain::Outcome;
    switch (job.error()) {
    case QKeychain::NoError: {
        const auto* reading = dynamic_cast<const QKeychain::ReadPasswordJob*>(&job);
        const QByteArray data = reading ? reading->binaryData() : QByteArray();
        // Some keychains answer an entry that is not there with an empty one.
        return {reading && data.isEmpty() ? Outcome::nothingThere : Outcome::done, data, {}};
    }
    case QKeychain::EntryNotFound:
        return {Outcome::nothingThere, {}, {}};
    case QKeychain::NoBackendAvailable:
    case QKeychain::NotImplemented:
        return {Outcome::notRunning, {}, {}};
    default:
        // The bus waits 25 s for a wallet whose password is being typed in.
        if (job.errorString().contains(QDBusError::errorString(QDBusError::NoReply)))
            return {Outcome::gaveUp, {}, {}};
        return {isAnyKeychainRunning() ? Outcome::refused : Outcome::notRunning, {}, job.errorString()};
    }
}

// The keychain library answers through the event loop of the thread that asked first, as long as the program
// runs. A worker would end too early, and a thread that waits for the answer would block it.
class KeychainThread {
public:
    static KeychainThread& shared() {
        static KeychainThread thread;
        return thread;
    }

    template <class KeychainJob>
    std::future<Keychain::Answer> perform(const std::function<void(KeychainJob&)>& prepare) {
        const auto promise = std::make_shared<std::promise<Keychain::Answer>>();
        const auto start = [promise, prepare] {
            auto job = std::make_unique<KeychainJob>(service);
            job->setKey(entry);
            prepare(*job);
            QObject::connect(job.get(), &QKeychain::Job::finished,
                             [promise](QKeychain::Job* done) { promise->set_value(answerOf(*done)); });
            job.release()->start(); // deletes itself when it has finished
        };
        QMetaObject::invokeMethod(m_context, start, Qt::QueuedConnection);
        return promise->get_future();
    }

private:
    KeychainThread() {
        m_context->moveToThread(m_thread);
        m_thread->start();
    }

    // A thread that is blocked in a call of the keychain ends with the process.
    ~KeychainThread() {
        m_thread->quit();
        constexpr unsigned long usualTime = 200; // ms
        if (!m_thread->wait(usualTime))
            return;
        delete m_context;
        delete m_thread;
    }

    QThread* m_thread = new QThread;
    QObject* m_context = new QObject;
};

}

Keychain Keychain::ofDesktop() {
    return {
        .read = [] { return KeychainThread::shared().perform<QKeychain::ReadPasswordJob>([](auto&) {}); },
        .write =
            [](const QByteArray& bytes) {
                return KeychainThread::shared().perform<QKeychain::WritePasswordJob>(
                    [bytes](auto& job) { job.setBinaryData(bytes); });
            },
    };
}

KeychainRecordStore::KeychainRecordStore(FileRecordStore file, Keychain keychain,
                                         std::chrono::milliseconds patience)
    : m_file(std::move(file))
    , m_keychain(std::move(keychain))
    , m_patience(patience) {}

std::optional<QByteArray> KeychainRecordStore::load(const StopQuery& isStopping) {
    if (auto bytes = m_file.load())
        return bytes;
    if (!m_reading.valid())
        m_reading = m_keychain.read();
    const bool isAnswered = isThere(m_reading, isStopping);
    if (!isAnswered && isStopping && isStopping())
        throw LicenceError(LicenceFault::cancelled, QStringLiteral("Cancelled."));
    const auto answer = isAnswered ? m_reading.get() : Keychain::Answer{Keychain::Outcome::gaveUp, {}, {}};
    if (answer.outcome == Keychain::Outcome::gaveUp)
        throw LicenceError(
            LicenceFault::keychainLocked,
            QStringLiteral("The keychain that may hold a licence has not answered. Unlock it."));
    m_isRefused = answer.outcome == Keychain::Outcome::refused;
    if (m_isRefused)
        throw LicenceError(LicenceFault::keychainRefused,
                           QStringLiteral("The keychain that may hold a licence could not be read. %1")
                               .arg(answer.reason)
                               .trimmed());
    return answer.outcome == Keychain::Outcome::done ? std::optional(answer.data) : std::nullopt;
}

void KeychainRecordStore::save(const QByteArray& bytes, const StopQuery& isStopping) {
    if (!m_isRefused && !m_file.exists()) {
        auto answer = m_keychain.write(bytes);
        if (isThere(answer, isStopping) && answer.get().outcome == Keychain::Outcome::done)
            return;
    }
    m_file.save(bytes);
}

bool KeychainRecordStore::isThere(const std::future<Keychain::Answer>& answer,
                                  const StopQuery& isStopping) const {
    constexpr std::chrono::milliseconds poll(20);
    const QDeadlineTimer deadline(m_patience);
    while (answer.wait_for(std::min<std::chrono::milliseconds>(poll, m_patience)) !=
           std::future_status::ready) {
        if (deadline.hasExpired() || (isStopping && isStopping()))
            return false;
    }
    return true;
}

}
