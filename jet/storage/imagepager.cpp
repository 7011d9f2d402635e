#include "jet/storage/imagepager.h"

#include "jet/storage/maprow.h"

#include <algorithm>
#include <cassert>

namespace jet {

namespace {

constexpr std::size_t kInlineBitmap = 5; // offset in a map row

class ImageFile final : public File
{
public:
    explicit ImageFile(Bytes& bytes)
        : m_bytes(bytes)
    {}
    std::uint64_t size() const override { return m_bytes.size(); }
    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(offset), buffer.size(),
                    buffer.begin());
    }
    void write(std::uint64_t, ByteView) override {}
    void truncate(std::uint64_t) override {}
    void sync() override {}

private:
    Bytes& m_bytes;
};

class ImageFiles final : public FileSystem
{
public:
    explicit ImageFiles(Bytes& bytes)
        : m_bytes(bytes)
    {}
    std::unique_ptr<File> open(const std::filesystem::path&, FileMode) override
    {
        return std::make_unique<ImageFile>(m_bytes);
    }
    bool exists(const std::filesystem::path&) const override { return false; }
    void remove(const std::filesystem::path&) override {}
    void rename(const std::filesystem::path&, const std::filesystem::path&) override {}
    void replace(const std::filesystem::path&, const std::filesystem::path&,
                 const std::function<void()>&) override
    {}
    void syncDirectory(const std::filesystem::path&) override {}

private:
    Bytes& m_bytes;
};

// Page 1: row 0 has a bit for each free page, row 1 is a second, empty map.
void writeGlobalMaps(ByteSpan page, PageNumber used)
{
    maprow::initialise(page);
    put32(page, 4, 1);
    maprow::append(page, 1);
    maprow::append(page, 1);
    const maprow::Place place = maprow::locate(page, {1, 0});
    const ByteSpan bits = page.subspan(place.offset + kInlineBitmap, place.length - kInlineBitmap);
    assert(used <= 8 * bits.size());
    std::fill(bits.begin(), bits.end(), std::uint8_t{0xFF});
    for (PageNumber number = 0; number < used; ++number)
        bits[number / 8] &= static_cast<std::uint8_t>(~(1U << (number % 8)));
}

} // namespace

ImagePager::ImagePager(const DatabaseHeader& header, PageNumber used)
{
    DatabaseHeader plain = header; // pages are coded when the real file is written
    plain.databaseKey = 0;
    m_start = encodeHeader(plain);
    m_start.resize(used * kPageSize);
    writeGlobalMaps(ByteSpan(m_start).subspan(kPageSize, kPageSize), used);
    m_files = std::make_unique<ImageFiles>(m_start);
    m_pager = Pager::open(*m_files, "image", false);
    m_pager->beginTransaction();
}

ImagePager::~ImagePager()
{
    m_pager->rollback();
}

} // namespace jet
