#include "jet/error.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"

#include <algorithm>

// Pages of a table definition:
//
//   00  u16  02 01
//   02  u16  4088 less the bytes used on this page, the header included; not below 0
//   04  u32  next page, 0 = last
//   08       the byte string: from its offset 8 on the first page, then continued

namespace jet {

namespace {

constexpr std::size_t kPageHeader = 8;
constexpr std::size_t kNextPage = 4;
constexpr std::size_t kLength = 8;
constexpr std::uint32_t kLongest = 64 * kPageSize; // 255 columns, 32 indexes, all names full

PageRef readPage(Pager& pager, PageNumber number, PageNumber first)
{
    PageRef page = pager.read(number);
    if (number == 0 || page.type() != PageType::Definition)
        throw Error(Fault::Damaged, "здесь должно быть описание таблицы", first);
    return page;
}

std::vector<PageNumber> pagesOf(Pager& pager, PageNumber first)
{
    std::vector<PageNumber> pages;
    for (PageNumber number = first; number != 0;) {
        const PageRef page = pager.read(number);
        // A page not yet a definition one is new and has no followers.
        const bool known = page.type() == PageType::Definition;
        if (std::find(pages.begin(), pages.end(), number) != pages.end()
            || (!known && !pages.empty()))
            throw Error(Fault::Damaged, "описание таблицы ссылается не на свою страницу", number);
        pages.push_back(number);
        number = known ? get32(page.bytes(), kNextPage) : 0;
    }
    return pages;
}

} // namespace

Definition readDefinition(Pager& pager, PageNumber first)
{
    PageRef page = readPage(pager, first, first);
    const std::uint32_t length = get32(page.bytes(), kLength);
    if (length > kLongest)
        throw Error(Fault::Damaged, "повреждено описание таблицы: не сходится его длина", first);
    Bytes bytes(page.bytes().begin(), page.bytes().end());
    // The length bounds the walk, so that a cycle of pages ends it too.
    while (bytes.size() < length) {
        page = readPage(pager, get32(page.bytes(), kNextPage), first);
        bytes.insert(bytes.end(), page.bytes().begin() + kPageHeader, page.bytes().end());
    }
    bytes.resize(std::max<std::size_t>(length, kPageHeader));
    return decodeDefinition(bytes, first);
}

void writeDefinition(Pager& pager, PageAllocator& allocator, const Definition& definition)
{
    const Bytes bytes = encodeDefinition(definition);
    const std::size_t room = kPageSize - kPageHeader;
    const std::size_t content = bytes.size() - kPageHeader;
    const std::size_t needed = (content + room - 1) / room;
    std::vector<PageNumber> pages = pagesOf(pager, definition.page);
    while (pages.size() < needed)
        pages.push_back(allocator.allocate());
    for (std::size_t i = 0; i < needed; ++i) {
        const std::size_t used = std::min(room, content - i * room);
        const ByteSpan page = pager.modify(pages[i]);
        std::fill(page.begin(), page.end(), std::uint8_t{0});
        page[0] = static_cast<std::uint8_t>(PageType::Definition);
        page[1] = 1;
        const std::size_t rest = room - used;
        put16(page, 2, static_cast<std::uint16_t>(rest < kPageHeader ? 0 : rest - kPageHeader));
        put32(page, kNextPage, i + 1 < needed ? pages[i + 1] : 0);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(kPageHeader + i * room), used,
                    page.begin() + kPageHeader);
    }
    for (std::size_t i = needed; i < pages.size(); ++i)
        allocator.release(pages[i], PageType::FreedDefinition);
}

} // namespace jet
