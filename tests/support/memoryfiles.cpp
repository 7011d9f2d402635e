#include "tests/support/memoryfiles.h"

#include <algorithm>

namespace jet::test {

namespace {

constexpr std::uint64_t kSector = 512;

using Content = std::vector<std::uint8_t>;

} // namespace

struct MemoryFiles::Stored
{
    struct Change
    {
        bool truncation;
        std::uint64_t offset; // or the new size
        Content bytes;
    };

    void apply(Content& content, const Change& change) const
    {
        if (change.truncation) {
            content.resize(change.offset);
            return;
        }
        const std::uint64_t end = change.offset + change.bytes.size();
        if (content.size() < end)
            content.resize(end);
        std::copy(change.bytes.begin(), change.bytes.end(),
                  content.begin() + static_cast<std::ptrdiff_t>(change.offset));
    }

    Content now;
    Content synced;
    std::vector<Change> unsynced; // by sector, so that a cut may tear a write
    int readers = 0;
    bool writer = false;
};

class MemoryFile final : public File
{
public:
    MemoryFile(MemoryFiles& files, std::shared_ptr<MemoryFiles::Stored> stored, bool writer)
        : m_files(files)
        , m_stored(std::move(stored))
        , m_writer(writer)
    {
        if (writer)
            m_stored->writer = true;
        else
            ++m_stored->readers;
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() override
    {
        if (m_writer)
            m_stored->writer = false;
        else
            --m_stored->readers;
    }

    std::uint64_t size() const override { return m_stored->now.size(); }

    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        if (offset + buffer.size() > m_stored->now.size())
            throw Error(Fault::Damaged, "файл обрезан");
        std::copy_n(m_stored->now.begin() + static_cast<std::ptrdiff_t>(offset), buffer.size(),
                    buffer.begin());
    }

    void write(std::uint64_t offset, ByteView bytes) override
    {
        const bool failing = m_files.countWrite();
        const bool longer = offset + bytes.size() > m_stored->now.size();
        if (longer && offset + bytes.size() > m_files.m_sizeLimit)
            throw Error(Fault::DiskFull, "на диске нет места");
        if (!failing || (m_files.m_failure == MemoryFiles::Failure::NoRoom && !longer)) {
            put(offset, bytes);
            return;
        }
        // From then on a disk that has failed for good does nothing at all.
        const bool first = m_files.m_operations - 1 == m_files.m_failAt;
        if (first || m_files.m_failure != MemoryFiles::Failure::ForGood)
            putTorn(offset, bytes);
        throw Error(m_files.m_fault, "сбой записи");
    }

    void truncate(std::uint64_t size) override
    {
        m_files.count();
        m_stored->now.resize(size);
        m_stored->unsynced.push_back({true, size, {}});
    }

    void sync() override
    {
        try {
            m_files.count();
        } catch (...) {
            if (m_files.m_forget)
                m_stored->unsynced.clear();
            throw;
        }
        for (const MemoryFiles::Stored::Change& change : m_stored->unsynced)
            m_stored->apply(m_stored->synced, change);
        m_stored->unsynced.clear();
    }

    bool isInPlace() const override
    {
        return std::any_of(m_files.m_files.begin(), m_files.m_files.end(),
                           [this](const auto& named) { return named.second == m_stored; });
    }

private:
    void putTorn(std::uint64_t offset, ByteView bytes)
    {
        if (m_files.m_tear == MemoryFiles::Tear::RandomSectors)
            put(offset, bytes, true);
        else
            put(offset, bytes.first(bytes.size() / 2));
    }

    void put(std::uint64_t offset, ByteView bytes, bool atRandom = false)
    {
        while (!bytes.empty()) {
            const std::uint64_t room = kSector - offset % kSector;
            const auto piece = bytes.first(std::min<std::size_t>(room, bytes.size()));
            if (!atRandom || (m_files.m_random() & 1) != 0) {
                m_stored->unsynced.push_back({false, offset, Content(piece.begin(), piece.end())});
                m_stored->apply(m_stored->now, m_stored->unsynced.back());
            }
            offset += piece.size();
            bytes = bytes.subspan(piece.size());
        }
    }

    MemoryFiles& m_files;
    std::shared_ptr<MemoryFiles::Stored> m_stored;
    bool m_writer;
};

std::unique_ptr<File> MemoryFiles::open(const std::filesystem::path& path, FileMode mode)
{
    count();
    auto& stored = m_files[path.string()];
    if (mode == FileMode::Create && stored)
        throw Error(Fault::Exists, "файл уже существует");
    if (mode == FileMode::Create)
        stored = std::make_shared<Stored>();
    if (!stored) {
        m_files.erase(path.string());
        throw Error(Fault::NotFound, "файл не найден");
    }
    const bool writer = mode != FileMode::ReadOnly;
    if (stored->writer || (writer && stored->readers > 0))
        throw Error(Fault::Locked, "файл уже открыт");
    return std::make_unique<MemoryFile>(*this, stored, writer);
}

bool MemoryFiles::exists(const std::filesystem::path& path) const
{
    return m_files.contains(path.string());
}

void MemoryFiles::remove(const std::filesystem::path& path)
{
    if (m_removeFirst)
        m_files.erase(path.string());
    count();
    m_files.erase(path.string());
    m_durable.erase(path.string());
}

void MemoryFiles::rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    count();
    if (m_files.contains(to.string()))
        throw Error(Fault::Exists, "файл уже существует");
    m_files[to.string()] = m_files.at(from.string());
    m_files.erase(from.string());
    m_durable = m_files;
}

void MemoryFiles::replace(const std::filesystem::path& from, const std::filesystem::path& to,
                          const std::function<void()>& release)
{
    count();
    m_files[to.string()] = m_files.at(from.string());
    m_files.erase(from.string());
    release();
    syncDirectory(to.parent_path());
}

void MemoryFiles::syncDirectory(const std::filesystem::path&)
{
    count();
    m_durable = m_files;
}

void MemoryFiles::failAt(int n, Failure failure, Fault fault)
{
    m_operations = 0;
    m_failAt = n;
    m_failure = failure;
    m_fault = fault;
}

void MemoryFiles::count()
{
    if (countWrite() && m_failure != Failure::NoRoom)
        throw Error(m_fault, "сбой диска");
}

// Counts an operation; true when it must fail.
bool MemoryFiles::countWrite()
{
    const int number = m_operations++;
    return m_failAt >= 0 && (m_failure == Failure::Once ? number == m_failAt : number >= m_failAt);
}

void MemoryFiles::tearWrites(Tear tear, unsigned seed)
{
    m_tear = tear;
    m_random.seed(seed);
}

void MemoryFiles::powerCut(unsigned seed)
{
    std::mt19937 random(seed);
    const auto chance = [&random] { return (random() & 1) != 0; };
    for (const auto& [name, stored] : m_files) {
        if (!m_durable.contains(name) && chance())
            m_durable[name] = stored;
    }
    m_files = m_durable;
    for (const auto& [name, stored] : m_files) {
        Content content = stored->synced;
        for (const Stored::Change& change : stored->unsynced) {
            if (chance())
                stored->apply(content, change);
        }
        stored->now = stored->synced = std::move(content);
        stored->unsynced.clear();
    }
    failNever();
    m_sizeLimit = ~std::uint64_t{0};
}

std::vector<std::uint8_t> MemoryFiles::content(const std::filesystem::path& path) const
{
    const auto found = m_files.find(path.string());
    return found == m_files.end() ? Content() : found->second->now;
}

void MemoryFiles::setContent(const std::filesystem::path& path, std::vector<std::uint8_t> bytes)
{
    auto stored = std::make_shared<Stored>();
    stored->now = stored->synced = std::move(bytes);
    m_files[path.string()] = m_durable[path.string()] = stored;
}

} // namespace jet::test
