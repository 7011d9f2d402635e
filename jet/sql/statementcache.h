#pragma once

#include "jet/sql/translation.h"

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sqlite3.h>

namespace jet::sql {

struct StatementCloser
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementCloser>;

// A Jet SQL text, translated and, unless it changes definitions, prepared.
struct PreparedStatement
{
    Translation translation;
    bool listsRows = false; // SQLite is not needed for its rows, see RowList
    StatementHandle handle;
    StatementHandle counter;       // of a SELECT's rows, made when first asked for
    std::vector<double> rowCounts; // of translation.tables when the plan was made
};

// The statements used last, by their text. One that is being stepped is held by its user
// too and is not given out a second time.
class StatementCache
{
public:
    using Pointer = std::shared_ptr<PreparedStatement>;

    // Null when the text is not there or its statement is in use.
    Pointer find(std::string_view text);
    // Replaces a statement of the same text. The oldest ones make room.
    void add(std::string text, Pointer statement);
    void remove(std::string_view text);
    void clear();

private:
    struct Entry
    {
        std::string text;
        Pointer statement;
    };
    std::list<Entry> m_entries;                                                // used last in front
    std::unordered_map<std::string_view, std::list<Entry>::iterator> m_byText; // views into entries
};

} // namespace jet::sql
