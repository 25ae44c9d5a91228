// The keys that were sold and the machines that use them.
#pragma once

#include <memory>
#include <optional>
#include <QDateTime>
#include <QString>
#include <sqlite3.h>
#include <vector>

namespace pointloom::licenceserver {

struct SoldKey {
    QString key;
    QString holder;
    int machineLimit = 2;
    std::optional<QString> ends;  // "2025-05-01T00:00:00Z"; absent: never
    std::optional<int> leaseDays; // a licence lasts this long before it is renewed; absent: to the end
    bool isRevoked = false;
};

class LicenceDatabase {
public:
    /// Opens or makes the file; ":memory:" keeps nothing. Throws SqliteError.
    explicit LicenceDatabase(const QString& path);

    void addKey(const SoldKey& key);
    std::optional<SoldKey> find(const QString& key);
    std::vector<SoldKey> allKeys();

    /// False when there is no such key.
    bool revoke(const QString& key);
    bool extend(const QString& key, const std::optional<QString>& ends);

    int machineCount(const QString& key);
    bool isActivated(const QString& key, const QString& fingerprint);

    /// Counts the machine; one already counted changes nothing. False when the limit is reached.
    bool activate(const SoldKey& key, const QString& fingerprint, const QString& version);

    /// False when the machine was not counted.
    bool deactivate(const QString& key, const QString& fingerprint);

    /// Remembers a request; false when it was seen before.
    bool isFirstUse(const QString& nonce);

private:
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> m_database;
};

}
