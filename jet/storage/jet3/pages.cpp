#include "jet/storage/jet3/pages.h"

#include "jet/error.h"
#include "jet/storage/filekind.h"
#include "jet/storage/rc4.h"

#include <algorithm>
#include <string>

namespace jet::jet3 {

namespace {

constexpr std::uint32_t kRegionKey = 0x6B39DAC7; // RC4 key bytes C7 DA 39 6B
constexpr std::size_t kRegion = 0x18;
constexpr std::size_t kRegionSize = 126;
constexpr std::size_t kSystemTables = 0x20;
constexpr std::size_t kCodePage = 0x3C;
constexpr std::size_t kDatabaseKey = 0x3E;
constexpr std::size_t kPassword = 0x42;
constexpr std::size_t kPasswordSize = 20;
constexpr std::size_t kSlots = 10; // offset in a data page

// All of it is put into memory as a file of the present format.
constexpr std::uint64_t kMostBytes = std::uint64_t{512} << 20;

constexpr std::size_t kMapHeader = 5;    // of an inline map: kind and first page
constexpr std::size_t kBitmapHeader = 4; // of a bitmap page
constexpr std::uint64_t kPagesPerBitmap = (kPageSize - kBitmapHeader) * 8;

Header decodeHeader(Page page)
{
    applyRc4(kRegionKey, ByteSpan(page).subspan(kRegion, kRegionSize));
    if (RowPointer::unpack(get32(page, kRegion)) != RowPointer{1, 0})
        throw Error(Fault::Damaged, "заголовок файла Access 97 повреждён", 0);
    const ByteView password = ByteView(page).subspan(kPassword, kPasswordSize);
    if (std::any_of(password.begin(), password.end(), [](std::uint8_t b) { return b != 0; }))
        throw Error(Fault::PasswordProtected,
                    "файл Access 97 защищён паролем; снимите пароль в Access");
    Header header;
    for (std::size_t i = 0; i < header.systemTables.size(); ++i)
        header.systemTables[i] = get32(page, kSystemTables + 4 * i);
    header.codePage = get16(page, kCodePage);
    header.databaseKey = get32(page, kDatabaseKey);
    return header;
}

} // namespace

Pages::Pages(std::unique_ptr<File> file)
    : m_file(std::move(file))
{
    const std::uint64_t size = m_file->size();
    if (size < kPageSize || size % kPageSize != 0)
        throw Error(Fault::Damaged, "файл Access 97 обрезан: его длина не кратна странице");
    if (size > kMostBytes)
        throw Error(Fault::Limit, "файл Access 97 больше 512 МБ, такой можно открыть только в "
                                  "Access; преобразуйте его там");
    Page first;
    m_file->read(0, first);
    if (kindOf(first) != FileKind::Jet3)
        throw Error(Fault::NotADatabase, "это не файл Access 97");
    m_header = decodeHeader(first);
    m_codePage = std::make_unique<CodePage>(m_header.codePage);
    m_count = static_cast<PageNumber>(size / kPageSize);
}

Page Pages::read(PageNumber number) const
{
    if (number >= m_count)
        throw Error(Fault::Damaged, "ссылка на страницу за концом файла", number);
    Page page;
    m_file->read(std::uint64_t{number} * kPageSize, page);
    if (m_header.databaseKey != 0 && number != 0)
        applyRc4(m_header.databaseKey ^ number, page);
    return page;
}

Bytes Pages::row(RowPointer pointer) const
{
    const Page page = read(pointer.page);
    const DataPage rows(page, pointer.page);
    if (pointer.row >= rows.rowCount() || rows.isDeleted(pointer.row))
        throw Error(Fault::Damaged, "ссылка на строку, которой нет на странице", pointer.page);
    const ByteView bytes = rows.bytes(pointer.row);
    return {bytes.begin(), bytes.end()};
}

void Pages::addBits(std::vector<PageNumber>& pages, ByteView bitmap, std::uint64_t first) const
{
    for (std::size_t at = 0; at < bitmap.size(); ++at) {
        for (unsigned bit = 0; bitmap[at] != 0 && bit < 8; ++bit) {
            if ((bitmap[at] >> bit & 1) == 0)
                continue;
            const std::uint64_t page = first + 8 * at + bit;
            if (page >= m_count)
                throw Error(Fault::Damaged, "карта размещения называет страницу за концом файла");
            pages.push_back(static_cast<PageNumber>(page));
        }
    }
}

// Kind 0: u32 first page, then one bit a page. Kind 1: u32 numbers of pages, each of which
// holds 05 01 00 00 and 2044 bytes of bits.
std::vector<PageNumber> Pages::mapped(RowPointer map) const
{
    std::vector<PageNumber> pages;
    const Bytes bytes = row(map);
    if (bytes.size() >= kMapHeader && bytes[0] == 0) {
        addBits(pages, ByteView(bytes).subspan(kMapHeader), get32(bytes, 1));
    } else if (!bytes.empty() && bytes[0] == 1) {
        for (std::size_t i = 0; 1 + 4 * (i + 1) <= bytes.size(); ++i) {
            const PageNumber number = get32(bytes, 1 + 4 * i);
            if (number == 0)
                continue;
            const Page bitmap = read(number);
            if (bitmap[0] != static_cast<std::uint8_t>(PageType::UsageBitmap))
                throw Error(Fault::Damaged, "повреждена карта размещения", number);
            addBits(pages, ByteView(bitmap).subspan(kBitmapHeader), i * kPagesPerBitmap);
        }
    } else {
        throw Error(Fault::Damaged, "повреждена карта размещения", map.page);
    }
    return pages;
}

DataPage::DataPage(const Page& page, PageNumber number)
    : m_page(page)
    , m_count(get16(page, 8))
{
    std::size_t end = kPageSize;
    bool sound = page[0] == static_cast<std::uint8_t>(PageType::Data)
                 && kSlots + 2 * m_count <= kPageSize && m_count <= 256;
    for (std::size_t row = 0; sound && row < m_count; ++row) {
        sound = offset(row) <= end && offset(row) >= kSlots + 2 * m_count;
        end = offset(row);
    }
    if (!sound)
        throw Error(Fault::Damaged, "повреждена страница с записями", number);
}

ByteView DataPage::bytes(std::size_t row) const
{
    const std::size_t end = row == 0 ? kPageSize : offset(row - 1);
    return ByteView(m_page).subspan(offset(row), end - offset(row));
}

} // namespace jet::jet3
