// What can go wrong with a licence, in words for the person and as a case for the program.
#pragma once

#include <QString>
#include <stdexcept>

namespace pointloom {

enum class LicenceFault {
    malformedKey,      // not of the form of a key
    unknownKey,        // the service does not know it
    limitReached,      // used on as many machines as it was bought for
    revoked,           // withdrawn by the seller
    ended,             // its period is over
    notActivated,      // this machine holds no licence, or the service does not count it
    noConnection,      // the service was not reached
    serviceTrouble,    // it was, and did not make sense
    notConfigured,     // this copy names no licence service
    invalidLicence,    // damaged or not signed by the seller
    otherMachine,      // made for another machine
    noMachineIdentity, // this system cannot be told from others
    keychainLocked,    // the keychain has not answered yet
    keychainRefused,   // it did, and did not hand the licence out
    file,              // a file could not be read or written
    cancelled,
};

class LicenceError : public std::runtime_error {
public:
    LicenceError(LicenceFault fault, const QString& message)
        : std::runtime_error(message.toStdString())
        , m_fault(fault) {}

    LicenceFault fault() const { return m_fault; }
    QString message() const { return QString::fromUtf8(what()); }

private:
    LicenceFault m_fault;
};

}
