// A seller with a service on loopback, and machines that come and go.
#pragma once

#include "licence-server/HttpListener.h"
#include "licence-server/LicenceService.h"
#include "licensing/LicenceManager.h"

#include <gtest/gtest.h>
#include <memory>
#include <QTemporaryDir>

namespace pointloom::test {

/// What a machine keeps, for as long as the test lasts; a store of the manager's own refers to it.
struct Machine {
    QByteArray id;
    std::optional<QByteArray> kept;
    bool isStoreBroken = false;                    // nothing can be written
    std::optional<LicenceFault> readingFault = {}; // of a store that cannot be read
    int lockedLoads = 0;                           // that fail before the keychain is unlocked
    bool isSilent = false;                         // reading waits until it is cancelled
};

QByteArray publicKeyBase64(const Ed25519::SecretKey& key);

class LicenceFixture : public testing::Test {
protected:
    LicenceFixture();

    /// Sells a key.
    LicenceKey sell(int machines = 1, const std::optional<QString>& ends = {},
                    std::optional<int> leaseDays = {});

    /// A start of the program on `machine`, its licence loaded.
    std::unique_ptr<LicenceManager> start(Machine& machine);
    std::unique_ptr<LicenceManager> startWithoutLoading(Machine& machine);

    /// The fault of an operation that must fail; its message is in `m_message`.
    template <class Operation>
    std::optional<LicenceFault> faultOf(Operation&& operation) {
        try {
            operation();
        } catch (const LicenceError& error) {
            m_message = error.message().toStdString();
            return error.fault();
        }
        return std::nullopt;
    }

    QDateTime m_now = QDateTime::fromString(QStringLiteral("2024-05-01T10:00:00Z"), Qt::ISODate);
    Ed25519::SecretKey m_secret = Ed25519::generateSecretKey();
    licenceserver::LicenceDatabase m_database{QStringLiteral(":memory:")};
    licenceserver::LicenceService m_service{m_database, m_secret, [this] { return m_now; }};
    licenceserver::HttpListener m_listener{
        [this](const QByteArray& path, const QByteArray& body) { return m_service.answer(path, body); }};
    QString m_serviceURL;
    QByteArray m_publicKey = publicKeyBase64(m_secret);
    std::chrono::milliseconds m_timeout = std::chrono::seconds(10);
    Machine m_laptop{"laptop", {}};
    Machine m_desktop{"desktop", {}};
    QTemporaryDir m_folder;
    std::string m_message;
};
}
