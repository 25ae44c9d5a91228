// Licence keys, "PL-" and twenty characters of which the last is a check symbol, and the errors of licensing.
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

class LicenceKey {
public:
    /// Reads a key as it is typed: spaces and hyphens anywhere, small letters, O for 0, I or L for 1.
    /// Throws LicenceError (malformedKey) that says what is wrong.
    static LicenceKey parse(const QString& text);

    static bool isValid(const QString& text);

    /// True when `text` is at least as long as a key: an error in it is then a slip, not a missing end.
    static bool isWhole(const QString& text);

    /// A fresh random key of 95 bits.
    static LicenceKey generate();

    /// "PL-XXXXX-XXXXX-XXXXX-XXXXX", the form that is sent and signed.
    const QString& text() const { return m_text; }

    /// The last group alone, for screens and console: "PL-…-XXXXX".
    QString masked() const;

    bool operator==(const LicenceKey&) const = default;

private:
    explicit LicenceKey(const QString& symbols);

    QString m_text;
};

}
