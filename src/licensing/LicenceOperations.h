// The operations of the licence dialog: one at a time, on a worker thread.
#pragma once

#include "licensing/LicenceManager.h"

#include <atomic>
#include <functional>
#include <optional>
#include <QObject>
#include <QString>
#include <thread>

namespace pointloom {

/// Made, used and destroyed on one thread whose event loop runs; `changed` is called on it when an operation
/// begins or ends.
class LicenceOperations {
public:
    LicenceOperations(LicenceManager& manager, std::function<void()> changed);
    ~LicenceOperations(); // cancels the operation under way
    LicenceOperations(const LicenceOperations&) = delete;
    LicenceOperations& operator=(const LicenceOperations&) = delete;

    bool isWorking() const { return m_worker.joinable(); }

    /// True when the last operation has ended and the user is to be told: not after a `readAgain` that
    /// succeeded.
    bool hasOutcome() const { return m_hasOutcome; }
    const std::optional<LicenceError>& error() const { return m_error; } // empty: the operation succeeded

    LicenceStatus status() const { return m_manager.status(); }
    QString maskedKey() const; // empty without a licence
    bool canDeactivate() const;

    /// Each does nothing while another is under way.
    void activate(const QString& keyText);
    void deactivate();
    void importFile(const QString& path);
    void writeRequest(const QString& keyText, const QString& path);

    /// Asks the keychain once more when it could not be read.
    void readAgain();

    /// Ends the operation under way; its error is then `cancelled`.
    void cancel() { m_isStopping = true; }

private:
    using Operation = std::function<void(const LicenceManager::StopQuery&)>;

    void start(bool tellsSuccess, Operation operation);
    void finish(bool tellsSuccess, const std::optional<LicenceError>& error);

    LicenceManager& m_manager;
    std::function<void()> m_changed;
    bool m_hasOutcome = false;
    std::optional<LicenceError> m_error;
    std::atomic<bool> m_isStopping = false;
    std::thread m_worker;
    QObject m_context; // outcomes are queued to it; destroyed first, so that none arrives late
};

}
