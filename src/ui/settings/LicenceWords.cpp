#include "ui/settings/LicenceWords.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"

namespace pointloom::LicenceWords {

namespace {

L10nKey textOf(LicenceFault fault) {
    switch (fault) {
    case LicenceFault::malformedKey:
        return L10nKey::licenceFaultMalformedKey;
    case LicenceFault::unknownKey:
        return L10nKey::licenceFaultUnknownKey;
    case LicenceFault::limitReached:
        return L10nKey::licenceFaultLimitReached;
    case LicenceFault::revoked:
        return L10nKey::licenceFaultRevoked;
    case LicenceFault::ended:
        return L10nKey::licenceFaultEnded;
    case LicenceFault::notActivated:
        return L10nKey::licenceFaultNotActivated;
    case LicenceFault::noConnection:
        return L10nKey::licenceFaultNoConnection;
    case LicenceFault::serviceTrouble:
        return L10nKey::licenceFaultServiceTrouble;
    case LicenceFault::notConfigured:
        return L10nKey::licenceFaultNotConfigured;
    case LicenceFault::invalidLicence:
        return L10nKey::licenceFaultInvalidLicence;
    case LicenceFault::otherMachine:
        return L10nKey::licenceFaultForOtherMachine;
    case LicenceFault::noMachineIdentity:
        return L10nKey::licenceFaultNoMachineIdentity;
    case LicenceFault::keychainLocked:
    case LicenceFault::keychainRefused:
        return L10nKey::licenceFaultKeychain;
    case LicenceFault::file:
        return L10nKey::licenceFaultFile;
    case LicenceFault::cancelled:
        return L10nKey::licenceFaultCancelled;
    }
    Q_UNREACHABLE();
}

bool saysMore(LicenceFault fault) {
    return fault == LicenceFault::file || fault == LicenceFault::serviceTrouble ||
           fault == LicenceFault::noConnection;
}

QString stateOf(const LicenceStatus& status, Language language) {
    const QString holder = status.record ? status.record->holder : QString();
    switch (status.state) {
    case LicenceState::unlicensed:
        return t(language, L10nKey::licenceStateUnlicensed);
    case LicenceState::unread:
        return t(language, L10nKey::licenceStateUnread) + QStringLiteral(" (") + status.fault + u')';
    case LicenceState::expired:
        return format(t(language, L10nKey::licenceStateExpired), holder);
    case LicenceState::otherMachine:
        return format(t(language, L10nKey::licenceStateOtherMachine), holder);
    case LicenceState::invalid:
        return t(language, L10nKey::licenceFaultInvalidLicence);
    case LicenceState::licensed:
        break;
    }
    QString words = format(t(language, L10nKey::licenceStateLicensed), holder);
    if (const auto& end = status.record->expires) {
        words += u' ' + format(t(language, L10nKey::licenceStateLicensedUntil),
                               localeOf(language).toString(end->toLocalTime().date(), QLocale::ShortFormat));
    }
    return words;
}

}

QString ofStatus(const LicenceStatus& status, Language language) {
    QString words = stateOf(status, language);
    if (status.isClockBehind)
        words += u' ' + t(language, L10nKey::licenceStateClockBehind);
    return words;
}

QString ofFault(LicenceFault fault, const QString& detail, Language language) {
    if (language == Language::english)
        return detail;
    const QString words = t(language, textOf(fault));
    return saysMore(fault) ? words + QStringLiteral(" (") + detail + u')' : words;
}

}
