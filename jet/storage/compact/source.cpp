#include "jet/storage/compact/source.h"

#include "jet/error.h"

#include <utility>

namespace jet::compact {

namespace {

// A file without the piece of a page at its end.
class WholePagesFile final : public File
{
public:
    explicit WholePagesFile(std::unique_ptr<File> file)
        : m_file(std::move(file))
    {}
    std::uint64_t size() const override { return m_file->size() / kPageSize * kPageSize; }
    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        m_file->read(offset, buffer);
    }
    void write(std::uint64_t offset, ByteView bytes) override { m_file->write(offset, bytes); }
    void truncate(std::uint64_t size) override { m_file->truncate(size); }
    void sync() override { m_file->sync(); }

private:
    std::unique_ptr<File> m_file;
};

class WholePagesFiles final : public FileSystem
{
public:
    explicit WholePagesFiles(FileSystem& files)
        : m_files(files)
    {}
    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override
    {
        return std::make_unique<WholePagesFile>(m_files.open(path, mode));
    }
    bool exists(const std::filesystem::path& path) const override { return m_files.exists(path); }
    void remove(const std::filesystem::path& path) override { m_files.remove(path); }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        m_files.rename(from, to);
    }
    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override
    {
        m_files.replace(from, to, release);
    }
    void syncDirectory(const std::filesystem::path& directory) override
    {
        m_files.syncDirectory(directory);
    }

private:
    FileSystem& m_files;
};

} // namespace

Source::Source(FileSystem& files, const std::filesystem::path& path, bool alone, Losses& losses)
    : m_size(files.open(path, FileMode::ReadOnly)->size())
{
    const OpenMode mode = alone ? OpenMode::Exclusive : OpenMode::ReadOnly;
    if (!losses.repairing()) {
        m_store = Store::open(files, path, mode);
        return;
    }
    try {
        m_store = Store::open(files, path, mode);
        return;
    } catch (const Error& error) {
        if (error.fault() != Fault::Damaged)
            throw;
    }
    FileSystem* from = &files;
    if (m_size % kPageSize != 0 && m_size > kPageSize) {
        m_wholePages = std::make_unique<WholePagesFiles>(files);
        from = m_wholePages.get();
        losses.add("", "файл обрезан посреди страницы",
                   static_cast<PageNumber>(m_size / kPageSize));
    }
    m_pager = Pager::open(*from, path, !alone);
}

Pager& Source::pager()
{
    return m_store ? m_store->pager() : *m_pager;
}

void Source::release()
{
    m_store.reset();
    m_pager.reset();
}

} // namespace jet::compact
