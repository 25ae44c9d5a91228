#include "licence-server/LicenceDatabase.h"

#include "licence-server/SqliteStatement.h"

namespace pointloom::licenceserver {

namespace {

constexpr const char* tables[] = {
    "CREATE TABLE IF NOT EXISTS keys (key TEXT PRIMARY KEY, holder TEXT NOT NULL, machine_limit INTEGER NOT "
    "NULL, "
    "ends TEXT, lease_days INTEGER, revoked INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE IF NOT EXISTS machines (key TEXT NOT NULL REFERENCES keys, fingerprint TEXT NOT NULL, "
    "version TEXT NOT NULL, PRIMARY KEY (key, fingerprint))",
    "CREATE TABLE IF NOT EXISTS nonces (nonce TEXT PRIMARY KEY)",
};

sqlite3* opened(const QString& path) {
    sqlite3* database = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &database) != SQLITE_OK) {
        const SqliteError error(database);
        sqlite3_close(database);
        throw error;
    }
    return database;
}

SoldKey keyOf(const SqliteStatement& row) {
    return {row.text(0),         row.text(1),           row.number(2),
            row.optionalText(3), row.optionalNumber(4), row.number(5) != 0};
}

}

LicenceDatabase::LicenceDatabase(const QString& path)
    : m_database(opened(path), &sqlite3_close) {
    constexpr int patience = 5000; // ms, while another process writes
    sqlite3_busy_timeout(m_database.get(), patience);
    for (const char* table : tables)
        SqliteStatement(m_database.get(), table).run();
}

void LicenceDatabase::addKey(const SoldKey& key) {
    SqliteStatement(m_database.get(), "INSERT INTO keys VALUES (?, ?, ?, ?, ?, ?)")
        .bind(key.key)
        .bind(key.holder)
        .bind(key.machineLimit)
        .bind(key.ends)
        .bind(key.leaseDays)
        .bind(key.isRevoked ? 1 : 0)
        .run();
}

std::optional<SoldKey> LicenceDatabase::find(const QString& key) {
    SqliteStatement row(m_database.get(), "SELECT * FROM keys WHERE key = ?");
    if (!row.bind(key).step())
        return std::nullopt;
    return keyOf(row);
}

std::vector<SoldKey> LicenceDatabase::allKeys() {
    SqliteStatement row(m_database.get(), "SELECT * FROM keys ORDER BY holder, key");
    std::vector<SoldKey> keys;
    while (row.step())
        keys.push_back(keyOf(row));
    return keys;
}

bool LicenceDatabase::revoke(const QString& key) {
    SqliteStatement(m_database.get(), "UPDATE keys SET revoked = 1 WHERE key = ?").bind(key).run();
    return sqlite3_changes(m_database.get()) > 0;
}

bool LicenceDatabase::extend(const QString& key, const std::optional<QString>& ends) {
    SqliteStatement(m_database.get(), "UPDATE keys SET ends = ? WHERE key = ?").bind(ends).bind(key).run();
    return sqlite3_changes(m_database.get()) > 0;
}

int LicenceDatabase::machineCount(const QString& key) {
    SqliteStatement row(m_database.get(), "SELECT count(*) FROM machines WHERE key = ?");
    row.bind(key).step();
    return row.number(0);
}

bool LicenceDatabase::isActivated(const QString& key, const QString& fingerprint) {
    SqliteStatement row(m_database.get(), "SELECT 1 FROM machines WHERE key = ? AND fingerprint = ?");
    return row.bind(key).bind(fingerprint).step();
}

bool LicenceDatabase::activate(const SoldKey& key, const QString& fingerprint, const QString& version) {
    // One statement, so that two requests at once cannot pass the limit together.
    SqliteStatement(
        m_database.get(),
        "INSERT INTO machines SELECT ?, ?, ? WHERE (SELECT count(*) FROM machines WHERE key = ?) < ? "
        "ON CONFLICT DO NOTHING")
        .bind(key.key)
        .bind(fingerprint)
        .bind(version)
        .bind(key.key)
        .bind(key.machineLimit)
        .run();
    return isActivated(key.key, fingerprint);
}

bool LicenceDatabase::deactivate(const QString& key, const QString& fingerprint) {
    SqliteStatement(m_database.get(), "DELETE FROM machines WHERE key = ? AND fingerprint = ?")
        .bind(key)
        .bind(fingerprint)
        .run();
    return sqlite3_changes(m_database.get()) > 0;
}

bool LicenceDatabase::isFirstUse(const QString& nonce) {
    SqliteStatement(m_database.get(), "INSERT INTO nonces VALUES (?) ON CONFLICT DO NOTHING")
        .bind(nonce)
        .run();
    return sqlite3_changes(m_database.get()) > 0;
}

}
