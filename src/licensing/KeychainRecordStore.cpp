#include "licensing/KeychainRecordStore.h"

#include <functional>
#include <future>
#include <memory>
#include <QCoreApplication>
#include <qt6keychain/keychain.h>
#include <QThread>

namespace pointloom {

namespace {

const QString service = QStringLiteral("Pointloom");
const QString entry = QStringLiteral("licence");

struct Outcome {
    QKeychain::Error error = QKeychain::OtherError;
    QByteArray data;
};

// The keychain library answers through the event loop of the thread that asked first, for as long as the
// program runs: that must be neither a worker that ends nor a thread that waits for the answer.
class KeychainThread {
public:
    static KeychainThread& shared() {
        static KeychainThread thread;
        return thread;
    }

    template <class KeychainJob>
    Outcome perform(const std::function<void(KeychainJob&)>& prepare, std::chrono::milliseconds patience) {
        const auto promise = std::make_shared<std::promise<Outcome>>();
        auto outcome = promise->get_future();
        const auto start = [promise, prepare] {
            auto job = std::make_unique<KeychainJob>(service);
            job->setKey(entry);
            prepare(*job);
            QObject::connect(job.get(), &QKeychain::Job::finished, [promise](QKeychain::Job* finished) {
                const auto* read = dynamic_cast<QKeychain::ReadPasswordJob*>(finished);
                promise->set_value({finished->error(), read ? read->binaryData() : QByteArray()});
            });
            job.release()->start(); // deletes itself when it has finished
        };
        QMetaObject::invokeMethod(&m_context, start, Qt::QueuedConnection);
        return outcome.wait_for(patience) == std::future_status::ready ? outcome.get() : Outcome();
    }

private:
    KeychainThread() {
        m_context.moveToThread(&m_thread);
        m_thread.start();
    }

    ~KeychainThread() {
        m_thread.quit();
        m_thread.wait();
    }

    QThread m_thread;
    QObject m_context;
};

}

KeychainRecordStore::KeychainRecordStore(FileRecordStore file, std::chrono::milliseconds patience)
    : m_file(std::move(file))
    , m_patience(patience) {}

std::optional<QByteArray> KeychainRecordStore::load() {
    if (auto bytes = m_file.load())
        return bytes;
    const Outcome outcome =
        KeychainThread::shared().perform<QKeychain::ReadPasswordJob>([](auto&) {}, m_patience);
    // Some keychains answer an entry that is not there with an empty one.
    if (outcome.error != QKeychain::NoError || outcome.data.isEmpty())
        return std::nullopt;
    return outcome.data;
}

void KeychainRecordStore::save(const QByteArray& bytes) {
    const Outcome outcome = KeychainThread::shared().perform<QKeychain::WritePasswordJob>(
        [bytes](auto& job) { job.setBinaryData(bytes); }, m_patience);
    if (outcome.error == QKeychain::NoError)
        m_file.remove();
    else
        m_file.save(bytes);
}

void KeychainRecordStore::remove() {
    m_file.remove();
    KeychainThread::shared().perform<QKeychain::DeletePasswordJob>([](auto&) {}, m_patience);
}

}
