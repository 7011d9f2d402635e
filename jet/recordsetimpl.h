#pragma once

#include "jet/recordset.h"
#include "jet/sql/engine.h"

#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace jet {

// Streams from a prepared statement, or past it off the pages, until somebody is about to change
// tables; then the rows still to come are taken into memory and handed out from there.
struct Recordset::Impl final : sql::Reader
{
    Impl(sql::Engine& engine, sql::StatementCache::Pointer statement);
    ~Impl() override;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    bool next();
    Value value(int column) const;
    // The statement that stands on the present row; null when the row does not come from it.
    sqlite3_stmt* statement() const
    {
        return m_statement && !m_list ? m_statement->handle.get() : nullptr;
    }
    void detach() noexcept override;

    std::vector<RecordsetColumn> columns;

private:
    bool isStreaming() const { return m_statement != nullptr; }
    bool step();
    std::vector<Value> presentRow() const;
    Value streamedValue(int column) const;
    void stop();

    sql::Engine& m_engine;
    sql::StatementCache::Pointer m_statement; // null when the rows are in memory or all read
    std::optional<sql::RowList> m_list;       // streams instead of the statement
    std::vector<std::vector<Value>> m_rows;   // of them m_rows[m_row] is the present one
    std::size_t m_row = 0;
    bool m_onRow = false;
    std::exception_ptr m_failure; // what ended the reading into memory, for next()
};

} // namespace jet
