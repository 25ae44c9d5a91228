// What the licence service knows a machine by.
#pragma once

#include <QByteArray>
#include <QString>

namespace pointloom {

/// 64 hexadecimal digits that differ from machine to machine: HMAC-SHA-256 of the machine's identity under
/// this program's own salt, so that the identity itself never leaves the machine and no other program's
/// hash of it is the same. Throws LicenceError (noMachineIdentity) for an empty identity.
QString machineFingerprint(const QByteArray& machineId);

}
