#include "licensing/LicenceManager.h"

#include "files/WholeFile.h"
#include "licensing/KeychainRecordStore.h"
#include "licensing/MachineFingerprint.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <cstdio>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

namespace pointloom {

// What is stored: the licence as it came, and what guards it against clocks and old files.
struct LicenceManager::Kept {
    std::optional<QString> licence;
    std::optional<QString> signature;
    std::optional<QDateTime> latestTime; // the latest that this machine's clock, or the service's, has shown
    std::optional<std::vector<QString>> ended; // ids of licences given back here, which no file brings back

    static constexpr auto jsonFields() {
        return std::tuple{json::field("licence", &Kept::licence), json::field("signature", &Kept::signature),
                          json::field("latestTime", &Kept::latestTime), json::field("ended", &Kept::ended)};
    }

    std::optional<SignedLicence> signedLicence() const {
        if (!licence || !signature)
            return std::nullopt;
        return SignedLicence{licence->toUtf8(), signature->toUtf8()};
    }

    bool hasEnded(const QString& id) const {
        return ended && std::find(ended->begin(), ended->end(), id) != ended->end();
    }
};

namespace {

constexpr qint64 largestFile = 64 * 1024; // bytes

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

}

LicenceManager::Parts LicenceManager::partsOfThisMachine(const InfoDictionary& info) {
    return {.info = info,
            .store = std::make_unique<KeychainRecordStore>(),
            .machineId = QSysInfo::machineUniqueId()};
}

LicenceManager::LicenceManager(Parts parts)
    : m_parts(std::move(parts)) {}

void LicenceManager::load() noexcept {
    const std::lock_guard operation(m_operation);
    try {
        Kept kept = readKept();
        setStatus(judged(kept));
        constexpr qint64 worthKeeping = 60 * 60; // seconds; spares the keychain a write at every start
        const QDateTime now = m_parts.now();
        if (kept.licence && (!kept.latestTime || kept.latestTime->secsTo(now) > worthKeeping)) {
            kept.latestTime = now;
            keep(kept);
        }
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
    const std::lock_guard operation(m_operation);
    fetch(QStringLiteral("activate"), LicenceKey::parse(keyText), isStopping);
}

void LicenceManager::deactivate(const StopQuery& isStopping) {
    const std::lock_guard operation(m_operation);
    Kept kept = readKept();
    const LicenceStatus before = judged(kept);
    if (!kept.licence)
        fail(LicenceFault::notActivated, QStringLiteral("This machine has no licence to give back."));
    if (before.record && before.state != LicenceState::otherMachine) {
        try {
            client().post(QStringLiteral("deactivate"), requestFor(LicenceKey::parse(before.record->key)),
                          isStopping);
        } catch (const LicenceError& error) {
            // What the service no longer counts is given back already.
            if (error.fault() != LicenceFault::notActivated && error.fault() != LicenceFault::unknownKey)
                throw;
        }
        kept.ended = kept.ended.value_or(std::vector<QString>());
        kept.ended->push_back(before.record->id);
    }
    kept.licence.reset();
    kept.signature.reset();
    setStatus({});
    keep(kept);
}

std::optional<LicenceError> LicenceManager::renewIfDue(const StopQuery& isStopping) {
    const std::lock_guard operation(m_operation);
    const LicenceStatus before = status();
    if (!before.isRenewalDue)
        return std::nullopt;
    try {
        fetch(QStringLiteral("renew"), LicenceKey::parse(before.record->key), isStopping);
        return std::nullopt;
    } catch (const LicenceError& error) {
        return error;
    }
}

void LicenceManager::writeRequest(const QString& keyText, const QString& path) {
    const QByteArray bytes = requestFor(LicenceKey::parse(keyText)).toJson();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !commitWhole(file, bytes))
        fail(LicenceFault::file,
             QStringLiteral("%1 cannot be written: %2").arg(QFileInfo(path).fileName(), file.errorString()));
}

void LicenceManager::importFile(const QString& path) {
    const std::lock_guard operation(m_operation);
    const auto licence = SignedLicence::fromJson(contentsOf(path));
    const LicenceRecord record = licence.verified(publicKey());
    const Kept kept = readKept();
    const QDateTime latestTime = kept.latestTime.value_or(record.issued);
    const LicenceStatus next =
        statusOf(record, machineFingerprint(m_parts.machineId), m_parts.now(), latestTime);
    if (next.state == LicenceState::otherMachine)
        fail(LicenceFault::otherMachine, QStringLiteral("This licence file was made for another machine."));
    if (next.state == LicenceState::expired)
        fail(LicenceFault::ended, next.inWords());
    if (kept.hasEnded(record.id))
        fail(LicenceFault::notActivated,
             QStringLiteral("The licence in this file was given back on this machine."));
    const LicenceStatus before = judged(kept);
    if (before.isLicensed() && before.record->key == record.key && before.record->issued > record.issued)
        fail(LicenceFault::ended, QStringLiteral("The licence in this file is older than the one in use."));
    accept(licence, std::max(latestTime, record.issued));
}

// One answer of the service, verified and kept.
void LicenceManager::fetch(const QString& operation, const LicenceKey& key, const StopQuery& isStopping) {
    publicKey(); // without it the answer could not be judged: say so before a machine is taken
    const LicenceRequest request = requestFor(key);
    const auto answer = SignedLicence::fromJson(client().post(operation, request, isStopping));
    // The service's time is fresh, which the nonce proves: it overrules a clock that once ran ahead.
    accept(answer, answerTo(request, answer).issued);
}

LicenceRecord LicenceManager::answerTo(const LicenceRequest& request, const SignedLicence& answer) const {
    const LicenceRecord record = answer.verified(publicKey());
    if (record.key != request.key || record.fingerprint != request.fingerprint ||
        record.nonce != request.nonce)
        fail(LicenceFault::invalidLicence,
             QStringLiteral("The licence service answered another request than ours."));
    return record;
}

void LicenceManager::accept(const SignedLicence& licence, const QDateTime& latestTime) {
    Kept kept = readKept();
    kept.licence = QString::fromUtf8(licence.licence);
    kept.signature = QString::fromUtf8(licence.signature);
    kept.latestTime = latestTime;
    setStatus(judged(kept)); // holds for this run even when it cannot be kept
    keep(kept);
}

LicenceManager::Kept LicenceManager::readKept() {
    try {
        const auto bytes = m_parts.store->load();
        return bytes ? json::decode<Kept>(json::parse(*bytes, {.bytes = largestFile, .depth = 4})) : Kept();
    } catch (const json::DecodingError&) {
        return {}; // damaged: as if nothing had been kept
    }
}

void LicenceManager::keep(const Kept& kept) {
    m_parts.store->save(json::compact(json::encode(kept)));
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
