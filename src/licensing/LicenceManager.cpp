#include "licensing/LicenceManager.h"

#include "files/FileDescriptor.h"
#include "files/NewFile.h"
#include "licensing/LicenceStatus.h"
#include "licensing/RecordStore.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <cstdio>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <thread>

namespace pointloom {

namespace {

// A key given back on this machine. Records of the key issued until then are refused.
struct Return {
    QString key;
    QDateTime at;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("key", &Return::key), json::field("at", &Return::at)};
    }
};

constexpr std::size_t mostReturns = 200;
constexpr std::size_t mostRequests = 20;

template <class List>
void keepNewest(List& list, std::size_t most) {
    if (list.size() > most)
        list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(most));
}

}

// The stored state: the licence as received, and what protects it against clocks and old files.
struct LicenceManager::Kept {
    std::optional<QString> licence;
    std::optional<QString> signature;
    std::optional<QDateTime> latestTime; // the latest that this machine's clock, or the service's, has shown
    std::optional<std::vector<QString>> ended; // ids of licences given back, as earlier versions stored them
    std::optional<std::vector<Return>> returned;  // one for each key, in the order of giving back
    std::optional<std::vector<QString>> requests; // nonces of written requests that are not answered

    static constexpr auto jsonFields() {
        return std::tuple{
            json::field("licence", &Kept::licence),       json::field("signature", &Kept::signature),
            json::field("latestTime", &Kept::latestTime), json::field("ended", &Kept::ended),
            json::field("returned", &Kept::returned),     json::field("requests", &Kept::requests)};
    }

    std::optional<SignedLicence> signedLicence() const {
        if (!licence || !signature)
            return std::nullopt;
        return SignedLicence{licence->toUtf8(), signature->toUtf8()};
    }

    bool wasGivenBack(const LicenceRecord& record) const {
        return (ended && std::find(ended->begin(), ended->end(), record.id) != ended->end()) ||
               (returned && std::any_of(returned->begin(), returned->end(), [&](const Return& each) {
                    return each.key == record.key && record.issued <= each.at;
                }));
    }

    // True for the answer to an open request of this machine.
    bool awaits(const LicenceRecord& record) const {
        return record.nonce && requests &&
               std::find(requests->begin(), requests->end(), *record.nonce) != requests->end();
    }

    void giveBack(const LicenceRecord& record, const QDateTime& at) {
        licence.reset();
        signature.reset();
        requests.reset(); // their answers would activate the key again
        returned = returned.value_or(std::vector<Return>());
        std::erase_if(*returned, [&](const Return& each) { return each.key == record.key; });
        returned->push_back({record.key, at});
        keepNewest(*returned, mostReturns);
    }

    void addRequest(const QString& nonce) {
        requests = requests.value_or(std::vector<QString>());
        requests->push_back(nonce);
        keepNewest(*requests, mostRequests);
    }

    // The service's current time overrules a clock that once ran ahead.
    void setTime(const QDateTime& now) {
        latestTime = now;
        if (returned)
            for (Return& each : *returned)
                each.at = std::min(each.at, now);
    }
};

namespace {

constexpr qint64 largestFile = 64 * 1024; // bytes of a licence file

[[noreturn]] void fail(LicenceFault fault, const QString& message) {
    throw LicenceError(fault, message);
}

QByteArray contentsOf(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    QFile file(path);
    if (!QFileInfo(path).isFile())
        fail(LicenceFault::file, QStringLiteral("%1 is not a file.").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        fail(LicenceFault::file, QStringLiteral("%1 cannot be read: %2").arg(name, file.errorString()));
    const QByteArray bytes = file.read(largestFile + 1);
    if (bytes.size() > largestFile)
        fail(LicenceFault::file, QStringLiteral("%1 is too large for a licence file.").arg(name));
    return bytes;
}

bool isEmptyObject(const QByteArray& answer) {
    try {
        return json::parse(answer, {.bytes = largestFile, .depth = 4}) == json::Value::object();
    } catch (const json::DecodingError&) {
        return false;
    }
}

LicenceStatus unreadStatus(const LicenceError& error) {
    LicenceStatus status;
    status.state = LicenceState::unread;
    status.isAwaited = error.fault() == LicenceFault::keychainLocked;
    status.fault = error.message();
    return status;
}

const QString newRequestHelps = QStringLiteral(
    " If it once was ahead instead, write a new request file on it and import the answer to that.");

}

LicenceManager::Parts LicenceManager::partsOfThisMachine(const InfoDictionary& info) {
    return {.info = info,
            .store = std::make_unique<KeychainRecordStore>(),
            .machineId = QSysInfo::machineUniqueId()};
}

LicenceManager::LicenceManager(Parts parts)
    : m_parts(std::move(parts)) {}

// Waits for an operation under way, which may itself wait for the keychain or the service.
std::unique_lock<std::mutex> LicenceManager::begin(const StopQuery& isStopping) {
    constexpr std::chrono::milliseconds poll(20);
    std::unique_lock operation(m_operation, std::defer_lock);
    while (!operation.try_lock()) {
        if (isStopping && isStopping())
            fail(LicenceFault::cancelled, QStringLiteral("Cancelled."));
        std::this_thread::sleep_for(poll);
    }
    return operation;
}

void LicenceManager::load(const StopQuery& isStopping) noexcept {
    try {
        const auto operation = begin(isStopping);
        Kept kept = readKept(isStopping);
        setStatus(judged(kept));
        constexpr qint64 worthKeeping = 60 * 60; // seconds; spares the keychain a write at every start
        const QDateTime now = m_parts.now();
        if (kept.licence && (!kept.latestTime || kept.latestTime->secsTo(now) > worthKeeping)) {
            kept.latestTime = now;
            keep(kept, isStopping);
        }
    } catch (const LicenceError& error) {
        if (error.fault() == LicenceFault::cancelled)
            return;
        if (status().state == LicenceState::unlicensed || status().state == LicenceState::unread)
            setStatus(unreadStatus(error));
        else
            std::fprintf(stderr, "[Licence] %s\n", error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "[Licence] %s\n", error.what());
    }
}

bool LicenceManager::isLicensed() const {
    const std::lock_guard lock(m_statusMutex);
    return m_status.isLicensed();
}

LicenceStatus LicenceManager::status() const {
    const std::lock_guard lock(m_statusMutex);
    return m_status;
}

void LicenceManager::activate(const QString& keyText, const StopQuery& isStopping) {
    const auto key = LicenceKey::parse(keyText);
    const auto operation = begin(isStopping);
    fetch(QStringLiteral("activate"), key, isStopping);
}

void LicenceManager::deactivate(const StopQuery& isStopping) {
    const auto operation = begin(isStopping);
    Kept kept = readKept(isStopping);
    const LicenceStatus before = judged(kept);
    if (!kept.licence)
        fail(LicenceFault::notActivated, QStringLiteral("This machine has no licence to give back."));
    if (before.record && before.state != LicenceState::otherMachine) {
        // Before the service is asked: a licence that cannot be removed here would be valid on two machines.
        keep(kept, isStopping, QStringLiteral("The licence was not given back. "));
        giveBackAtService(*before.record, isStopping);
        kept.giveBack(*before.record, std::max(m_parts.now(), before.record->issued));
    } else {
        kept.licence.reset();
        kept.signature.reset();
    }
    setStatus({});
    keep(kept, isStopping, QStringLiteral("The licence was given back but is still kept here; try again. "));
}

void LicenceManager::giveBackAtService(const LicenceRecord& record, const StopQuery& isStopping) const {
    try {
        const QByteArray answer = client().post(QStringLiteral("deactivate"),
                                                requestFor(LicenceKey::parse(record.key)), isStopping);
        if (!isEmptyObject(answer))
            fail(LicenceFault::serviceTrouble,
                 QStringLiteral("The licence service did not confirm that the licence was given back."));
    } catch (const LicenceError& error) {
        // The service does not count this machine: it was given back before.
        if (error.fault() != LicenceFault::notActivated && error.fault() != LicenceFault::unknownKey)
            throw;
    }
}

std::optional<LicenceError> LicenceManager::renewIfDue(const StopQuery& isStopping) {
    try {
        const auto operation = begin(isStopping);
        const LicenceStatus before = status();
        if (!before.isRenewalDue)
            return std::nullopt;
        fetch(QStringLiteral("renew"), LicenceKey::parse(before.record->key), isStopping);
        return std::nullopt;
    } catch (const LicenceError& error) {
        return error;
    }
}

void LicenceManager::writeRequest(const QString& keyText, const QString& path, const StopQuery& isStopping) {
    const LicenceRequest request = requestFor(LicenceKey::parse(keyText));
    const auto operation = begin(isStopping);
    try {
        writeWhole(path, request.toJson());
    } catch (const FileError& error) {
        fail(LicenceFault::file,
             QStringLiteral("%1 cannot be written: %2").arg(QFileInfo(path).fileName(), error.reason()));
    }
    try {
        Kept kept = readKept(isStopping);
        kept.addRequest(request.nonce);
        keep(kept, isStopping);
    } catch (const LicenceError&) {
        // The answer is then judged by its time, as a licence file that this machine did not ask for.
    }
}

void LicenceManager::importFile(const QString& path, const StopQuery& isStopping) {
    const auto licence = SignedLicence::fromJson(contentsOf(path));
    const LicenceRecord record = licence.verified(publicKey());
    const auto operation = begin(isStopping);
    const Kept kept = readKeptOrRefused(isStopping);
    const bool isFresh = kept.awaits(record);
    const QDateTime latestTime = isFresh ? record.issued : kept.latestTime.value_or(record.issued);
    const LicenceStatus next =
        statusOf(record, machineFingerprint(m_parts.machineId), m_parts.now(), latestTime);
    if (next.state == LicenceState::otherMachine)
        fail(LicenceFault::otherMachine, QStringLiteral("This licence file was made for another machine."));
    if (next.state == LicenceState::expired)
        fail(LicenceFault::ended, next.isClockBehind ? next.inWords() + newRequestHelps : next.inWords());
    if (!isFresh && kept.wasGivenBack(record))
        fail(LicenceFault::notActivated,
             QStringLiteral("The licence in this file was given back on this machine."));
    const LicenceStatus before = judged(kept);
    if (before.isLicensed() && before.record->key == record.key && before.record->issued > record.issued)
        fail(LicenceFault::ended, QStringLiteral("The licence in this file is older than the one in use."));
    take(licence, kept, isFresh, isStopping);
}

// Requests a licence from the service, verifies it and stores it.
void LicenceManager::fetch(const QString& operation, const LicenceKey& key, const StopQuery& isStopping) {
    publicKey(); // throws before a machine is counted when the answer could not be verified
    const LicenceRequest request = requestFor(key);
    const LicenceClient service = client();
    const Kept kept = readKeptOrRefused(isStopping);
    const auto answer = SignedLicence::fromJson(service.post(operation, request, isStopping));
    requireAnswerTo(request, answer);
    take(answer, kept, true, isStopping);
}

void LicenceManager::requireAnswerTo(const LicenceRequest& request, const SignedLicence& answer) const {
    const LicenceRecord record = answer.verified(publicKey());
    if (record.key != request.key || record.fingerprint != request.fingerprint ||
        record.nonce != request.nonce)
        fail(LicenceFault::invalidLicence,
             QStringLiteral("The licence service answered another request than ours."));
}

// `isFresh`: the answer to a request of this machine, whose nonce proves that the service's time is current.
void LicenceManager::take(const SignedLicence& licence, Kept kept, bool isFresh,
                          const StopQuery& isStopping) {
    const LicenceRecord record = licence.verified(publicKey());
    const bool wasLicensed = judged(kept).isLicensed();
    kept.licence = QString::fromUtf8(licence.licence);
    kept.signature = QString::fromUtf8(licence.signature);
    if (isFresh)
        kept.setTime(record.issued);
    else
        kept.latestTime = std::max(kept.latestTime.value_or(record.issued), record.issued);
    if (record.nonce && kept.requests)
        std::erase(*kept.requests, *record.nonce);
    const LicenceStatus next = judged(kept);
    if (next.isLicensed() || !wasLicensed) {
        setStatus(next); // holds for this run even when it cannot be kept
        keep(kept, isStopping);
    }
    if (!next.isLicensed())
        fail(LicenceFault::ended,
             wasLicensed ? QStringLiteral(
                               "The licence service sent a licence that has run out; the one in use stays.")
                         : next.inWords());
}

LicenceManager::Kept LicenceManager::readKept(const StopQuery& isStopping) {
    const auto bytes = m_parts.store->load(isStopping);
    try {
        return bytes ? json::decode<Kept>(json::parse(*bytes, {.bytes = largestRecord, .depth = 4})) : Kept();
    } catch (const json::DecodingError&) {
        return {}; // damaged: as if nothing had been kept
    }
}

// A new licence can be used although the keychain refuses to hand out the old one.
LicenceManager::Kept LicenceManager::readKeptOrRefused(const StopQuery& isStopping) {
    try {
        return readKept(isStopping);
    } catch (const LicenceError& error) {
        if (error.fault() != LicenceFault::keychainRefused)
            throw;
        return {};
    }
}

// `consequence` precedes the reason when nothing can be written.
void LicenceManager::keep(Kept kept, const StopQuery& isStopping, const QString& consequence) {
    QByteArray bytes = json::compact(json::encode(kept));
    while (bytes.size() > largestRecord && kept.ended && !kept.ended->empty()) {
        keepNewest(*kept.ended, kept.ended->size() / 2);
        bytes = json::compact(json::encode(kept));
    }
    try {
        m_parts.store->save(bytes, isStopping);
    } catch (const LicenceError& error) {
        fail(error.fault(), consequence + error.message());
    }
}

LicenceStatus LicenceManager::judged(const Kept& kept) const {
    const auto licence = kept.signedLicence();
    if (!licence)
        return {};
    try {
        const LicenceRecord record = licence->verified(publicKey());
        return statusOf(record, machineFingerprint(m_parts.machineId), m_parts.now(),
                        kept.latestTime.value_or(record.issued));
    } catch (const LicenceError& error) {
        LicenceStatus status;
        status.state = LicenceState::invalid;
        status.fault = error.message();
        return status;
    }
}

LicenceRequest LicenceManager::requestFor(const LicenceKey& key) const {
    return LicenceRequest::make(key, machineFingerprint(m_parts.machineId), m_parts.info.shortVersion());
}

Ed25519::PublicKey LicenceManager::publicKey() const {
    const auto key =
        Ed25519::publicKeyFromBase64(m_parts.info.text("LicensePublicKey").value_or(QString()).toUtf8());
    if (!key)
        fail(LicenceFault::notConfigured,
             QStringLiteral("This copy of Pointloom names no seller whose licences it could verify."));
    return *key;
}

LicenceClient LicenceManager::client() const {
    return LicenceClient(m_parts.info.text("LicenseServiceURL").value_or(QString()), m_parts.timeout);
}

void LicenceManager::setStatus(const LicenceStatus& status) {
    const std::lock_guard lock(m_statusMutex);
    m_status = status;
}

}
