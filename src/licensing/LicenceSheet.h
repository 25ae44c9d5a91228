// What a licence sheet shows and does, without a widget: one operation at a time on a worker thread, its
// outcome in words.
#pragma once

#include "licensing/LicenceManager.h"

#include <atomic>
#include <functional>
#include <optional>
#include <QObject>
#include <QString>
#include <thread>

namespace pointloom {

/// Made, used and destroyed on one thread whose event loop runs; `changed` is called on it.
class LicenceSheet {
public:
    LicenceSheet(LicenceManager& manager, std::function<void()> changed);
    ~LicenceSheet(); // cancels what is under way
    LicenceSheet(const LicenceSheet&) = delete;
    LicenceSheet& operator=(const LicenceSheet&) = delete;

    /// Why `text` is no key yet; empty when it is one, and the sheet may offer to activate it.
    static std::optional<QString> problemWithKey(const QString& text);

    bool isWorking() const { return m_worker.joinable(); }
    const QString& progress() const { return m_progress; } // while working
    const QString& message() const { return m_message; }   // the last outcome
    std::optional<LicenceFault> fault() const { return m_fault; }

    LicenceStatus status() const { return m_manager.status(); }
    QString holder() const;
    QString maskedKey() const;
    bool canDeactivate() const;

    /// Each does nothing while another is under way.
    void activate(const QString& keyText);
    void deactivate();
    void importFile(const QString& path);
    void writeRequest(const QString& keyText, const QString& path);

    /// Asks the keychain once more when it could not be read; without a message.
    void readAgain();

    /// Ends the operation under way; it then reports that it was cancelled.
    void cancel() { m_isStopping = true; }

private:
    struct Outcome {
        QString message;
        std::optional<LicenceFault> fault;
    };

    LicenceManager::StopQuery stopQuery() {
        return [this] { return m_isStopping.load(); };
    }
    void start(const QString& progress, const QString& success, std::function<void()> operation);
    void finish(const Outcome& outcome);

    LicenceManager& m_manager;
    std::function<void()> m_changed;
    QString m_progress;
    QString m_message;
    std::optional<LicenceFault> m_fault;
    std::atomic<bool> m_isStopping = false;
    std::thread m_worker;
    QObject m_context; // outcomes are queued here; gone first, so that none arrives late
};

}
