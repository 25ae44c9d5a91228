// The licence of this machine: activating, verifying without a network, renewing, giving back. Without a
// licence the program starts, edits and exports all the same.
#pragma once

#include "info/InfoDictionary.h"
#include "licensing/LicenceClient.h"
#include "licensing/LicenceKey.h"
#include "licensing/LicenceStatus.h"
#include "licensing/RecordStore.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <QByteArray>
#include <QString>
#include <vector>

namespace pointloom {

/// Operations may be called from any thread and are carried out one at a time. Those that use the service
/// block until it answers: call them from a worker. They throw LicenceError with a message for the user.
class LicenceManager {
public:
    using StopQuery = RecordStore::StopQuery; // polled; true cancels

    struct Parts {
        InfoDictionary info; // "LicenseServiceURL", "LicensePublicKey", the version
        std::unique_ptr<RecordStore> store;
        QByteArray machineId;
        std::function<QDateTime()> now = [] { return QDateTime::currentDateTimeUtc(); };
        std::chrono::milliseconds timeout = std::chrono::seconds(30); // for one answer of the service
    };

    /// The keychain, identity and clock of this machine.
    static Parts partsOfThisMachine(const InfoDictionary& info);

    explicit LicenceManager(Parts parts);

    /// Reads and verifies the stored licence without a network, at every start. Never throws. When the status
    /// is `isAwaited` afterwards, the next call goes on waiting for the keychain.
    void load(const StopQuery& isStopping = {}) noexcept;

    /// For exports. Never waits for an operation under way.
    bool isLicensed() const;
    LicenceStatus status() const;

    /// Activates the key on this machine. A machine activated again does not count twice.
    void activate(const QString& keyText, const StopQuery& isStopping = {});

    /// Gives the machine back to the key and forgets the licence. Without an answer of the service, or where
    /// nothing can be written, the licence stays.
    void deactivate(const StopQuery& isStopping = {});

    /// Requests a new licence when the old one has less than 14 days left. Returns the error of a failure,
    /// which leaves the old licence valid.
    std::optional<LicenceError> renewIfDue(const StopQuery& isStopping = {});

    /// For a machine without a network: writes the request to a file, and imports the answer of the service.
    void writeRequest(const QString& keyText, const QString& path, const StopQuery& isStopping = {});
    void importFile(const QString& path, const StopQuery& isStopping = {});

private:
    struct Kept;

    std::unique_lock<std::mutex> begin(const StopQuery& isStopping);
    Kept readKept(const StopQuery& isStopping);
    Kept readKeptOrRefused(const StopQuery& isStopping);
    void keep(Kept kept, const StopQuery& isStopping, const QString& consequence = {});
    LicenceStatus judged(const Kept& kept) const;
    LicenceRequest requestFor(const LicenceKey& key) const;
    void giveBackAtService(const LicenceRecord& record, const StopQuery& isStopping) const;
    void requireAnswerTo(const LicenceRequest& request, const SignedLicence& answer) const;
    void fetch(const QString& operation, const LicenceKey& key, const StopQuery& isStopping);
    void take(const SignedLicence& licence, Kept kept, bool isFresh, const StopQuery& isStopping);
    Ed25519::PublicKey publicKey() const;
    LicenceClient client() const;
    void setStatus(const LicenceStatus& status);

    Parts m_parts;
    std::mutex m_operation; // one at a time
    mutable std::mutex m_statusMutex;
    LicenceStatus m_status;
};

}
