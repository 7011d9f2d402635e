#include "jet/storage/journal.h"

#include "jet/error.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace jet {

namespace {

constexpr std::array<std::uint8_t, 8> kMagic = {'J', 'E', 'T', 'R', 'O', 'L', 'L', '1'};
constexpr std::size_t kHeaderSize = 32;
constexpr std::size_t kSector = 512;
constexpr std::size_t kSums = kPageSize / kSector;
constexpr std::size_t kSumsOffset = 8;
constexpr std::size_t kImageOffset = kSumsOffset + 8 * kSums;
constexpr std::size_t kEntrySize = kImageOffset + kPageSize;
constexpr std::size_t kTrailerSize = 8;
constexpr std::size_t kBufferSize = std::size_t{1} << 20;

// FNV-1a with 64 bits.
constexpr std::uint64_t kSumStart = 0xCBF29CE484222325;
std::uint64_t sum(ByteView bytes, std::uint64_t start = kSumStart)
{
    for (const std::uint8_t byte : bytes)
        start = (start ^ byte) * 0x100000001B3;
    return start;
}

struct JournalHeader
{
    std::uint64_t lengthBefore = 0;
    std::uint64_t lengthAfter = 0;
    std::uint32_t pages = 0;
};

std::uint64_t entryAt(std::uint32_t index)
{
    return kHeaderSize + std::uint64_t{kEntrySize} * index;
}

// The header of a complete journal; false when it is cut short or its checksum is wrong.
bool readComplete(const File& journal, JournalHeader& header)
{
    const std::uint64_t size = journal.size();
    if (size < kHeaderSize + kTrailerSize)
        return false;
    Bytes buffer(kHeaderSize);
    journal.read(0, buffer);
    if (!std::equal(kMagic.begin(), kMagic.end(), buffer.begin()))
        return false;
    header = {get64(buffer, 8), get64(buffer, 16), get32(buffer, 24)};
    if (size != entryAt(header.pages) + kTrailerSize)
        return false;
    std::uint64_t checksum = sum(buffer);
    buffer.resize(kEntrySize);
    for (std::uint32_t i = 0; i < header.pages; ++i) {
        journal.read(entryAt(i), buffer);
        checksum = sum(buffer, checksum);
    }
    buffer.resize(kTrailerSize);
    journal.read(entryAt(header.pages), buffer);
    return get64(buffer, 0) == checksum;
}

// Every sector of the page in the file is the old or the new one.
bool fits(ByteView entry, ByteView page)
{
    const ByteView old = entry.subspan(kImageOffset);
    for (std::size_t i = 0; i < kSums; ++i) {
        const ByteView sector = page.subspan(i * kSector, kSector);
        const ByteView oldSector = old.subspan(i * kSector, kSector);
        if (!std::equal(sector.begin(), sector.end(), oldSector.begin())
            && sum(sector) != get64(entry, kSumsOffset + 8 * i))
            return false;
    }
    return true;
}

bool isOf(const File& journal, const JournalHeader& header, const File& file)
{
    const std::uint64_t length = file.size();
    if (length < header.lengthBefore || length > header.lengthAfter)
        return false;
    Bytes entry(kEntrySize);
    Bytes page(kPageSize);
    for (std::uint32_t i = 0; i < header.pages; ++i) {
        journal.read(entryAt(i), entry);
        const std::uint64_t at = std::uint64_t{get32(entry, 0)} * kPageSize;
        if (at + kPageSize > header.lengthBefore)
            return false;
        file.read(at, page);
        if (!fits(entry, page))
            return false;
    }
    return true;
}

} // namespace

std::filesystem::path journalPath(const std::filesystem::path& database)
{
    std::filesystem::path path = database;
    path += "-journal";
    return path;
}

JournalWriter::JournalWriter(FileSystem& files, const std::filesystem::path& database,
                             std::uint64_t lengthBefore, std::uint64_t lengthAfter,
                             std::uint32_t pages)
    : m_files(files)
    , m_path(journalPath(database))
    , m_file(files.open(m_path, FileMode::Create))
    , m_checksum(kSumStart)
{
    m_buffer.reserve(std::min<std::size_t>(entryAt(pages) + kTrailerSize, kBufferSize));
    Bytes header(kHeaderSize, 0);
    std::copy(kMagic.begin(), kMagic.end(), header.begin());
    put64(header, 8, lengthBefore);
    put64(header, 16, lengthAfter);
    put32(header, 24, pages);
    put(header);
}

void JournalWriter::add(PageNumber number, ByteView before, ByteView after)
{
    assert(before.size() == kPageSize && after.size() == kPageSize);
    std::array<std::uint8_t, kImageOffset> head{};
    put32(head, 0, number);
    for (std::size_t i = 0; i < kSums; ++i)
        put64(head, kSumsOffset + 8 * i, sum(after.subspan(i * kSector, kSector)));
    put(head);
    put(before);
}

void JournalWriter::finish()
{
    std::array<std::uint8_t, kTrailerSize> trailer{};
    put64(trailer, 0, m_checksum);
    put(trailer);
    flush();
    m_file->sync();
    m_files.syncDirectory(m_path.parent_path());
}

void JournalWriter::put(ByteView bytes)
{
    if (m_buffer.size() + bytes.size() > kBufferSize)
        flush();
    m_checksum = sum(bytes, m_checksum);
    m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
}

void JournalWriter::flush()
{
    m_file->write(m_written, m_buffer);
    m_written += m_buffer.size();
    m_buffer.clear();
}

JournalState inspectJournal(FileSystem& files, const std::filesystem::path& database,
                            const File& file)
{
    const std::filesystem::path path = journalPath(database);
    if (!files.exists(path))
        return JournalState::None;
    const std::unique_ptr<File> journal = files.open(path, FileMode::ReadOnly);
    JournalHeader header;
    if (!readComplete(*journal, header))
        return JournalState::Incomplete;
    return isOf(*journal, header, file) ? JournalState::Hot : JournalState::Foreign;
}

void rollBackJournal(FileSystem& files, const std::filesystem::path& database, File& file)
{
    const std::filesystem::path path = journalPath(database);
    {
        const std::unique_ptr<File> journal = files.open(path, FileMode::ReadOnly);
        JournalHeader header;
        if (!readComplete(*journal, header))
            throw Error(Fault::Damaged, "журнал отката повреждён");
        Bytes entry(kEntrySize);
        for (std::uint32_t i = 0; i < header.pages; ++i) {
            journal->read(entryAt(i), entry);
            file.write(std::uint64_t{get32(entry, 0)} * kPageSize,
                       ByteView(entry).subspan(kImageOffset));
        }
        file.truncate(header.lengthBefore);
        file.sync();
    }
    files.remove(path);
}

} // namespace jet
