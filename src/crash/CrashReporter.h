// Sends the crash record of an earlier run, with consent, and prints errors that are not fatal. Works on a
// thread of its own; nothing waits for it, and a failure prints one line at most.
#pragma once

#include "crash/CrashEvent.h"
#include "info/InfoDictionary.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <QString>
#include <thread>

namespace pointloom {

class CrashReporter {
public:
    /// Answers whether the user agreed to crash reports; asked on the reporter's thread.
    using ConsentQuery = std::function<bool()>;

    /// Posts an envelope and waits for the answer; the last argument is polled and ends the upload.
    using Upload = std::function<void(const QByteArray& envelope, const SentryDSN& dsn,
                                      const std::function<bool()>& isStopping)>;

    static CrashReporter& shared();

    explicit CrashReporter(Upload upload = [](const auto&... parts) { uploadEnvelope(parts...); });
    ~CrashReporter();
    CrashReporter(const CrashReporter&) = delete;
    CrashReporter& operator=(const CrashReporter&) = delete;

    /// No query means no consent. Call before the operations below.
    void setConsentQuery(ConsentQuery query);

    /// Reads the DSN under "SentryDSN" of `info`, prepares capture and sends a pending record. Without a
    /// valid DSN no handlers are installed and nothing is sent in this run. Only the first DSN counts.
    void setup(const InfoDictionary& info);

    /// Sends the pending record if there is one, the user agreed and a DSN is known. The record is deleted
    /// first, so that it is sent at most once. A record that cannot be read, or is a link, stays where it is.
    void flushPending();

    /// Prints an error that is not fatal; nothing is sent.
    void captureError(const QString& description, const std::map<QString, QString>& context);

    /// Ends the work under way, an upload included. Call before the application object is destroyed.
    void stop();

private:
    struct Destination {
        SentryDSN dsn;
        InfoDictionary info;
    };

    void run(std::function<void()> task);
    void work();
    void sendPending();
    std::optional<Destination> permittedDestination() const;
    bool isStopping() const;

    const Upload m_upload;
    mutable std::mutex m_mutex; // guards all that follows but the thread
    std::condition_variable m_wake;
    ConsentQuery m_hasConsent;
    std::optional<Destination> m_destination;
    std::deque<std::function<void()>> m_tasks;
    bool m_isStopping = false;
    std::thread m_thread; // started by the first task
};

}
