#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/file.h"
#include "jet/storage/jet3/codepage.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet::jet3 {

inline constexpr std::size_t kPageSize = 2048;
using Page = std::array<std::uint8_t, kPageSize>;

// Page 0 of an Access 95/97 file (Jet 3).
//
//   offset  bytes  meaning
//      000     20  as in Jet 4, the version at 014 being 0
//      018    126  obfuscated by the same fixed RC4 key; offsets below are of the plain bytes
//      020    4x4  definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//      03C      2  code page of all names and texts
//      03E      4  database key, 0 = pages stand plain in the file
//      042     20  password in 8-bit characters, zeros if none
struct Header
{
    std::array<PageNumber, 4> systemTables{};
    std::uint16_t codePage = 0;
    std::uint32_t databaseKey = 0;
};

// Reads the pages of one file. All methods throw Error (Damaged) rather than follow a
// number that leads outside.
class Pages
{
public:
    // Throws Error: NotADatabase, PasswordProtected, Unsupported (code page), Limit, Damaged.
    explicit Pages(std::unique_ptr<File> file);

    const Header& header() const { return m_header; }
    const CodePage& codePage() const { return *m_codePage; }
    PageNumber count() const { return m_count; }
    std::uint64_t fileBytes() const { return std::uint64_t{m_count} * kPageSize; }

    Page read(PageNumber number) const; // decoded
    // The bytes of one row, wherever it stands: of a table, a long value or a map.
    Bytes row(RowPointer pointer) const;
    // Page numbers that a usage map names, ascending.
    std::vector<PageNumber> mapped(RowPointer map) const;

private:
    void addBits(std::vector<PageNumber>& pages, ByteView bitmap, std::uint64_t first) const;

    std::unique_ptr<File> m_file;
    Header m_header;
    std::unique_ptr<CodePage> m_codePage;
    PageNumber m_count = 0;
};

// The rows of one data page.
//
//   offset  bytes  meaning
//        0      2  01 01
//        4      4  definition page of the table; "LVAL" on pages of long values
//        8      2  number of rows
//        A    2*n  bits 0-12 offset of the row, bit 14 moved, bit 15 data of a moved row,
//                  both: deleted
class DataPage
{
public:
    // Throws Error (Damaged) unless every row lies inside the page.
    DataPage(const Page& page, PageNumber number);

    std::uint32_t owner() const { return get32(m_page, 4); }
    std::size_t rowCount() const { return m_count; }
    bool isLive(std::size_t row) const { return (slot(row) & kDataOfMoved) == 0; }
    bool isMoved(std::size_t row) const { return (slot(row) & kFlags) == kMoved; }
    bool isDeleted(std::size_t row) const { return (slot(row) & kFlags) == kFlags; }
    ByteView bytes(std::size_t row) const;

private:
    static constexpr unsigned kMoved = 0x4000;
    static constexpr unsigned kDataOfMoved = 0x8000;
    static constexpr unsigned kFlags = 0xC000;

    std::uint16_t slot(std::size_t row) const { return get16(m_page, 10 + 2 * row); }
    std::size_t offset(std::size_t row) const { return slot(row) & 0x1FFFu; }

    const Page& m_page;
    std::size_t m_count;
};

} // namespace jet::jet3
