#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/file.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace jet {

// The rollback journal beside a database file while a transaction is being written into it.
//
//   offset  bytes  meaning (little-endian)
//        0      8  "JETROLL1"
//        8      8  length of the database file before the transaction
//       16      8  length after it
//       24      4  n, number of changed pages
//       28      4  zero
//       32  n * 4168  changed pages: page number (4), zero (4), checksums of the eight
//                     512-byte sectors of the new page (64), the old page (4096)
//      end      8  checksum of all bytes before
//
// Pages stand as in the file, encoded ones encoded. Pages added at the end are not listed:
// they go when the file is cut to its old length.
//
// A journal is complete before the database file is touched, and gone when the transaction
// is done. So one that is cut short is of no use, and a complete one is rolled back, but only
// into the file it was made for: each sector of each listed page must be the old or the new
// one. A journal that fails this lies beside another or a later file and is never applied.
std::filesystem::path journalPath(const std::filesystem::path& database);

// Writes a journal; it counts only after finish().
class JournalWriter
{
public:
    // Throws Error (Exists) when there is a journal already.
    JournalWriter(FileSystem& files, const std::filesystem::path& database,
                  std::uint64_t lengthBefore, std::uint64_t lengthAfter, std::uint32_t pages);
    // Requires two whole pages as they stand, and will stand, in the file.
    void add(PageNumber number, ByteView before, ByteView after);
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

enum class JournalState {
    None,
    Incomplete, // the database file was not touched yet
    Foreign,    // complete, but not of this file in this state
    Hot,        // must be rolled back before the file is read
};

// Only reads. Throws Error when the journal cannot be opened.
JournalState inspectJournal(FileSystem& files, const std::filesystem::path& database,
                            const File& file);
// Puts the old pages and length back, syncs, removes the journal. Requires a Hot one. May be
// cut off at any point and repeated.
void rollBackJournal(FileSystem& files, const std::filesystem::path& database, File& file);

} // namespace jet
