#include "journalconnection.h"

#include "jet/sql/collation.h"
#include "jet/sql/functions.h"

#include <stdexcept>

#include <sqlite3.h>

namespace {

using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

sqlite3* openMemory()
{
    sqlite3* connection = nullptr;
    sqlite3_open(":memory:", &connection);
    return connection;
}

std::string declared(jet::FieldType type)
{
    switch (type) {
    case jet::FieldType::Text:
    case jet::FieldType::Memo:
        return " TEXT COLLATE JET";
    case jet::FieldType::Date:
    case jet::FieldType::Double:
    case jet::FieldType::Currency:
        return " REAL";
    default:
        return " INTEGER";
    }
}

std::string cell(sqlite3_stmt* statement, int column)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text ? text : "-";
}

Statement prepare(sqlite3* connection, const std::string& sqlite)
{
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(connection, sqlite.c_str(), -1, &raw, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection) + (": " + sqlite));
    return {raw, sqlite3_finalize};
}

} // namespace

JournalConnection::JournalConnection(JournalSchema tables)
    : schema(std::move(tables))
    , m_connection(openMemory(), sqlite3_close)
{
    jet::sql::registerAllFunctions(m_connection.get(), m_errors);
    jet::sql::registerCollation(m_connection.get());
    for (const JournalSchema::Table& table : schema.tables()) {
        std::string sql;
        for (const jet::sql::SchemaColumn& column : table.columns)
            sql += (sql.empty() ? "CREATE TABLE \"" + table.name + "\" (" : ", ")
                   + ('"' + column.name + '"') + declared(column.type);
        sqlite3_exec(m_connection.get(), (sql + ")").c_str(), nullptr, nullptr, nullptr);
    }
}

jet::sql::Translation JournalConnection::translate(std::string_view jetSql)
{
    return jet::sql::translate(jet::sql::parse(jetSql), schema);
}

std::string JournalConnection::prepareError(const std::string& sqlite)
{
    sqlite3_stmt* raw = nullptr;
    const int code = sqlite3_prepare_v2(m_connection.get(), sqlite.c_str(), -1, &raw, nullptr);
    sqlite3_finalize(raw);
    return code == SQLITE_OK ? "" : sqlite3_errmsg(m_connection.get());
}

std::vector<std::string> JournalConnection::rows(std::string_view jetSql)
{
    const Statement statement = prepare(m_connection.get(), translate(jetSql).sqlite);
    sqlite3_stmt* raw = statement.get();
    std::vector<std::string> result;
    int code = sqlite3_step(raw);
    for (; code == SQLITE_ROW; code = sqlite3_step(raw)) {
        std::string row;
        for (int i = 0; i < sqlite3_column_count(raw); ++i)
            row += (i == 0 ? "" : "|") + cell(raw, i);
        result.push_back(row);
    }
    m_errors.rethrow();
    if (code != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(m_connection.get()));
    return result;
}

std::string JournalConnection::value(const std::string& expression)
{
    return rows("SELECT " + expression).at(0);
}

double JournalConnection::number(const std::string& expression)
{
    const Statement statement =
        prepare(m_connection.get(), translate("SELECT " + expression).sqlite);
    sqlite3_step(statement.get());
    return sqlite3_column_double(statement.get(), 0);
}
