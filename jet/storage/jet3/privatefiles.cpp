#include "jet/storage/jet3/privatefiles.h"

#include "jet/error.h"

#include <algorithm>
#include <array>
#include <vector>

namespace jet::jet3 {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
using Piece = std::array<std::uint8_t, kPieceBytes>;

} // namespace

// In pieces, so that growing copies nothing.
struct PrivateFiles::Content
{
    std::vector<std::unique_ptr<Piece>> pieces;
    std::uint64_t size = 0;

    // Calls visit(bytes of a piece, how many before it) for each part of the range.
    template <class Visit>
    void forRange(std::uint64_t offset, std::size_t length, Visit visit) const
    {
        for (std::size_t done = 0; done < length;) {
            const auto piece = static_cast<std::size_t>((offset + done) / kPieceBytes);
            const auto from = static_cast<std::size_t>((offset + done) % kPieceBytes);
            const std::size_t count = std::min(length - done, kPieceBytes - from);
            visit(ByteSpan(*pieces[piece]).subspan(from, count), done);
            done += count;
        }
    }

    void resize(std::uint64_t newSize)
    {
        const auto wanted = static_cast<std::size_t>((newSize + kPieceBytes - 1) / kPieceBytes);
        pieces.resize(std::min(pieces.size(), wanted));
        while (pieces.size() < wanted)
            pieces.push_back(std::make_unique<Piece>());
        size = newSize;
    }
};

namespace {

class PrivateFile final : public File
{
public:
    PrivateFile(std::shared_ptr<PrivateFiles::Content> content, std::uint64_t mostBytes)
        : m_content(std::move(content))
        , m_mostBytes(mostBytes)
    {}

    std::uint64_t size() const override { return m_content->size; }
    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        if (offset > m_content->size || buffer.size() > m_content->size - offset)
            throw Error(Fault::Damaged, "файл в памяти обрезан");
        m_content->forRange(offset, buffer.size(), [&](ByteSpan part, std::size_t before) {
            std::copy(part.begin(), part.end(),
                      buffer.begin() + static_cast<std::ptrdiff_t>(before));
        });
    }
    void write(std::uint64_t offset, ByteView bytes) override
    {
        const std::uint64_t end = offset + bytes.size();
        if (end > m_mostBytes)
            throw Error(Fault::Limit, "содержимое файла не помещается в память");
        if (end > m_content->size)
            m_content->resize(end);
        m_content->forRange(offset, bytes.size(), [&](ByteSpan part, std::size_t before) {
            std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(before), part.size(),
                        part.begin());
        });
    }
    void truncate(std::uint64_t size) override { m_content->resize(size); }
    void sync() override {}

private:
    std::shared_ptr<PrivateFiles::Content> m_content;
    std::uint64_t m_mostBytes;
};

} // namespace

std::unique_ptr<File> PrivateFiles::open(const std::filesystem::path& path, FileMode mode)
{
    if (mode == FileMode::Create)
        m_files[path] = std::make_shared<Content>();
    const auto found = m_files.find(path);
    if (found == m_files.end())
        throw Error(Fault::NotFound, "файл «" + path.string() + "» не найден");
    return std::make_unique<PrivateFile>(found->second, m_mostBytes);
}

bool PrivateFiles::exists(const std::filesystem::path& path) const
{
    return m_files.count(path) != 0;
}

void PrivateFiles::rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    if (exists(to))
        throw Error(Fault::Exists, "файл «" + to.string() + "» уже существует");
    const auto found = m_files.find(from);
    if (found == m_files.end())
        throw Error(Fault::NotFound, "файл «" + from.string() + "» не найден");
    m_files[to] = found->second;
    m_files.erase(from);
}

} // namespace jet::jet3
