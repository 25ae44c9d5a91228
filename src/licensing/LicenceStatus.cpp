#include "licensing/LicenceStatus.h"

#include "licensing/LicenceKey.h"

#include <algorithm>
#include <QLocale>
#include <QMessageAuthenticationCode>

namespace pointloom {

QString machineFingerprint(const QByteArray& machineId) {
    if (machineId.isEmpty())
        throw LicenceError(
            LicenceFault::noMachineIdentity,
            QStringLiteral("This system has no machine identity (/etc/machine-id), to which a licence "
                           "could be bound."));
    const QByteArray salt = "Pointloom licence fingerprint 1";
    return QString::fromLatin1(
        QMessageAuthenticationCode::hash(machineId, salt, QCryptographicHash::Sha256).toHex());
}

namespace {

QString day(const QDateTime& time) {
    return QLocale().toString(time.toLocalTime().date(), QLocale::LongFormat);
}

QString stateInWords(const LicenceStatus& status) {
    switch (status.state) {
    case LicenceState::unlicensed:
        return QStringLiteral("This copy is not licensed. Exported videos carry a licence watermark.");
    case LicenceState::licensed:
        return status.record->expires ? QStringLiteral("Licensed to %1 until %2.")
                                            .arg(status.record->holder, day(*status.record->expires))
                                      : QStringLiteral("Licensed to %1.").arg(status.record->holder);
    case LicenceState::expired:
        return QStringLiteral("The licence of %1 ran out on %2.")
            .arg(status.record->holder, day(*status.record->expires));
    case LicenceState::otherMachine:
        return QStringLiteral(
                   "The licence of %1 was activated on another machine. Activate the key on this one.")
            .arg(status.record->holder);
    case LicenceState::unread:
        return QStringLiteral("Whether this copy is licensed is not known yet; until then exported videos "
                              "carry a licence watermark. %1")
            .arg(status.fault);
    case LicenceState::invalid:
        return status.fault;
    }
    return {};
}

}

QString LicenceStatus::inWords() const {
    QString words = stateInWords(*this);
    if (isClockBehind)
        words += QStringLiteral(" The clock of this computer is behind; please set it.");
    return words;
}

LicenceStatus statusOf(const LicenceRecord& record, const QString& fingerprint, const QDateTime& now,
                       const QDateTime& latestTime) {
    // Correcting a clock by some hours is no manipulation.
    constexpr qint64 tolerance = 24 * 60 * 60; // seconds
    LicenceStatus status;
    status.record = record;
    if (record.fingerprint != fingerprint) {
        status.state = LicenceState::otherMachine;
        return status;
    }
    const QDateTime seen = std::max(latestTime, record.issued);
    const QDateTime effective = std::max(now, seen);
    status.isClockBehind = now.secsTo(seen) > tolerance;
    status.state =
        record.expires && effective >= *record.expires ? LicenceState::expired : LicenceState::licensed;
    status.isRenewalDue = record.expires && effective >= record.expires->addDays(-renewalDays);
    return status;
}

}
