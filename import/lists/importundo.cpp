#include "import/lists/importundo.h"

#include "import/rowsink.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/deletionrules.h"

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace imports {
namespace {

using refbooks::Book;

const QString kChangedSince =
    u"Импорт отменить нельзя: строки, которые он добавил или изменил, с тех пор изменены."_s;
const QString kUsedSince =
    u"Импорт отменить нельзя: строки, которые он добавил, уже используются в журнале."_s;

// Where rows are named beside what their own books say about it.
struct FurtherUse
{
    Book book;
    std::string_view table;
    std::string_view field;
};
constexpr FurtherUse kFurtherUses[] = {
    {Book::Students, "POS", "ID"},     {Book::Students, "USP", "ID"},
    {Book::Groups, "SPSTUD", "IDG"},   {Book::Disciplines, "POS", "IDD"},
    {Book::Disciplines, "USP", "IDD"},
};

std::string whereKey(Book book, std::int64_t key)
{
    const refbooks::BookInfo& info = refbooks::bookInfo(book);
    return " WHERE " + sql::name(info.key) + " = " + sql::number(key) + ';';
}

std::vector<jet::Value> presentRow(const jet::Recordset& rows)
{
    std::vector<jet::Value> row;
    row.reserve(rows.columns().size());
    for (int column = 0; column < static_cast<int>(rows.columns().size()); ++column)
        row.push_back(rows.value(column));
    return row;
}

bool isUsed(jet::Database& database, Book book, std::int64_t key)
{
    const auto names = [&](std::string_view table, std::string_view field) {
        return database.count("SELECT * FROM " + sql::name(table) + " WHERE " + sql::name(field)
                              + " = " + sql::number(key) + ';')
               > 0;
    };
    for (const FurtherUse& use : kFurtherUses)
        if (use.book == book && names(use.table, use.field))
            return true;
    if (const refbooks::DeletionRule* rule = refbooks::deletionRule(book))
        for (const refbooks::UseCheck& use : rule->uses)
            if (names(use.table, use.field))
                return true;
    return false;
}

void restore(jet::Database& database, Book book, std::int64_t key,
             const std::vector<jet::Value>& row)
{
    const refbooks::BookInfo& info = refbooks::bookInfo(book);
    const jet::TableDef table = database.tableDef(info.table);
    std::vector<FieldValue> values;
    for (std::size_t i = 0; i < row.size(); ++i)
        if (table.fields[i].name != info.key)
            values.emplace_back(table.fields[i].name, row[i]);
    JournalSink(database).update(info.table, info.key, key, values);
}

} // namespace

bool ImportUndo::knows(Book book, std::int64_t key) const
{
    return m_positions.contains({book, key});
}

void ImportUndo::added(Book book, std::int64_t key)
{
    m_positions.emplace(std::pair(book, key), m_changes.size());
    m_changes.push_back({book, key, {}, {}});
}

void ImportUndo::changing(jet::Database& database, Book book, std::int64_t key)
{
    if (knows(book, key))
        return;
    const refbooks::BookInfo& info = refbooks::bookInfo(book);
    auto rows = database.query("SELECT * FROM " + sql::name(info.table) + whereKey(book, key));
    if (!rows.next())
        return;
    m_positions.emplace(std::pair(book, key), m_changes.size());
    m_changes.push_back({book, key, presentRow(rows), {}});
}

std::map<std::int64_t, ImportUndo::Row> ImportUndo::rowsOf(jet::Database& database, Book book)
{
    const refbooks::BookInfo& info = refbooks::bookInfo(book);
    auto rows = database.query("SELECT * FROM " + sql::name(info.table) + ';');
    const int key = rows.column(info.key);
    std::map<std::int64_t, Row> all;
    while (rows.next())
        all.emplace(rows.integer(key), presentRow(rows));
    return all;
}

void ImportUndo::finish(jet::Database& database)
{
    std::map<Book, std::map<std::int64_t, Row>> tables;
    for (Change& change : m_changes) {
        auto table = tables.find(change.book);
        if (table == tables.end())
            table = tables.emplace(change.book, rowsOf(database, change.book)).first;
        change.after = table->second[change.key];
    }
}

bool ImportUndo::isAsLeft(jet::Database& database) const
{
    std::map<Book, std::map<std::int64_t, Row>> tables;
    for (const Change& change : m_changes) {
        auto table = tables.find(change.book);
        if (table == tables.end())
            table = tables.emplace(change.book, rowsOf(database, change.book)).first;
        const auto row = table->second.find(change.key);
        if (row == table->second.end() || row->second != change.after)
            return false;
    }
    return true;
}

QString ImportUndo::undo(jet::Database& database)
{
    if (!isAsLeft(database))
        return kChangedSince;
    jet::Transaction transaction(database);
    // Backwards: what was created for a row goes after the row.
    for (std::size_t left = m_changes.size(); left > 0; --left) {
        const Change& change = m_changes[left - 1];
        if (!change.before.empty()) {
            restore(database, change.book, change.key, change.before);
            continue;
        }
        if (isUsed(database, change.book, change.key))
            return kUsedSince;
        database.execute("DELETE FROM " + sql::name(refbooks::bookInfo(change.book).table)
                         + whereKey(change.book, change.key));
    }
    transaction.commit();
    m_changes.clear();
    m_positions.clear();
    return {};
}

} // namespace imports
