#pragma once

#include "refbooks/catalogue.h"

#include "jet/value.h"

#include <QString>

#include <cstdint>
#include <map>
#include <vector>

namespace jet {
class Database;
}

namespace imports {

// What an import has changed, so that it can be taken back as one step as long as nobody else
// has changed or used those rows.
class ImportUndo
{
public:
    void added(refbooks::Book book, std::int64_t key);
    // To be called before the row is changed; of a row that this import added it says nothing.
    void changing(jet::Database& database, refbooks::Book book, std::int64_t key);
    // To be called when all is written. Throws jet::Error, as the others do.
    void finish(jet::Database& database);

    bool isEmpty() const { return m_changes.empty(); }
    // Deletes what was added and restores what was changed. Gives why it cannot be, and then
    // nothing is changed; "" when it was done. Throws jet::Error.
    QString undo(jet::Database& database);

private:
    using Row = std::vector<jet::Value>; // all fields of the table
    struct Change
    {
        refbooks::Book book{};
        std::int64_t key = 0;
        Row before; // empty for a row added
        Row after;
    };
    static std::map<std::int64_t, Row> rowsOf(jet::Database& database, refbooks::Book book);
    bool knows(refbooks::Book book, std::int64_t key) const;
    bool isAsLeft(jet::Database& database) const;

    std::vector<Change> m_changes;
    std::map<std::pair<refbooks::Book, std::int64_t>, std::size_t> m_positions;
};

} // namespace imports
