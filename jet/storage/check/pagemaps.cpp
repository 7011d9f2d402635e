#include "jet/storage/check/space.h"
#include "jet/storage/datapage.h"
#include "jet/storage/maprow.h"
#include "jet/storage/pagebits.h"

#include <algorithm>
#include <iterator>

namespace jet::check {
namespace {

constexpr PageNumber kGlobalMapPage = 1;
constexpr RowPointer kFreePages{kGlobalMapPage, 0};
constexpr RowPointer kSecondMap{kGlobalMapPage, 1};
constexpr std::uint8_t kByReference = 1;
constexpr std::size_t kInlineHeader = 5;
constexpr PageNumber kPagesPerStep = 8;
// So many pages behind the end of the file are skipped when it grows, and no more.
constexpr PageNumber kMostReserved = 256;

const Owner kMapPages{"", "карты размещения", "карты размещения"};
const Owner kGlobalMap{"", "общая карта размещения", "общая карта размещения"};
const Owner kSecondGlobalMap{"", "вторая общая карта размещения", "вторая общая карта размещения"};

} // namespace

void Space::claimMapRow(RowPointer map, const Owner& owner)
{
    const auto [row, isNew] = m_mapRows.emplace(map.packed(), owner.name);
    if (!isNew && row->second != owner.name) {
        m_findings.harmful(owner.table,
                           "одна карта размещения у двоих: " + row->second + " и " + owner.name,
                           map.page, map.row);
    }
    claim(map.page, kMapPages);
    const PageRef page = dataPage(map.page, map.page == kGlobalMapPage ? 1 : 0, owner.table);
    if (map.row >= datapage::rowCount(page.bytes()))
        throw RowDamage("карты размещения нет на месте", map);
}

Space::MapSlice Space::inlineSlice(ByteView row, RowPointer map, const Owner& owner)
{
    const PageNumber first = get32(row, 1);
    if (first % kPagesPerStep != 0) {
        m_findings.harmless(owner.table,
                            owner.part + ": карта размещения начинается с середины байта", map.page,
                            map.row);
    }
    const ByteView bits = row.subspan(kInlineHeader);
    return {first, Bytes(bits.begin(), bits.end())};
}

std::vector<Space::MapSlice> Space::bitmapSlices(ByteView row, RowPointer map, const Owner& owner)
{
    if (row.size() % 4 != 1)
        throw RowDamage(owner.part + ": у карты размещения недопустимая длина", map);
    const Owner bitmapOwner{owner.table, "битовая карта: " + owner.name, owner.part};
    std::vector<MapSlice> slices;
    std::set<PageNumber> passed;
    for (std::size_t i = 0; 1 + 4 * i < row.size(); ++i) {
        const PageNumber number = get32(row, 1 + 4 * i);
        if (number == 0)
            continue;
        if (!passed.insert(number).second)
            throw RowDamage(owner.part + ": карта размещения дважды называет одну страницу", map);
        if (!claim(number, bitmapOwner))
            continue;
        const PageRef page = m_pager.read(number);
        if (page.type() != PageType::UsageBitmap || page.bytes()[1] != 1)
            throw Error(Fault::Damaged, owner.part + ": здесь должна быть битовая карта", number);
        const ByteView bits = page.bytes().subspan(pagebits::kBitmapStart);
        slices.push_back(
            {std::uint64_t{i} * pagebits::kPagesPerBitmap, Bytes(bits.begin(), bits.end())});
    }
    return slices;
}

std::vector<Space::MapSlice> Space::slicesOf(RowPointer map, const Owner& owner)
{
    claimMapRow(map, owner);
    const PageRef page = m_pager.read(map.page);
    const maprow::Place place = maprow::locate(page.bytes(), map);
    const ByteView row = page.bytes().subspan(place.offset, place.length);
    if (row[0] == kByReference)
        return bitmapSlices(row, map, owner);
    return {inlineSlice(row, map, owner)};
}

std::vector<PageNumber> Space::membersOf(RowPointer map, const Owner& owner)
{
    std::vector<PageNumber> members;
    m_findings.attempt(
        owner.table,
        [&] {
            std::size_t beyond = 0;
            for (const MapSlice& slice : slicesOf(map, owner)) {
                for (std::size_t bit = pagebits::next(slice.bits, 0); bit < slice.bits.size() * 8;
                     bit = pagebits::next(slice.bits, bit + 1)) {
                    if (slice.first + bit < m_pager.pageCount())
                        members.push_back(static_cast<PageNumber>(slice.first + bit));
                    else
                        ++beyond;
                }
            }
            if (beyond > 0) {
                m_findings.harmful(owner.table,
                                   owner.part + ": карта размещения называет страницы за концом "
                                       + "файла: " + std::to_string(beyond),
                                   map.page, map.row);
            }
        },
        map.page, map.row);
    return members;
}

std::vector<PageNumber> Space::ownedPages(RowPointer owned, RowPointer freeSpace,
                                          const Owner& owner)
{
    std::vector<PageNumber> pages = membersOf(owned, owner);
    for (const PageNumber page : pages)
        claim(page, owner);
    if (freeSpace.isNull())
        return pages;
    const std::vector<PageNumber> withRoom =
        membersOf(freeSpace, {owner.table, owner.name + ", свободное место", owner.part});
    std::vector<PageNumber> strangers;
    std::set_difference(withRoom.begin(), withRoom.end(), pages.begin(), pages.end(),
                        std::back_inserter(strangers));
    for (const PageNumber page : strangers) {
        m_findings.harmful(owner.table, owner.part + ": в карте свободного места чужая страница",
                           page);
    }
    return pages;
}

void Space::checkGlobalMaps()
{
    m_findings.attempt("", [&] { slicesOf(kFreePages, kGlobalMap); });
    if (!membersOf(kSecondMap, kSecondGlobalMap).empty())
        m_findings.harmless("", "вторая общая карта размещения не пуста", kGlobalMapPage);
}

// The engine of Access marks pages as used some time before it lengthens the file.
void Space::checkReservedPages()
{
    const PageNumber end = m_pager.pageCount();
    PageNumber reserved = 0;
    while (reserved <= kMostReserved && !m_allocator.isFree(end + reserved))
        ++reserved;
    if (reserved > kMostReserved) {
        m_findings.harmful("", "страницы за концом файла помечены занятыми, файл не может расти",
                           kGlobalMapPage);
    } else if (reserved > 0) {
        m_findings.harmless("",
                            "за концом файла заранее заняты страницы: " + std::to_string(reserved),
                            kGlobalMapPage);
    }
}

} // namespace jet::check
