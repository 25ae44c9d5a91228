// How this machine stands with its licence.
#pragma once

#include "licensing/LicenceRecord.h"
#include "json/RawValues.h"

#include <chrono>
#include <optional>
#include <QDateTime>
#include <QString>

namespace pointloom {

/// `unread`: the place where the licence is kept could not be read. `otherMachine`: the licence was made for
/// another machine. `invalid`: the licence is damaged or forged.
POINTLOOM_NAMED_ENUM(LicenceState, unlicensed, unread, licensed, expired, otherMachine, invalid);

/// Days before the end from which a new licence is asked for.
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

/// How a record whose signature holds stands on the machine of `fingerprint`. `latestTime` is the latest
/// time seen so far: the later of it and `now` counts, so that a clock turned back extends nothing.
LicenceStatus statusOf(const LicenceRecord& record, const QString& fingerprint, const QDateTime& now,
                       const QDateTime& latestTime);

}
