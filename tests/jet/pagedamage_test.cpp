#include "jet/storage/datapage.h"
#include "jet/storage/maprow.h"
#include "jet/storage/usagemap.h"
#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

namespace jet::test {
namespace {

constexpr RowPointer kGlobalMap{1, 0};

std::vector<Damage> headerDamages(const CheckedFile& /*file*/)
{
    const auto word = [](std::size_t at, std::uint16_t value) {
        return [=](Pager& p) {
            put16(p.modify(0), at, value);
            return Place{};
        };
    };
    const auto flip = [](std::size_t at) {
        return [=](Pager& p) {
            p.modify(0)[at] ^= 1;
            return Place{};
        };
    };
    return {
        {"a commit word 0000", Severity::Harmful, "", "недописанный", word(0xE00, 0)},
        {"a commit word 0001", Severity::Harmful, "", "недописанный", word(0xE0A, 1)},
        {"the last commit word", Severity::Harmful, "", "недописанный (место 255)", word(0xFFE, 0)},
        {"the format mark", Severity::Harmful, "", "нет приметы формата", flip(0x98)},
        {"the format text", Severity::Harmful, "", "нет приметы формата", flip(0x9C)},
        {"the page of a system table", Severity::Harmful, "", "страница системной таблицы",
         flip(0x24)},
        {"the pointer of the second map", Severity::Harmful, "", "вторая общая карта размещения",
         flip(0x1D)},
    };
}

TEST(PageDamage, IsFoundInTheHeader)
{
    expectFound(headerDamages);
}

// Moves the members of the students' owned map to a bitmap page and gives that.
PageNumber useBitmap(Pager& p, const CheckedFile& file)
{
    PageAllocator allocator(p);
    const RowPointer map = file.students().ownedMap;
    const std::vector<PageNumber> members = pagesOf(p, map);
    const PageNumber bitmap = allocator.allocate();
    const ByteSpan bits = p.modify(bitmap);
    bits[0] = 5;
    bits[1] = 1;
    for (const PageNumber member : members)
        bits[4 + member / 8] |= static_cast<std::uint8_t>(1U << member % 8);
    const maprow::Place place = maprow::locate(p.read(map.page).bytes(), map);
    const ByteSpan row = p.modify(map.page).subspan(place.offset, place.length);
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    row[0] = 1;
    put32(row, 1, bitmap);
    return bitmap;
}

TEST(PageDamage, AMapByReferenceIsSound)
{
    CheckedFile file(false);
    file.damage([&](Pager& p) { useBitmap(p, file); });
    EXPECT_EQ(describe(file.check()), "");
}

std::vector<Damage> mapDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const PageNumber ours = file.rows("SPSTUD")[0].page;
    const PageNumber theirs = file.rows("SPGRUP")[0].page;
    const RowPointer owned = students.ownedMap;
    const RowPointer room = students.freeSpaceMap;
    const auto bit = [](RowPointer map, PageNumber page, bool value, Place place) {
        return [=](Pager& p) {
            setInMap(p, map, page, value);
            return place;
        };
    };
    const auto mapByte = [](RowPointer map, std::size_t at, std::uint8_t flip) {
        return [=](Pager& p) {
            const ByteSpan page = p.modify(map.page);
            page[maprow::locate(page, map).offset + at] ^= flip;
            return Place{map.page, map.row};
        };
    };
    return {
        {"a used page marked free", Severity::Harmful, "SPSTUD", "помечена свободной",
         bit(kGlobalMap, ours, true, {ours})},
        {"the header marked free", Severity::Harmful, "", "помечена свободной",
         bit(kGlobalMap, 0, true, {}), Outside::Nothing},
        {"a page that belongs to nobody", Severity::Harmless, "", "никому не принадлежат: 1",
         [](Pager& p) {
             PageAllocator allocator(p);
             return Place{allocator.allocate()};
         },
         Outside::Warning},
        {"a page owned twice", Severity::Harmful, "SPSTUD", "страницей владеют двое",
         bit(owned, theirs, true, {theirs})},
        {"an owned page lost", Severity::Harmful, "SPSTUD", "чужая страница",
         [=](Pager& p) {
             const PageNumber page = pagesOf(p, room).at(0);
             setInMap(p, owned, page, false);
             return Place{page};
         }},
        {"a foreign page with room", Severity::Harmful, "SPSTUD", "чужая страница",
         bit(room, theirs, true, {theirs})},
        {"members beyond the file", Severity::Harmful, "SPSTUD", "за концом файла: 1",
         [=](Pager& p) {
             const ByteView page = p.read(owned.page).bytes();
             setInMap(p, owned, get32(page, maprow::locate(page, owned).offset + 1) + 510, true);
             return Place{owned.page, owned.row};
         }},
        {"an unknown kind of map", Severity::Harmful, "SPSTUD", "карт размещения",
         mapByte(owned, 0, 2)},
        {"a map that begins within a byte", Severity::Harmful, "SPSTUD", "принадлежит",
         [=](Pager& p) {
             mapByte(owned, 1, 1)(p);
             const ByteView page = p.read(owned.page).bytes();
             const std::size_t at = maprow::locate(page, owned).offset;
             for (PageNumber n = get32(page, at + 1);; ++n) {
                 const PageNumber b = n - get32(page, at + 1);
                 if ((page[at + 5 + b / 8] >> b % 8 & 1) != 0
                     && get32(p.read(n).bytes(), 4) != file.students().page)
                     return Place{n};
             }
         }},
        {"a map row that does not exist", Severity::Harmful, "SPSTUD", "карты размещения нет",
         [=, page = students.page](Pager& p) {
             put32(p.modify(page), 0x37, RowPointer{owned.page, 99}.packed());
             return Place{owned.page, 99};
         }},
        {"a map of two owners", Severity::Harmful, "SPSTUD", "одна карта размещения у двоих",
         [=, page = students.page](Pager& p) {
             put32(p.modify(page), 0x3B, owned.packed());
             return Place{owned.page, owned.row};
         }},
        {"the type of a bitmap page", Severity::Harmful, "SPSTUD",
         "здесь должна быть битовая карта",
         [&file](Pager& p) {
             const PageNumber bitmap = useBitmap(p, file);
             p.modify(bitmap)[1] = 0;
             return Place{file.students().ownedMap.page, file.students().ownedMap.row};
         }},
        {"a bitmap page named twice", Severity::Harmful, "SPSTUD", "дважды называет одну страницу",
         [&file](Pager& p) {
             const PageNumber bitmap = useBitmap(p, file);
             const RowPointer map = file.students().ownedMap;
             const ByteSpan page = p.modify(map.page);
             put32(page, maprow::locate(page, map).offset + 5, bitmap);
             return Place{map.page, map.row};
         }},
        {"the second global map in use", Severity::Harmless, "", "вторая общая карта",
         bit({1, 1}, 8, true, {1}), Outside::Warning},
        {"pages reserved behind the end", Severity::Harmless, "", "заранее заняты страницы: 3",
         [](Pager& p) {
             for (PageNumber i = 0; i < 3; ++i)
                 setInMap(p, kGlobalMap, p.pageCount() + i, false);
             return Place{1};
         },
         Outside::Nothing},
        {"too many pages reserved", Severity::Harmful, "", "файл не может расти",
         [](Pager& p) {
             for (PageNumber page = p.pageCount(); page < 512; ++page)
                 setInMap(p, kGlobalMap, page, false);
             return Place{1};
         },
         Outside::Nothing},
    };
}

TEST(PageDamage, IsFoundInMaps)
{
    expectFound(mapDamages);
}

std::vector<Damage> dataPageDamages(const CheckedFile& file)
{
    const RowPointer row = file.rows("SPSTUD")[5];
    const PageNumber memos = file.students().columnMaps.at(0).owned.page;
    const auto onPage = [row](const std::function<void(ByteSpan)>& change, int at = -1) {
        return [=](Pager& p) {
            change(p.modify(row.page));
            return Place{row.page, at};
        };
    };
    return {
        {"the type of a data page", Severity::Harmful, "SPSTUD", "должна быть страница данных",
         onPage([](ByteSpan page) { page[0] = 9; })},
        {"the second byte of a page", Severity::Harmful, "SPSTUD", "должна быть страница данных",
         onPage([](ByteSpan page) { page[1] = 0; })},
        {"the owner of a data page", Severity::Harmful, "SPSTUD", "принадлежит другой таблице",
         onPage([](ByteSpan page) { page[4] ^= 1; })},
        {"the free field", Severity::Harmful, "SPSTUD", "неверно указано свободное место",
         onPage([](ByteSpan page) { page[2] ^= 1; })},
        {"too many rows", Severity::Harmful, "SPSTUD", "слишком много строк",
         onPage([](ByteSpan page) { page[13] = 1; })},
        {"a row before the slots", Severity::Harmful, "SPSTUD", "не на своём месте",
         onPage([row](ByteSpan page) { put16(page, slotOf(row), 20); }, row.row)},
        {"a row behind the one before it", Severity::Harmful, "SPSTUD", "не на своём месте",
         onPage([row](ByteSpan page) { put16(page, slotOf(row), 0xFFF); }, row.row)},
        {"an unknown flag of a row", Severity::Harmful, "SPSTUD", "неизвестная пометка",
         onPage([row](ByteSpan page) { page[slotOf(row) + 1] |= 0x20; }, row.row)},
        {"the owner of a long-value page", Severity::Harmful, "SPSTUD",
         "принадлежит другой таблице",
         [&file](Pager& p) {
             const PageNumber page = pagesOf(p, file.students().columnMaps.at(0).owned).at(0);
             p.modify(page)[4] ^= 1;
             return Place{page};
         }},
        {"the owner of a page of maps", Severity::Harmful, "SPSTUD", "принадлежит другой таблице",
         [&file, memos](Pager& p) {
             p.modify(memos)[4] ^= 1;
             return Place{memos, file.students().columnMaps.at(0).owned.row};
         }},
        {"a data page of zeros", Severity::Harmful, "SPSTUD", "должна быть страница данных",
         onPage([](ByteSpan page) { std::fill(page.begin(), page.end(), std::uint8_t{0}); })},
    };
}

TEST(PageDamage, IsFoundInDataPages)
{
    expectFound(dataPageDamages);
}

} // namespace
} // namespace jet::test
