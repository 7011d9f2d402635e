#include "bench/peer.h"

#include "jet/database.h"

#include <sqlite3.h>

#include <stdexcept>

namespace bench {

namespace {

[[noreturn]] void fail(sqlite3* handle)
{
    throw std::runtime_error(sqlite3_errmsg(handle));
}

void bind(sqlite3_stmt* statement, int position, const jet::Value& value)
{
    if (value.isNull())
        sqlite3_bind_null(statement, position);
    else if (const auto* text = value.as<std::string>())
        sqlite3_bind_text(statement, position, text->data(), static_cast<int>(text->size()),
                          SQLITE_TRANSIENT);
    else if (const auto* date = value.as<jet::DateTime>())
        sqlite3_bind_double(statement, position, date->days);
    else if (const auto* truth = value.as<bool>())
        sqlite3_bind_int(statement, position, *truth ? -1 : 0);
    else if (const auto* number = value.as<double>())
        sqlite3_bind_double(statement, position, *number);
    else
        sqlite3_bind_int64(statement, position, value.toInteger());
}

} // namespace

Peer::Peer(jet::Database& journal, const std::filesystem::path& path)
    : m_path(path)
{
    std::filesystem::remove(path);
    if (sqlite3_open(path.c_str(), &m_handle) != SQLITE_OK)
        fail(m_handle);
    execute("PRAGMA cache_size=-64000");
    execute("PRAGMA synchronous=FULL");
    for (const char* table : {"POS", "USP", "SPSTUD", "UROKI", "SPNAGR"})
        copyTable(journal, table);
    for (const char* column : {"POS(ID)", "POS(DAT)", "SPSTUD(ID)", "SPSTUD(IDG)", "UROKI(IDG)",
                               "UROKI(DAT)", "UROKI(IDP)", "SPNAGR(IDP)", "SPNAGR(IDG)"})
        addIndex(column);
    execute("ANALYZE");
}

Peer::~Peer()
{
    sqlite3_close(m_handle);
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void Peer::copyTable(jet::Database& journal, const std::string& table)
{
    std::string columns;
    std::string marks;
    for (const jet::Field& field : journal.tableDef(table).fields) {
        const bool isText =
            field.type == jet::FieldType::Text || field.type == jet::FieldType::Memo;
        const bool isReal = field.type == jet::FieldType::Date;
        columns += (columns.empty() ? "\"" : ",\"") + field.name
                   + (isText   ? "\" TEXT"
                      : isReal ? "\" REAL"
                               : "\" INTEGER");
        marks += marks.empty() ? "?" : ",?";
    }
    execute("CREATE TABLE " + table + "(" + columns + ")");
    sqlite3_stmt* statement = nullptr;
    const std::string insert = "INSERT INTO " + table + " VALUES(" + marks + ")";
    if (sqlite3_prepare_v2(m_handle, insert.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        fail(m_handle);
    execute("BEGIN");
    auto rows = journal.query("SELECT * FROM " + table + ";");
    const int count = static_cast<int>(rows.columns().size());
    while (rows.next()) {
        for (int column = 0; column < count; ++column)
            bind(statement, column + 1, rows.value(column));
        sqlite3_step(statement);
        sqlite3_reset(statement);
    }
    sqlite3_finalize(statement);
    execute("COMMIT");
}

void Peer::addIndex(const std::string& column)
{
    execute("CREATE INDEX \"" + column + "\" ON " + column);
}

void Peer::execute(const std::string& sql)
{
    if (sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(m_handle);
}

std::int64_t Peer::query(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_handle, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        fail(m_handle);
    std::int64_t rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            sqlite3_column_value(statement, column);
        ++rows;
    }
    sqlite3_finalize(statement);
    return rows;
}

} // namespace bench
