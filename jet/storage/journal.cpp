#include "jet/storage/journal.h"

#include "jet/error.h"

#include <algorithm>
#include <cassert>

namespace jet {

namespace {

using namespace journal;

constexpr std::array<std::uint8_t, 8> kMagic = {'J', 'E', 'T', 'R', 'O', 'L', 'L', '2'};
constexpr std::size_t kTrailerSize = 8;
constexpr std::size_t kBufferSize = std::size_t{1} << 20;
constexpr std::size_t kSumsSize = 8 * kSectors;

// Sums at the beginning of the bytes.
SectorSums sumsIn(ByteView bytes)
{
    SectorSums sums;
    for (std::size_t i = 0; i < kSectors; ++i)
        sums[i] = get64(bytes, 8 * i);
    return sums;
}

void putSums(ByteSpan bytes, ByteView page)
{
    for (std::size_t i = 0; i < kSectors; ++i)
        put64(bytes, 8 * i, sum(page.subspan(i * kSector, kSector)));
}

Bytes readPadded(const File& file, std::uint64_t at, std::size_t length)
{
    Bytes bytes(length, 0);
    const std::uint64_t size = file.size();
    if (at < size)
        file.read(at, ByteSpan(bytes).first(std::min<std::uint64_t>(length, size - at)));
    return bytes;
}

std::unique_ptr<File> createJournal(FileSystem& files, const std::filesystem::path& path)
{
    try {
        return files.open(path, FileMode::Create);
    } catch (const Error& error) {
        throw Error(
            error.fault(),
            "изменения не записаны, файл прежний: рядом с ним нельзя создать журнал отката, "
            "без которого запись небезопасна: "
                + std::string(error.what()));
    }
}

} // namespace

std::filesystem::path journalPath(const std::filesystem::path& database)
{
    std::filesystem::path path = database;
    path += "-journal";
    return path;
}

std::uint64_t journal::entryAt(std::uint64_t index)
{
    return kHeaderSize + kEntrySize * index;
}

std::uint64_t journal::sum(ByteView bytes, std::uint64_t start)
{
    for (const std::uint8_t byte : bytes)
        start = (start ^ byte) * 0x100000001B3;
    return start;
}

std::uint64_t journal::journalSize(const Header& header)
{
    return entryAt(header.changed) + kSumsSize * header.added() + kTrailerSize;
}

Mark journal::readMark(const File& file)
{
    const Bytes mark = readPadded(file, 0, kMagic.size());
    if (std::equal(mark.begin(), mark.end(), kMagic.begin()))
        return Mark::Ours;
    return get64(mark, 0) == 0 ? Mark::Blank : Mark::Other;
}

Header journal::readHeader(const File& file)
{
    const Bytes buffer = readPadded(file, 0, kHeaderSize);
    return {get64(buffer, 8), get64(buffer, 16), get32(buffer, 24)};
}

bool journal::readComplete(const File& file, Header& header)
{
    const std::uint64_t size = file.size();
    if (size < kHeaderSize + kTrailerSize || readMark(file) != Mark::Ours)
        return false;
    header = readHeader(file);
    if (header.lengthAfter < header.lengthBefore || size != journalSize(header))
        return false;
    Bytes buffer;
    std::uint64_t checksum = kSumStart;
    for (std::uint64_t at = 0; at < size - kTrailerSize; at += buffer.size()) {
        buffer.resize(std::min<std::uint64_t>(kBufferSize, size - kTrailerSize - at));
        file.read(at, buffer);
        checksum = sum(buffer, checksum);
    }
    buffer.resize(kTrailerSize);
    file.read(size - kTrailerSize, buffer);
    return get64(buffer, 0) == checksum;
}

Entry journal::readEntry(const File& file, std::uint64_t index)
{
    const Bytes buffer = readPadded(file, entryAt(index), kEntrySize);
    Entry entry;
    entry.number = get32(buffer, 0);
    entry.numbered = get32(buffer, 4) == ~entry.number;
    entry.blank = get64(buffer, 0) == 0;
    entry.after = sumsIn(ByteView(buffer).subspan(8));
    std::copy_n(buffer.begin() + kImageOffset, kPageSize, entry.before.begin());
    return entry;
}

SectorSums journal::readAdded(const File& file, const Header& header, std::uint64_t index)
{
    std::array<std::uint8_t, kSumsSize> buffer;
    file.read(entryAt(header.changed) + kSumsSize * index, buffer);
    return sumsIn(buffer);
}

JournalWriter::JournalWriter(FileSystem& files, const std::filesystem::path& database,
                             std::uint64_t lengthBefore, std::uint64_t lengthAfter,
                             std::uint32_t changed)
    : m_files(files)
    , m_path(journalPath(database))
    , m_file(createJournal(files, m_path))
    , m_checksum(kSumStart)
{
    m_buffer.reserve(std::min<std::size_t>(entryAt(changed) + kTrailerSize, kBufferSize));
    Bytes header(kHeaderSize, 0);
    std::copy(kMagic.begin(), kMagic.end(), header.begin());
    put64(header, 8, lengthBefore);
    put64(header, 16, lengthAfter);
    put32(header, 24, changed);
    put(header);
}

void JournalWriter::addChanged(PageNumber number, ByteView before, ByteView after)
{
    assert(before.size() == kPageSize && after.size() == kPageSize);
    std::array<std::uint8_t, kImageOffset> head{};
    put32(head, 0, number);
    put32(head, 4, ~number);
    putSums(ByteSpan(head).subspan(8), after);
    put(head);
    put(before);
}

void JournalWriter::addNew(ByteView after)
{
    assert(after.size() == kPageSize);
    std::array<std::uint8_t, kSumsSize> sums{};
    putSums(sums, after);
    put(sums);
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

} // namespace jet
