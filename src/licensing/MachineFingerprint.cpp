#include "licensing/MachineFingerprint.h"

#include "licensing/LicenceError.h"

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

}
