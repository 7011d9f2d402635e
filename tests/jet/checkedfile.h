#pragma once

#include "jet/storage/checker.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace jet::test {

// A closed database in memory with everything that a check looks at, and where in it what
// lies. Tables:
//
//   SPSTUD  `rows` rows: counter, text, date, Boolean, memos inline, in one row and in chains,
//           a binary field, a dropped one; a unique index, one of two fields and two levels,
//           the referencing side of a relationship; some rows moved, some deleted
//   SPGRUP  the referenced side, with properties
//   WIDE    its definition takes two pages
class CheckedFile
{
public:
    explicit CheckedFile(bool encoded, int rows = 500);

    std::vector<Finding> check(CheckTotals* totals = nullptr);
    // Undoes earlier damage first.
    void damage(const std::function<void(Pager&)>& change);
    const std::vector<std::uint8_t>& sound() const { return m_sound; }
    void setContent(std::vector<std::uint8_t> bytes);
    void saveAs(const std::filesystem::path& path) const;

    const Definition& definition(const std::string& table) const { return m_definitions.at(table); }
    const Definition& students() const { return definition("SPSTUD"); }
    const std::vector<RowPointer>& rows(const std::string& table) const { return m_rows.at(table); }
    // Rows of SPSTUD whose data stand elsewhere.
    const std::vector<RowPointer>& movedRows() const { return m_moved; }
    // The n-th row of SPSTUD that has a memo of so many bytes.
    RowPointer student(std::size_t memoBytes, std::size_t n = 0) const
    {
        return m_byMemo.at(memoBytes).at(n);
    }
    RowPointer object(const std::string& name) const { return m_objects.at(name); }
    // Rows of MSysACEs.
    const std::vector<RowPointer>& permissions(PageNumber object) const
    {
        return m_permissions.at(object);
    }

private:
    void fill(Store& store, int rows);
    void relate(Store& store);
    void survey();
    void surveyRows(Store& store, const std::string& table);

    MemoryFiles m_files;
    std::vector<std::uint8_t> m_sound;
    std::map<std::string, Definition> m_definitions;
    std::map<std::string, std::vector<RowPointer>> m_rows;
    std::vector<RowPointer> m_moved;
    std::map<std::size_t, std::vector<RowPointer>> m_byMemo;
    std::map<std::string, RowPointer> m_objects;
    std::map<PageNumber, std::vector<RowPointer>> m_permissions;
};

// Where a row lies in its page.
struct RowSpan
{
    std::size_t begin = 0, end = 0;
};
RowSpan spanOf(ByteView page, RowPointer row);
// The slot of a row in its page.
std::size_t slotOf(RowPointer row);
// Of a row of the table: offset in its page of a fixed field, of the mask byte of a field,
// and of the trailer's word that says where a variable field begins.
std::size_t fixedAt(ByteView page, RowPointer row, const Definition& table, const char* field);
std::size_t maskAt(ByteView page, RowPointer row, const Definition& table, const char* field);
std::size_t offsetWordAt(ByteView page, RowPointer row, const Definition& table, const char* field);
// The bytes of a variable field in its page.
std::size_t itemAt(ByteView page, RowPointer row, const Definition& table, const char* field);
const ColumnDefinition& column(const Definition& table, const char* field);
// Offset of the 25 bytes of a field in the definition's first page.
std::size_t columnEntryAt(const Definition& table, const char* field);
// Offset of the blocks of real and logical indexes there.
std::size_t realIndexAt(const Definition& table, std::size_t index);
std::size_t logicalIndexAt(const Definition& table, std::size_t index);
std::vector<PageNumber> pagesOf(Pager& pager, RowPointer map);
// Sets a page's bit in an inline map.
void setInMap(Pager& pager, RowPointer map, PageNumber page, bool value);

// Where a finding must be.
struct Place
{
    PageNumber page = 0;
    int row = -1;
};

enum class Outside { Error, Warning, Nothing };

// One way to damage a file, and what must be found then.
struct Damage
{
    const char* what;
    Severity severity;
    std::string table;
    const char* text;                    // part of the finding's
    std::function<Place(Pager&)> change; // gives where it must be found
    Outside outside = Outside::Error;    // what the independent checker says at least
};

// Does each damage in turn to plain and to encoded files and expects its finding; none at
// all before. Compares with the independent checker where there is one.
void expectFound(const std::function<std::vector<Damage>(const CheckedFile&)>& damages);

std::string describe(const std::vector<Finding>& findings);

} // namespace jet::test
