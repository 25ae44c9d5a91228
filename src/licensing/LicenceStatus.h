// Whether this machine is licensed, and the fingerprint by which the service knows it.
#pragma once

#include "licensing/LicenceRecord.h"
#include "json/JsonFields.h"

#include <optional>
#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace pointloom {

/// 64 hexadecimal digits that differ from machine to machine: HMAC-SHA-256 of the machine's identity under
/// this program's own salt, so that the identity itself never leaves the machine and no other program's
/// hash of it is the same. Throws LicenceError (noMachineIdentity) for an empty identity.
QString machineFingerprint(const QByteArray& machineId);

/// `unread`: the place where the licence is kept could not be read. `otherMachine`: the licence was made for
/// another machine. `invalid`: the licence is damaged or forged.
POINTLOOM_NAMED_ENUM(LicenceState, unlicensed, unread, licensed, expired, otherMachine, invalid);

/// Days before the end from which on a new licence is requested.
constexpr int renewalDays = 14;

struct LicenceStatus {
    LicenceState state = LicenceState::unlicensed;
    std::optional<LicenceRecord> record; // with `licensed`, `expired` and `otherMachine`
    bool isClockBehind = false;          // earlier than a time this machine has already seen
    bool isRenewalDue = false;
    bool isAwaited = false; // with `unread`: the keychain may still answer
    QString fault;          // in words, with `invalid` and `unread`

    bool isLicensed() const { return state == LicenceState::licensed; }

    /// One or two sentences for the licence sheet and the console.
    QString inWords() const;

    bool operator==(const LicenceStatus&) const = default;
};

/// Status of a record with a valid signature on the machine of `fingerprint`. `latestTime` is the latest
/// time seen so far: the later of it and `now` counts, so that a clock turned back extends nothing.
LicenceStatus statusOf(const LicenceRecord& record, const QString& fingerprint, const QDateTime& now,
                       const QDateTime& latestTime);

}
