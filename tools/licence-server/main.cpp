// The development licence service: makes a key pair, sells keys, answers requests.
#include "licence-server/HttpListener.h"
#include "licence-server/LicenceService.h"
#include "licensing/LicenceKey.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <stdexcept>

using namespace pointloom;
using namespace pointloom::licenceserver;

namespace {

QByteArray base64(const auto& key) {
    return QByteArray(reinterpret_cast<const char*>(key.data()), static_cast<qsizetype>(key.size()))
        .toBase64();
}

void makeKeyPair(const QString& path) {
    if (QFile::exists(path))
        throw std::runtime_error(path.toStdString() +
                                 " exists; licences signed with it would become invalid");
    const Ed25519::SecretKey secret = Ed25519::generateSecretKey();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(base64(secret) + '\n') < 0 || !file.commit())
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    std::printf("\"LicensePublicKey\": \"%s\"\n", base64(Ed25519::publicKeyOf(secret)).constData());
}

Ed25519::SecretKey secretKeyFrom(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    constexpr qint64 longest = 1024;
    const auto key = Ed25519::secretKeyFromBase64(file.read(longest));
    if (!key)
        throw std::runtime_error(path.toStdString() + ": not a secret key made by `keygen`");
    return *key;
}

void list(LicenceDatabase& database) {
    for (const SoldKey& key : database.allKeys())
        std::printf("%s  %d of %d machines  %s%s  %s\n", qPrintable(key.key), database.machineCount(key.key),
                    key.machineLimit,
                    qPrintable(key.ends ? QStringLiteral("until ") + *key.ends : QStringLiteral("for ever")),
                    key.isRevoked ? "  revoked" : "", qPrintable(key.holder));
}

std::optional<QString> checkedTime(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    if (!time.isValid() || time.timeSpec() != Qt::UTC)
        throw std::runtime_error(text + " is not a time such as 2025-05-01T00:00:00Z");
    return time.toString(Qt::ISODate);
}

int serve(LicenceDatabase& database, const QString& secretPath, const std::string& address, quint16 port) {
    LicenceService service(database, secretKeyFrom(secretPath));
    HttpListener listener(
        [&](const QByteArray& path, const QByteArray& body) { return service.answer(path, body); });
    listener.listen(QHostAddress(QString::fromStdString(address)), port);
    std::printf("[LicenceServer] http://%s:%d/\n", address.c_str(), listener.port());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    CLI::App app("Licence service for development; put a proxy that speaks TLS in front of it.");
    app.require_subcommand(1);
    std::string databasePath = "licences.sqlite";
    std::string secretPath = "licence-secret.key";
    app.add_option("--database", databasePath, "SQLite file")->capture_default_str();
    app.add_option("--secret", secretPath, "file with the secret key")->capture_default_str();

    auto* keygen = app.add_subcommand("keygen", "make a key pair and print its public half");
    auto* issue = app.add_subcommand("issue", "sell a key and print it");
    std::string holder;
    int limit = 2;
    std::string ends;
    int leaseDays = 0;
    issue->add_option("--holder", holder, "to whom")->required();
    issue->add_option("--machines", limit, "on how many machines")
        ->capture_default_str()
        ->check(CLI::Range(1, 1000));
    issue->add_option("--ends", ends, "when it ends, as in 2025-05-01T00:00:00Z; never without");
    issue->add_option("--lease-days", leaseDays, "renewed every so many days")->check(CLI::Range(1, 3650));
    std::string key;
    auto* revoke = app.add_subcommand("revoke", "withdraw a key");
    revoke->add_option("key", key)->required();
    auto* extend = app.add_subcommand("extend", "give a key another end");
    extend->add_option("key", key)->required();
    extend->add_option("--ends", ends, "never without");
    auto* listing = app.add_subcommand("list", "show all keys");
    auto* serving = app.add_subcommand("serve", "answer requests");
    std::string address = "127.0.0.1";
    quint16 port = 8090;
    serving->add_option("--address", address)->capture_default_str();
    serving->add_option("--port", port)->capture_default_str();
    CLI11_PARSE(app, argc, argv);

    try {
        if (*keygen) {
            makeKeyPair(QString::fromStdString(secretPath));
            return 0;
        }
        LicenceDatabase database(QString::fromStdString(databasePath));
        if (*serving)
            return serve(database, QString::fromStdString(secretPath), address, port);
        if (*listing) {
            list(database);
        } else if (*issue) {
            const SoldKey sold{LicenceKey::generate().text(),
                               QString::fromStdString(holder),
                               limit,
                               checkedTime(ends),
                               leaseDays > 0 ? std::optional(leaseDays) : std::nullopt,
                               false};
            database.addKey(sold);
            std::printf("%s\n", qPrintable(sold.key));
        } else {
            const QString text = LicenceKey::parse(QString::fromStdString(key)).text();
            if (!(*revoke ? database.revoke(text) : *extend && database.extend(text, checkedTime(ends))))
                throw std::runtime_error(key + ": no such key");
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "pointloom-licence-server: %s\n", error.what());
        return 1;
    }
}
