#include "jet/storage/journalstate.h"

#include "jet/storage/journal.h"

#include <algorithm>

namespace jet {

namespace {

using namespace journal;

// Which kinds of sectors the file has, those left out that the transaction did not change.
struct Sectors
{
    bool old = false;
    bool fresh = false;
    bool other = false;
};

bool isZero(ByteView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

// False when the page is not wholly in the file.
bool readPage(const File& file, PageNumber number, Bytes& page)
{
    const std::uint64_t at = std::uint64_t{number} * kPageSize;
    if (at + kPageSize > file.size())
        return false;
    file.read(at, page);
    return true;
}

void compare(const Entry& entry, ByteView page, Sectors& found)
{
    for (std::size_t i = 0; i < kSectors; ++i) {
        const ByteView sector = page.subspan(i * kSector, kSector);
        const ByteView before = ByteView(entry.before).subspan(i * kSector, kSector);
        const bool isOld = std::equal(sector.begin(), sector.end(), before.begin());
        const bool isNew = sum(sector) == entry.after[i];
        found.old = found.old || (isOld && !isNew);
        found.fresh = found.fresh || (isNew && !isOld);
        found.other = found.other || (!isNew && !isOld);
    }
}

Sectors changedPages(const File& journal, const Header& header, const File& file)
{
    Sectors found;
    Bytes page(kPageSize);
    for (std::uint32_t i = 0; i < header.changed; ++i) {
        const Entry entry = readEntry(journal, i);
        const std::uint64_t end = (std::uint64_t{entry.number} + 1) * kPageSize;
        if (!entry.numbered || end > header.lengthBefore || !readPage(file, entry.number, page))
            found.other = true;
        else
            compare(entry, page, found);
    }
    return found;
}

// Sectors of added pages that were not written yet read as zeros; they count as old.
Sectors addedPages(const File& journal, const Header& header, const File& file)
{
    Sectors found;
    Bytes page(kPageSize);
    const auto first = static_cast<PageNumber>(header.lengthBefore / kPageSize);
    for (std::uint64_t i = 0; i < header.added(); ++i) {
        Entry blank;
        blank.after = readAdded(journal, header, i);
        file.read((first + i) * kPageSize, page);
        compare(blank, page, found);
    }
    return found;
}

// The file has all changed pages of the transaction.
JournalState stateOfWritten(const File& journal, const Header& header, const File& file)
{
    const std::uint64_t length = file.size();
    if (length > header.lengthAfter)
        return JournalState::Foreign; // it was complete and has grown since
    if (length < header.lengthBefore)
        return JournalState::Unusable;
    if (length < header.lengthAfter)
        return JournalState::Hot;
    const Sectors added = addedPages(journal, header, file);
    if (added.other)
        return JournalState::Unusable; // changed since, or never written
    return added.old ? JournalState::Hot : JournalState::Settled;
}

JournalState stateOfComplete(const File& journal, const Header& header, const File& file)
{
    const std::uint64_t length = file.size();
    const bool fits = length >= header.lengthBefore && length <= header.lengthAfter;
    const Sectors changed = changedPages(journal, header, file);
    if (changed.old && changed.fresh)
        return fits && !changed.other ? JournalState::Hot : JournalState::Unusable;
    if (changed.other || (!changed.fresh && !fits))
        return JournalState::Foreign;
    if (changed.fresh)
        return stateOfWritten(journal, header, file);
    return length == header.lengthBefore ? JournalState::Settled : JournalState::Hot;
}

// Whether the copy is the file's page but for sectors of the journal, or the end of the last
// one written, that never reached the medium and so are zeros.
bool isPlainCopy(const Entry& entry, std::uint64_t entryStart, ByteView page)
{
    const std::uint64_t start = entryStart + kImageOffset;
    for (std::size_t at = 0; at < kPageSize;) {
        const std::size_t length =
            std::min<std::size_t>(kSector - (start + at) % kSector, kPageSize - at);
        const ByteView copy = ByteView(entry.before).subspan(at, length);
        const ByteView there = page.subspan(at, length);
        const auto differs = std::mismatch(copy.begin(), copy.end(), there.begin()).first;
        if (!isZero(ByteView(differs, copy.end())))
            return false;
        at += length;
    }
    return true;
}

// A crash while the journal was being written leaves a part of it and a file that still is
// as the journal says. Anything else was complete once and has been damaged since.
JournalState stateOfIncomplete(const File& journal, const File& file)
{
    const Mark mark = readMark(journal);
    std::uint64_t entries = (journal.size() + kEntrySize - 1) / kEntrySize;
    if (mark == Mark::Ours) {
        const Header header = readHeader(journal);
        if (header.lengthAfter < header.lengthBefore || journal.size() > journalSize(header))
            return JournalState::Unusable;
        entries = std::min<std::uint64_t>(entries, header.changed);
    }
    Bytes page(kPageSize);
    for (std::uint64_t i = 0; i < entries; ++i) {
        const Entry entry = readEntry(journal, i);
        if (!entry.numbered && (entry.blank || mark != Mark::Ours))
            continue;
        if (!entry.numbered || !readPage(file, entry.number, page)
            || !isPlainCopy(entry, entryAt(i), page))
            return JournalState::Unusable;
    }
    return mark == Mark::Other ? JournalState::Foreign : JournalState::Unfinished;
}

} // namespace

JournalState inspectJournal(FileSystem& files, const std::filesystem::path& database,
                            const File& file)
{
    const std::filesystem::path path = journalPath(database);
    if (!files.exists(path))
        return JournalState::None;
    const std::unique_ptr<File> found = files.open(path, FileMode::ReadOnly);
    Header header;
    if (!readComplete(*found, header))
        return stateOfIncomplete(*found, file);
    return stateOfComplete(*found, header, file);
}

} // namespace jet
