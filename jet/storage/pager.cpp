#include "jet/storage/pager.h"

#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pagecache.h"
#include "jet/storage/rc4.h"
#include "jet/storage/recovery.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <vector>

namespace jet {

namespace {

constexpr std::size_t kCacheFrames = (std::size_t{64} << 20) / kPageSize;
constexpr PageNumber kMaxPages = 524288; // 2 GiB

using Image = std::array<std::uint8_t, kPageSize>;

// A page as it was before a transaction or a statement.
struct SavedPage
{
    PageNumber number;
    Image bytes;
};

std::uint64_t offsetOf(PageNumber page)
{
    return std::uint64_t{page} * kPageSize;
}

Image combined(const Image& bytes, const Image& key)
{
    Image result;
    for (std::size_t i = 0; i < kPageSize; ++i)
        result[i] = static_cast<std::uint8_t>(bytes[i] ^ key[i]);
    return result;
}

} // namespace

// Invariants:
//  1. The file changes only inside commit(), and only after its journal is complete.
//  2. Between transactions no frame is dirty.
//  3. m_originals holds the bytes before the transaction of every dirty page below
//     m_countBefore; pages from there on were appended and are all dirty.
//  4. With a mark set, m_undo holds the bytes at the mark of every page below m_countAtMark
//     changed since; their frames have savedFor == m_statement.
//  5. After a failed commit the file is as before it, or m_broken is set and the journal
//     lies beside it.
struct Pager::Impl
{
    Impl(FileSystem& fileSystem, std::filesystem::path filePath, bool forReading)
        : files(fileSystem)
        , path(std::move(filePath))
        , readOnly(forReading)
        , cache(kCacheFrames)
    {}

    void requireUsable() const
    {
        if (broken)
            throw Error(Fault::Io, "после сбоя записи файл нужно закрыть и открыть снова");
    }

    void requireWritable() const
    {
        requireUsable();
        if (readOnly)
            throw Error(Fault::ReadOnly, "файл открыт только для чтения");
        assert(inTransaction);
    }

    void requireInPlace() const
    {
        if (!file->isInPlace())
            throw Error(Fault::NotFound, "изменения не записаны: файл «" + path.string()
                                             + "» удалён или перемещён, пока был открыт");
    }

    void code(PageNumber number, ByteSpan bytes) const
    {
        if (header.databaseKey != 0 && number != 0)
            applyRc4(header.databaseKey ^ number, bytes);
    }

    Frame* load(PageNumber number)
    {
        requireUsable();
        if (number >= cache.pageCount())
            throw Error(Fault::Damaged, "ссылка на страницу за концом файла", number);
        Frame* const frame = cache.add(number);
        try {
            file->read(offsetOf(number), frame->bytes);
        } catch (...) {
            cache.drop(number);
            throw;
        }
        code(number, frame->bytes);
        return frame;
    }

    Frame* fetch(PageNumber number)
    {
        if (number < cache.pageCount()) {
            if (Frame* const frame = cache.find(number))
                return frame;
        }
        return load(number);
    }

    void saveBeforeChange(Frame& frame)
    {
        if (!frame.dirty) {
            originals.push_back({frame.number, frame.bytes});
            frame.dirty = true;
        }
        if (marked && frame.savedFor != statement) {
            if (frame.number < countAtMark)
                undo.push_back({frame.number, frame.bytes});
            frame.savedFor = statement;
        }
    }

    void restore(const std::vector<SavedPage>& pages)
    {
        for (const SavedPage& page : pages)
            cache.find(page.number)->bytes = page.bytes;
    }

    void forgetTransaction()
    {
        for (const SavedPage& page : originals)
            cache.find(page.number)->dirty = false;
        for (PageNumber number = countBefore; number < cache.pageCount(); ++number)
            cache.find(number)->dirty = false;
        originals.clear();
        originals.shrink_to_fit();
        undo.clear();
        marked = false;
        inTransaction = false;
        cache.trim();
    }

    void dropUnchanged()
    {
        std::vector<SavedPage> changed;
        for (SavedPage& page : originals) {
            Frame* const frame = cache.find(page.number);
            if (frame->bytes == page.bytes)
                frame->dirty = false;
            else
                changed.push_back(page);
        }
        originals = std::move(changed);
        std::sort(originals.begin(), originals.end(),
                  [](const SavedPage& a, const SavedPage& b) { return a.number < b.number; });
    }

    void writeJournal()
    {
        if (files.exists(journalPath(path)))
            files.remove(journalPath(path)); // of a failed commit, when it could not be removed
        JournalWriter journal(files, path, offsetOf(countBefore), offsetOf(cache.pageCount()),
                              static_cast<std::uint32_t>(originals.size()));
        for (const SavedPage& page : originals) {
            // Coding nothing gives the key stream, which serves both images of the page.
            Image key{};
            code(page.number, key);
            journal.addChanged(page.number, combined(page.bytes, key),
                               combined(cache.find(page.number)->bytes, key));
        }
        for (PageNumber number = countBefore; number < cache.pageCount(); ++number) {
            Image after = cache.find(number)->bytes;
            code(number, after);
            journal.addNew(after);
        }
        journal.finish();
    }

    void writePage(PageNumber number, const Image& plain)
    {
        Image stored = plain;
        code(number, stored);
        file->write(offsetOf(number), stored);
    }

    // New pages come first: where the disk is full, nothing old has been overwritten yet.
    void writePages()
    {
        for (PageNumber number = countBefore; number < cache.pageCount(); ++number)
            writePage(number, cache.find(number)->bytes);
        for (const SavedPage& page : originals)
            writePage(page.number, cache.find(page.number)->bytes);
        file->sync();
    }

    // Takes back what writePages() may have written, under the protection of the journal.
    void unwritePages() noexcept
    {
        try {
            if (!files.exists(journalPath(path)))
                writeJournal();
            for (const SavedPage& page : originals)
                writePage(page.number, page.bytes);
            file->truncate(offsetOf(countBefore));
            file->sync();
            files.remove(journalPath(path));
        } catch (...) {
            broken = true; // the next opening rolls back
        }
    }

    void removeJournalIfPossible() noexcept
    {
        try {
            files.remove(journalPath(path));
        } catch (...) {
            // Incomplete or equal to the file, so harmless; the next commit removes it.
        }
    }

    void rollback()
    {
        restore(originals);
        cache.setPageCount(countBefore);
        forgetTransaction();
        ++rollbacks;
    }

    FileSystem& files;
    std::filesystem::path path;
    bool readOnly;
    std::unique_ptr<File> file;
    DatabaseHeader header;
    PageCache cache;
    bool broken = false;
    std::uint64_t rollbacks = 0;

    bool inTransaction = false;
    PageNumber countBefore = 0;
    std::vector<SavedPage> originals;

    bool marked = false;
    std::uint64_t statement = 0;
    PageNumber countAtMark = 0;
    std::vector<SavedPage> undo;
};

Pager::Pager(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl))
{}

Pager::~Pager() = default;

std::unique_ptr<Pager> Pager::open(FileSystem& files, const std::filesystem::path& path,
                                   bool readOnly)
{
    auto impl = std::make_unique<Impl>(files, withoutLinks(path), readOnly);
    impl->file = openRecovered(files, impl->path, readOnly);
    const std::uint64_t size = impl->file->size();
    Bytes first(static_cast<std::size_t>(std::min<std::uint64_t>(size, kPageSize)));
    impl->file->read(0, first);
    impl->header = decodeHeader(first);
    if (size % kPageSize != 0)
        throw Error(Fault::Damaged, "файл базы данных обрезан: его длина не кратна странице");
    if (size > offsetOf(kMaxPages))
        throw Error(Fault::Damaged, "файл базы данных больше 2 ГБ");
    impl->cache.setPageCount(static_cast<PageNumber>(size / kPageSize));
    return std::unique_ptr<Pager>(new Pager(std::move(impl)));
}

std::unique_ptr<Pager> Pager::create(FileSystem& files, const std::filesystem::path& path,
                                     ByteView plainImage)
{
    assert(!plainImage.empty() && plainImage.size() % kPageSize == 0);
    auto impl = std::make_unique<Impl>(files, path, false);
    impl->header = decodeHeader(plainImage.first(kPageSize));
    const auto pages = static_cast<PageNumber>(plainImage.size() / kPageSize);
    impl->file = files.open(path, FileMode::Create);
    try {
        setJournalAside(files, path); // of a file that had this name before
        // Page 0 comes last: without it a half-made file is no database.
        for (PageNumber number = pages; number-- > 0;) {
            Image image;
            std::copy_n(plainImage.begin() + static_cast<std::ptrdiff_t>(offsetOf(number)),
                        kPageSize, image.begin());
            if (number == 0)
                impl->file->sync();
            impl->writePage(number, image);
        }
        impl->file->sync();
        files.syncDirectory(path.parent_path());
    } catch (...) {
        impl->file.reset();
        try {
            files.remove(path);
        } catch (...) {
            // The first error tells more.
        }
        throw;
    }
    impl->cache.setPageCount(pages);
    return std::unique_ptr<Pager>(new Pager(std::move(impl)));
}

bool Pager::readOnly() const
{
    return m_impl->readOnly;
}

const std::filesystem::path& Pager::path() const
{
    return m_impl->path;
}

const DatabaseHeader& Pager::header() const
{
    return m_impl->header;
}

PageNumber Pager::pageCount() const
{
    return m_impl->cache.pageCount();
}

PageRef Pager::read(PageNumber number)
{
    return PageRef(m_impl->fetch(number));
}

ByteSpan Pager::modify(PageNumber number)
{
    m_impl->requireWritable();
    Frame* const frame = m_impl->fetch(number);
    m_impl->saveBeforeChange(*frame);
    return frame->bytes;
}

PageNumber Pager::append()
{
    Impl& impl = *m_impl;
    impl.requireWritable();
    const PageNumber number = impl.cache.pageCount();
    if (number >= kMaxPages)
        throw Error(Fault::Limit, "файл базы данных достиг предела в 2 ГБ");
    impl.cache.setPageCount(number + 1);
    Frame* const frame = impl.cache.add(number);
    frame->bytes.fill(0);
    frame->dirty = true;
    return number;
}

void Pager::beginTransaction()
{
    assert(!m_impl->inTransaction);
    m_impl->requireUsable();
    m_impl->inTransaction = true;
    m_impl->countBefore = m_impl->cache.pageCount();
}

bool Pager::inTransaction() const
{
    return m_impl->inTransaction;
}

void Pager::commit()
{
    Impl& impl = *m_impl;
    assert(impl.inTransaction);
    impl.dropUnchanged();
    if (impl.originals.empty() && impl.countBefore == impl.cache.pageCount()) {
        impl.forgetTransaction();
        return;
    }
    try {
        impl.requireInPlace();
        impl.writeJournal();
    } catch (...) {
        impl.removeJournalIfPossible();
        impl.rollback();
        throw;
    }
    try {
        impl.writePages();
        impl.files.remove(journalPath(impl.path));
    } catch (...) {
        impl.unwritePages();
        impl.rollback();
        throw;
    }
    impl.forgetTransaction();
}

void Pager::rollback()
{
    assert(m_impl->inTransaction);
    m_impl->rollback();
}

void Pager::markStatement()
{
    Impl& impl = *m_impl;
    assert(impl.inTransaction && !impl.marked);
    impl.marked = true;
    ++impl.statement;
    impl.countAtMark = impl.cache.pageCount();
    impl.undo.clear();
}

void Pager::releaseStatement()
{
    assert(m_impl->marked);
    m_impl->marked = false;
    m_impl->undo.clear();
}

void Pager::rollbackStatement()
{
    Impl& impl = *m_impl;
    assert(impl.marked);
    impl.restore(impl.undo);
    impl.cache.setPageCount(impl.countAtMark);
    impl.undo.clear();
    impl.marked = false;
    ++impl.rollbacks;
}

std::uint64_t Pager::rollbackCount() const
{
    return m_impl->rollbacks;
}

} // namespace jet
