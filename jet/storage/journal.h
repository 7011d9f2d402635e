#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/file.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace jet {

// The rollback journal beside a database file while a transaction is being written into it.
//
//   offset  bytes  meaning (little-endian)
//        0      8  "JETROLL2"
//        8      8  length of the database file before the transaction
//       16      8  length after it
//       24      4  n, number of changed pages
//       28      4  zero
//       32  n * 4168  changed pages: page number (4), its complement (4), checksums of the
//                     eight 512-byte sectors of the new page (64), the old page (4096)
//        .  m * 64    pages added at the end: checksums of their sectors
//      end      8  checksum of all bytes before
//
// Pages stand as in the file, encoded ones encoded. The complement tells an entry whose
// first sector never reached the medium, and so reads as zeros, from one of page 0.
//
// A journal is complete before the database file is touched, and gone when the transaction
// is done. What one that is found means is decided in journalstate.h.
std::filesystem::path journalPath(const std::filesystem::path& database);

namespace journal {

constexpr std::size_t kSector = 512;
constexpr std::size_t kSectors = kPageSize / kSector;
using SectorSums = std::array<std::uint64_t, kSectors>;

struct Header
{
    std::uint64_t lengthBefore = 0;
    std::uint64_t lengthAfter = 0;
    std::uint32_t changed = 0;
    std::uint64_t added() const { return (lengthAfter - lengthBefore) / kPageSize; }
};

struct Entry
{
    PageNumber number = 0;
    bool numbered = false; // the number can be trusted
    bool blank = false;    // the number and its complement are zeros
    SectorSums after{};
    std::array<std::uint8_t, kPageSize> before{};
};

constexpr std::size_t kHeaderSize = 32;
constexpr std::size_t kImageOffset = 8 + 8 * kSectors;
constexpr std::size_t kEntrySize = kImageOffset + kPageSize;

std::uint64_t entryAt(std::uint64_t index);
// Requires lengthAfter >= lengthBefore.
std::uint64_t journalSize(const Header& header);
// FNV-1a with 64 bits.
constexpr std::uint64_t kSumStart = 0xCBF29CE484222325;
std::uint64_t sum(ByteView bytes, std::uint64_t start = kSumStart);

enum class Mark {
    Ours,
    Blank, // none or zeros: never reached the medium
    Other,
};
Mark readMark(const File& file);
// Bytes beyond the end of the file read as zeros, here and in readEntry().
Header readHeader(const File& file);
// False when the journal is cut short, longer than it says or its checksum is wrong.
bool readComplete(const File& file, Header& header);
Entry readEntry(const File& file, std::uint64_t index);
// Requires a complete journal and index < header.added().
SectorSums readAdded(const File& file, const Header& header, std::uint64_t index);

} // namespace journal

// Writes a journal; it counts only after finish().
class JournalWriter
{
public:
    // Throws Error (Exists) when there is a journal already.
    JournalWriter(FileSystem& files, const std::filesystem::path& database,
                  std::uint64_t lengthBefore, std::uint64_t lengthAfter, std::uint32_t changed);
    // All changed pages, then all added ones in their order, as they stand, and will stand,
    // in the file.
    void addChanged(PageNumber number, ByteView before, ByteView after);
    void addNew(ByteView after);
    // Returns when the journal and its name are on the medium.
    void finish();

private:
    void put(ByteView bytes);
    void flush();

    FileSystem& m_files;
    std::filesystem::path m_path;
    std::unique_ptr<File> m_file;
    Bytes m_buffer;
    std::uint64_t m_written = 0;
    std::uint64_t m_checksum;
};

} // namespace jet
