#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jet::test {
namespace {

constexpr std::size_t kNextPage = 4;

// The definition's second page.
PageNumber secondPage(Pager& p, const Definition& table)
{
    return get32(p.read(table.page).bytes(), kNextPage);
}

std::size_t realIndexOf(const Definition& table, const char* name)
{
    return std::ranges::find(table.logicalIndexes, name, &LogicalIndex::name)->real;
}

std::vector<Damage> headerDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const Definition& wide = file.definition("WIDE");
    const auto flip = [&students](std::size_t at, std::uint8_t bits = 1) {
        return [page = students.page, at, bits](Pager& p) {
            p.modify(page)[at] ^= bits;
            return Place{page};
        };
    };
    const char* const damaged = "повреждено описание таблицы";
    return {
        {"the length", Severity::Harmful, "SPSTUD", damaged, flip(8)},
        {"a huge length", Severity::Harmful, "SPSTUD", damaged, flip(11, 0x80)},
        {"the mark", Severity::Harmful, "SPSTUD", damaged, flip(0x0C)},
        {"the type of the table", Severity::Harmful, "SPSTUD", "неизвестный вид таблицы",
         flip(0x28, 0x20)},
        {"the number of fields", Severity::Harmful, "SPSTUD", damaged, flip(0x2D)},
        {"a huge number of fields", Severity::Harmful, "SPSTUD", damaged, flip(0x2E, 0x80)},
        {"a huge number of indexes", Severity::Harmful, "SPSTUD", damaged, flip(0x36, 0x80)},
        {"the free field of the page", Severity::Harmful, "SPSTUD",
         "свободное место страницы описания", flip(2)},
        {"the type of the page", Severity::Harmful, "SPSTUD", "должно быть описание", flip(0)},
        {"the second page's type", Severity::Harmful, "WIDE", "должно быть описание",
         [&wide](Pager& p) {
             p.modify(secondPage(p, wide))[0] = 8;
             return Place{wide.page};
         }},
        {"pages in a circle", Severity::Harmful, "WIDE", "по кругу",
         [&wide](Pager& p) {
             put32(p.modify(secondPage(p, wide)), kNextPage, wide.page);
             return Place{wide.page};
         }},
        {"a page too many", Severity::Harmful, "WIDE", "лишняя страница",
         [&wide, &students](Pager& p) {
             put32(p.modify(secondPage(p, wide)), kNextPage, students.page);
             return Place{students.page};
         }},
        {"a page beyond the file", Severity::Harmful, "WIDE", "за концом файла",
         [&wide](Pager& p) {
             put32(p.modify(wide.page), kNextPage, 0xFFFFFF);
             return Place{wide.page};
         }},
        {"the row counter", Severity::Harmless, "SPSTUD", "счётчик строк", flip(0x10),
         Outside::Error},
        {"the last number given out", Severity::Harmless, "SPSTUD", "последний выданный",
         [page = students.page](Pager& p) {
             put32(p.modify(page), 0x14, 3);
             return Place{page};
         },
         Outside::Warning},
    };
}

TEST(DefinitionDamage, IsFoundInHeadersAndPages)
{
    expectFound(headerDamages);
}

std::vector<Damage> columnDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const auto put = [&students](const char* field, std::size_t at, std::uint16_t value) {
        return [page = students.page, at = columnEntryAt(students, field) + at, value](Pager& p) {
            put16(p.modify(page), at, value);
            return Place{page};
        };
    };
    const auto lastByte = [&students](std::size_t back, std::uint16_t value) {
        return [page = students.page, back, value](Pager& p) {
            const ByteSpan bytes = p.modify(page);
            put16(bytes, get32(bytes, 8) - back, value);
            return Place{page};
        };
    };
    const char* const damaged = "повреждено описание таблицы";
    return {
        {"an id twice", Severity::Harmful, "SPSTUD", damaged,
         put("CITY", 5, column(students, "FAM").id)},
        {"an id above the highest", Severity::Harmful, "SPSTUD", damaged, put("CITY", 5, 77)},
        {"a slot twice", Severity::Harmful, "SPSTUD", damaged,
         put("CITY", 7, column(students, "FAM").slot)},
        {"too few slots", Severity::Harmful, "SPSTUD", "занижено число полей",
         [page = students.page](Pager& p) {
             const ByteSpan bytes = p.modify(page);
             put16(bytes, 0x2B, static_cast<std::uint16_t>(get16(bytes, 0x2B) - 1));
             return Place{page};
         }},
        {"fixed fields one over the other", Severity::Harmful, "SPSTUD", damaged,
         put("BORN", 0x15, column(students, "ID").fixedOffset)},
        {"the mark of a field", Severity::Harmful, "SPSTUD", damaged, put("BORN", 1, 1)},
        {"an unknown type", Severity::Harmful, "SPSTUD", "«BORN»: недопустимый тип",
         [page = students.page, at = columnEntryAt(students, "BORN")](Pager& p) {
             p.modify(page)[at] = 0x3E;
             return Place{page};
         }},
        {"an odd length of a text", Severity::Harmful, "SPSTUD", "«CITY»: недопустимый тип",
         put("CITY", 0x17, 61)},
        {"two fields of one name", Severity::Harmful, "SPSTUD", damaged,
         [&students](Pager& p) {
             const ByteSpan bytes = p.modify(students.page);
             const std::size_t at = columnEntryAt(students, "ID") + 25 * students.columns.size();
             put16(bytes, at + 2, 'L'); // ID, then FAM
             put16(bytes, at, 0);
             return Place{students.page};
         }},
        {"a long-value map of another field", Severity::Harmful, "SPSTUD", damaged,
         lastByte(12, 0)},
        {"no map of a long-value field", Severity::Harmful, "SPSTUD", "нет карт размещения",
         [&students](Pager& p) {
             const ByteSpan bytes = p.modify(students.page);
             const std::uint32_t length = get32(bytes, 8) - 10;
             put32(bytes, 8, length);
             put16(bytes, length - 2, 0xFFFF);
             put16(bytes, 2, static_cast<std::uint16_t>(get16(bytes, 2) + 10));
             return Place{students.page};
         }},
        {"no end mark", Severity::Harmful, "SPSTUD", damaged, lastByte(2, 0)},
    };
}

TEST(DefinitionDamage, IsFoundInFields)
{
    expectFound(columnDamages);
}

std::vector<Damage> indexDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const Definition& groups = file.definition("SPGRUP");
    const std::size_t key = realIndexOf(students, "PrimaryKey");
    const std::size_t byName = realIndexOf(students, "FAMBORN");
    const auto put = [](const Definition& table, std::size_t at, std::uint8_t value) {
        return [page = table.page, at, value](Pager& p) {
            p.modify(page)[at] = value;
            return Place{page};
        };
    };
    const auto logical = [&students](const char* name, std::size_t at) {
        const auto found = std::ranges::find(students.logicalIndexes, name, &LogicalIndex::name);
        return logicalIndexAt(students,
                              static_cast<std::size_t>(found - students.logicalIndexes.begin()))
               + at;
    };
    const char* const damaged = "повреждено описание таблицы";
    return {
        {"the mark of an index", Severity::Harmful, "SPSTUD", damaged,
         put(students, realIndexAt(students, key), 1)},
        {"a field that does not exist", Severity::Harmful, "SPSTUD", damaged,
         put(students, realIndexAt(students, key) + 4, 77)},
        {"a field twice", Severity::Harmful, "SPSTUD", "поле стоит в индексе дважды",
         put(students, realIndexAt(students, byName) + 7,
             static_cast<std::uint8_t>(column(students, "FAM").id))},
        {"an unknown flag", Severity::Harmful, "SPSTUD", "неизвестный вид индекса",
         put(students, realIndexAt(students, byName) + 0x2E, 0xC0)},
        {"an index that nobody uses", Severity::Harmful, "SPSTUD", "никто не пользуется",
         put(students, logical("FAMBORN", 8), static_cast<std::uint8_t>(key))},
        {"a number twice", Severity::Harmful, "SPSTUD", damaged,
         [=, &students](Pager& p) {
             const ByteSpan bytes = p.modify(students.page);
             bytes[logical("FAMBORN", 4)] = bytes[logical("PrimaryKey", 4)];
             return Place{students.page};
         }},
        {"a real index that does not exist", Severity::Harmful, "SPSTUD", damaged,
         put(students, logical("FAMBORN", 8), 9)},
        {"two primary keys", Severity::Harmful, "SPSTUD", "больше одного первичного ключа",
         put(students, logical("FAMBORN", 0x17), 1)},
        {"an unknown type", Severity::Harmful, "SPSTUD", "«FAMBORN»: неизвестный вид",
         put(students, logical("FAMBORN", 0x17), 7), Outside::Nothing},
        {"the partner's number", Severity::Harmful, "SPSTUD", "нет ответного индекса",
         put(students, logical("SPGRUPSPSTUD", 0x0D), 5)},
        {"the partner's table", Severity::Harmful, "SPGRUP", "нет ответного индекса",
         [&groups](Pager& p) {
             p.modify(groups.page)[logicalIndexAt(groups, 1) + 0x11] ^= 1;
             return Place{groups.page};
         }},
        {"the partner's side", Severity::Harmful, "SPGRUP", "нет ответного индекса",
         put(groups, logicalIndexAt(groups, 1) + 0x0C, 2)},
    };
}

TEST(DefinitionDamage, IsFoundInIndexes)
{
    expectFound(indexDamages);
}

} // namespace
} // namespace jet::test
