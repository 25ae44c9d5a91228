#include "licence-server/SqliteStatement.h"

namespace pointloom::licenceserver {

SqliteStatement::SqliteStatement(sqlite3* database, const char* sql)
    : m_database(database)
    , m_statement(nullptr, &sqlite3_finalize) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(database, sql, -1, &statement, nullptr));
    m_statement.reset(statement);
}

SqliteStatement& SqliteStatement::bind(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    constexpr auto copied = -1; // SQLITE_TRANSIENT, which is a C-style cast
    check(sqlite3_bind_text(m_statement.get(), ++m_parameter, bytes.constData(),
                            static_cast<int>(bytes.size()),
                            reinterpret_cast<sqlite3_destructor_type>(copied)));
    return *this;
}

SqliteStatement& SqliteStatement::bind(const std::optional<QString>& text) {
    if (text)
        return bind(*text);
    check(sqlite3_bind_null(m_statement.get(), ++m_parameter));
    return *this;
}

SqliteStatement& SqliteStatement::bind(std::optional<int> number) {
    ++m_parameter;
    check(number ? sqlite3_bind_int(m_statement.get(), m_parameter, *number)
                 : sqlite3_bind_null(m_statement.get(), m_parameter));
    return *this;
}

bool SqliteStatement::step() {
    const int result = sqlite3_step(m_statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        throw SqliteError(m_database);
    return result == SQLITE_ROW;
}

void SqliteStatement::run() {
    while (step()) {
    }
}

QString SqliteStatement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column));
    return QString::fromUtf8(bytes, sqlite3_column_bytes(m_statement.get(), column));
}

std::optional<QString> SqliteStatement::optionalText(int column) const {
    if (sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL)
        return std::nullopt;
    return text(column);
}

int SqliteStatement::number(int column) const {
    return sqlite3_column_int(m_statement.get(), column);
}

std::optional<int> SqliteStatement::optionalNumber(int column) const {
    if (sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL)
        return std::nullopt;
    return number(column);
}

void SqliteStatement::check(int result) const {
    if (result != SQLITE_OK)
        throw SqliteError(m_database);
}

}
