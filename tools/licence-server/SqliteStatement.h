// One prepared SQLite statement, owned; every failure is an exception.
#pragma once

#include <memory>
#include <optional>
#include <QString>
#include <sqlite3.h>
#include <stdexcept>

namespace pointloom::licenceserver {

class SqliteError : public std::runtime_error {
public:
    explicit SqliteError(sqlite3* database)
        : std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database)) {}
};

class SqliteStatement {
public:
    SqliteStatement(sqlite3* database, const char* sql);

    /// Binds the next parameter, in the order of the question marks.
    SqliteStatement& bind(const QString& text);
    SqliteStatement& bind(const std::optional<QString>& text);
    SqliteStatement& bind(std::optional<int> number);

    /// Goes to the next row; false when there is none.
    bool step();

    /// Runs to the end.
    void run();

    QString text(int column) const;
    std::optional<QString> optionalText(int column) const;
    int number(int column) const;
    std::optional<int> optionalNumber(int column) const;

private:
    void check(int result) const;

    sqlite3* m_database;
    std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> m_statement;
    int m_parameter = 0;
};

}
