#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/file.h"
#include "jet/storage/header.h"
#include "jet/storage/types.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

namespace jet {

// A decoded page held in the cache. Dirty frames stay in memory until the transaction ends.
struct Frame
{
    PageNumber number = 0;
    int pins = 0;
    bool dirty = false;
    std::uint64_t lastUse = 0;  // a running number; the smallest goes first
    std::uint64_t savedFor = 0; // statement whose undo holds the page already
    std::array<std::uint8_t, kPageSize> bytes{};
};

// A pinned page for reading; cheap to copy and move. The bytes show later writes to the
// same page. Must not outlive the Pager.
class PageRef
{
public:
    PageRef() = default;
    explicit PageRef(Frame* frame)
        : m_frame(frame)
    {
        ++m_frame->pins;
    }
    PageRef(const PageRef& other)
        : m_frame(other.m_frame)
    {
        if (m_frame)
            ++m_frame->pins;
    }
    PageRef(PageRef&& other) noexcept
        : m_frame(std::exchange(other.m_frame, nullptr))
    {}
    PageRef& operator=(PageRef other) noexcept
    {
        std::swap(m_frame, other.m_frame);
        return *this;
    }
    ~PageRef()
    {
        if (m_frame)
            --m_frame->pins;
    }

    explicit operator bool() const { return m_frame != nullptr; }
    PageNumber number() const { return m_frame->number; }
    ByteView bytes() const { return m_frame->bytes; }
    PageType type() const { return static_cast<PageType>(m_frame->bytes[0]); }

private:
    Frame* m_frame = nullptr;
};

// Pages of one database file through a cache, decoded on the way in and encoded on the way
// out, with atomic durable transactions by a rollback journal.
//
// State: idle -> beginTransaction() -> statements -> commit() or rollback() -> idle.
// Pages may be modified only inside a transaction. Within it, a statement mark allows
// undoing just the changes since the mark.
class Pager
{
public:
    // Opens an existing file; rolls a hot journal back first (unless it is not this file's).
    // Checks signature, version, password and size. Refuses (Locked) also when another
    // program holds the `.ldb` beside the file.
    static std::unique_ptr<Pager> open(FileSystem& files, const std::filesystem::path& path,
                                       bool readOnly);
    // Makes a new file of the given pages: page 0 as encodeHeader() gives it, the others
    // plain. Refuses an existing path; on failure no file is left.
    static std::unique_ptr<Pager> create(FileSystem& files, const std::filesystem::path& path,
                                         ByteView plainImage);
    ~Pager();

    bool readOnly() const;
    const std::filesystem::path& path() const;
    const DatabaseHeader& header() const;
    PageNumber pageCount() const; // pages appended in the open transaction included

    // Throws Error (Damaged) for a number at or beyond pageCount().
    PageRef read(PageNumber number);
    // The page's bytes for writing, valid until the transaction ends. Error (ReadOnly) on a
    // read-only database.
    ByteSpan modify(PageNumber number);
    // Adds a zeroed page at the end of the file and gives its number. Error (Limit) at 2 GiB.
    PageNumber append();

    // Transactions do not nest here; Store counts the nesting.
    void beginTransaction();
    bool inTransaction() const;
    // Journal, sync, pages, sync, journal removed. On failure everything is rolled back and
    // the Error is passed on. Where the disk fails rolling back, too, the pager refuses all
    // further work and the next opening finds all of the transaction or nothing.
    void commit();
    void rollback();

    // Statement marks within a transaction; they do not nest.
    void markStatement();
    void releaseStatement();
    void rollbackStatement();

    // Grows by one with every rollback (of a transaction or a statement). Whoever caches
    // something decoded from pages compares it and starts afresh when it has changed.
    std::uint64_t rollbackCount() const;

private:
    struct Impl;
    explicit Pager(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

} // namespace jet
