#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

namespace jet::test {
namespace {

constexpr std::size_t kInRow = 1800; // bytes of UTF-8 of memos, see checkedfile.cpp
constexpr std::size_t kInChain = 18000;

Place of(RowPointer row)
{
    return {row.page, row.row};
}

std::vector<Damage> rowDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const RowPointer row = file.student(0);
    using Change = std::function<void(ByteSpan page, RowSpan span)>;
    const auto inRow = [row](const Change& change) {
        return [=](Pager& p) {
            const ByteSpan page = p.modify(row.page);
            change(page, spanOf(page, row));
            return of(row);
        };
    };
    const auto slots = [&students, row](ByteView page) {
        return offsetWordAt(page, row, students, "FAM") + 2U * column(students, "FAM").slot + 2;
    };
    const auto definition = [&students](const char* field, std::size_t at, std::uint8_t value) {
        return [&students, at = columnEntryAt(students, field) + at, value](Pager& p) {
            p.modify(students.page)[at] = value;
        };
    };
    return {
        {"too many columns", Severity::Harmful, "SPSTUD", "противоречит описанию",
         inRow([](ByteSpan page, RowSpan span) { put16(page, span.begin, 200); })},
        {"too many slots", Severity::Harmful, "SPSTUD", "противоречит описанию",
         inRow([=](ByteSpan page, RowSpan) { ++page[slots(page)]; })},
        {"more slots than the row has room for", Severity::Harmful, "SPSTUD",
         "противоречит описанию",
         inRow([=](ByteSpan page, RowSpan) { put16(page, slots(page), 0xFFFF); })},
        {"an end of the items behind the row", Severity::Harmful, "SPSTUD", "противоречит описанию",
         inRow([=](ByteSpan page, RowSpan) {
             put16(page, slots(page) - 2 - 2U * get16(page, slots(page)), 0xFFF);
         })},
        {"items in the fixed area", Severity::Harmful, "SPSTUD", "не по порядку",
         inRow([=](ByteSpan page, RowSpan) { put16(page, slots(page) - 2, 3); })},
        {"items in disorder", Severity::Harmful, "SPSTUD", "не по порядку",
         inRow([=, &students](ByteSpan page, RowSpan) {
             put16(page, offsetWordAt(page, row, students, "CITY"), 0);
         })},
        {"bits beyond the mask", Severity::Harmless, "SPSTUD", "лишние пометки",
         inRow([](ByteSpan page, RowSpan span) { page[span.end - 1] |= 0x80; }), Outside::Warning},
        {"a NULL with bytes", Severity::Harmless, "SPSTUD", "«CITY»: у пустого значения",
         inRow([=, &students](ByteSpan page, RowSpan) {
             const unsigned bit = 1U << column(students, "CITY").id % 8;
             page[maskAt(page, row, students, "CITY")] &= static_cast<std::uint8_t>(~bit);
         }),
         Outside::Warning},
        {"a text longer than its field", Severity::Harmful, "SPSTUD", "«CITY»: текст длиннее поля",
         [=](Pager& p) {
             definition("CITY", 0x17, 4)(p);
             return of(file.rows("SPSTUD")[0]);
         }},
        {"bytes longer than their field", Severity::Harmful, "SPSTUD",
         "«CODE»: значение длиннее поля",
         [=](Pager& p) {
             definition("CODE", 0x17, 2)(p);
             return of(file.rows("SPSTUD")[0]);
         }},
        {"half a character", Severity::Harmful, "SPSTUD", "«CITY»: текст обрывается",
         inRow([=, &students](ByteSpan page, RowSpan) {
             // One byte passes to the field behind.
             const std::size_t at = offsetWordAt(page, row, students, "CITY") - 2;
             put16(page, at, static_cast<std::uint16_t>(get16(page, at) - 1));
         })},
        {"half a character of a compressed text", Severity::Harmful, "SPSTUD",
         "«CITY»: текст обрывается", inRow([=, &students](ByteSpan page, RowSpan) {
             const std::size_t at = itemAt(page, row, students, "CITY");
             put16(page, at, 0xFEFF); // of 8 bytes; then a switch, two pairs and one byte
             page[at + 2] = 0;
         })},
    };
}

TEST(RowDamage, IsFoundInRows)
{
    expectFound(rowDamages);
}

std::vector<Damage> movedRowDamages(const CheckedFile& file)
{
    const RowPointer row = file.movedRows().at(0);
    const RowPointer other = file.movedRows().at(1);
    const auto pointerTo = [](ByteView page, RowPointer moved) {
        return RowPointer::unpack(get32(page, spanOf(page, moved).begin));
    };
    const auto redirect = [row](RowPointer target) {
        return [=](Pager& p) {
            const ByteSpan page = p.modify(row.page);
            put32(page, spanOf(page, row).begin, target.packed());
            return of(row);
        };
    };
    return {
        {"data that are no moved row", Severity::Harmful, "SPSTUD", "перенесённой строки нет",
         redirect(file.rows("SPSTUD")[0])},
        {"a row that does not exist", Severity::Harmful, "SPSTUD", "перенесённой строки нет",
         redirect({file.rows("SPSTUD")[0].page, 250})},
        {"itself", Severity::Harmful, "SPSTUD", "перенесённой строки нет", redirect(row)},
        {"a page of another table", Severity::Harmful, "SPSTUD", "на чужую страницу",
         redirect(file.rows("SPGRUP")[0])},
        {"a page beyond the file", Severity::Harmful, "SPSTUD", "на чужую страницу",
         redirect({0xFFFFFF, 1})},
        {"the data of another row", Severity::Harmful, "SPSTUD", "указывают двое",
         [=](Pager& p) {
             const RowPointer target = pointerTo(p.read(other.page).bytes(), other);
             redirect(target)(p);
             return of(std::max(row, other));
         }},
        {"data that nothing names", Severity::Harmful, "SPSTUD", "ничто не указывает",
         [=](Pager& p) {
             const ByteSpan page = p.modify(row.page);
             page[slotOf(row) + 1] |= 0xC0;
             return of(pointerTo(page, row));
         }},
    };
}

TEST(RowDamage, IsFoundInMovedRows)
{
    expectFound(movedRowDamages);
}

std::vector<Damage> longValueDamages(const CheckedFile& file)
{
    const Definition& students = file.students();
    const RowPointer inRow = file.student(kInRow);
    const RowPointer inChain = file.student(kInChain);
    const auto header = [&students](Pager& p, RowPointer row) {
        return p.modify(row.page).subspan(itemAt(p.read(row.page).bytes(), row, students, "NOTE"),
                                          12);
    };
    // The first row of a memo on its long-value page.
    const auto target = [=](Pager& p, RowPointer row) {
        return RowPointer::unpack(get32(header(p, row), 4));
    };
    const auto inHeader = [=](RowPointer row, std::size_t at, std::uint8_t flip) {
        return [=](Pager& p) {
            header(p, row)[at] ^= flip;
            return of(row);
        };
    };
    return {
        {"the length of an inline value", Severity::Harmful, "SPSTUD", "длинного значения",
         inHeader(file.student(20), 0, 1)},
        {"the length of a value in one row", Severity::Harmful, "SPSTUD", "не сходится длина",
         inHeader(inRow, 0, 1)},
        {"the length of a chain", Severity::Harmful, "SPSTUD", "не сходится длина",
         inHeader(inChain, 0, 1)},
        {"a huge length", Severity::Harmful, "SPSTUD", "не сходится длина",
         inHeader(inChain, 3, 0x3F)},
        {"an unknown place", Severity::Harmful, "SPSTUD", "заголовок длинного значения",
         inHeader(inChain, 3, 0xC0)},
        {"the tag of a chain", Severity::Harmful, "SPSTUD", "метка длинного значения",
         [=](Pager& p) {
             header(p, inChain)[8] ^= 1;
             return of(target(p, inChain));
         }},
        {"a foreign page", Severity::Harmful, "SPSTUD", "не на странице своего поля",
         [=](Pager& p) {
             put32(header(p, inRow), 4, file.rows("SPGRUP")[0].packed());
             return of(inRow);
         }},
        {"a row that does not exist", Severity::Harmful, "SPSTUD", "нет строки длинного значения",
         [=](Pager& p) {
             put32(header(p, inRow), 4, RowPointer{target(p, inRow).page, 240}.packed());
             return of(inRow);
         }},
        {"a deleted row", Severity::Harmful, "SPSTUD", "длинного значения удалена",
         [=](Pager& p) {
             const RowPointer row = target(p, inRow);
             p.modify(row.page)[slotOf(row) + 1] |= 0xC0;
             return of(inRow);
         }},
        {"a row used twice", Severity::Harmful, "SPSTUD", "занята дважды",
         [=](Pager& p) {
             const RowPointer other = file.student(kInRow, 1);
             put32(header(p, other), 4, target(p, inRow).packed());
             return of(other);
         }},
        {"a chain in a circle", Severity::Harmful, "SPSTUD", "занята дважды",
         [=](Pager& p) {
             const RowPointer row = target(p, inChain);
             const ByteSpan page = p.modify(row.page);
             put32(page, spanOf(page, row).begin, row.packed());
             return of(inChain);
         }},
        {"a chain that ends early", Severity::Harmful, "SPSTUD", "не сходится длина",
         [=](Pager& p) {
             const RowPointer row = target(p, inChain);
             const ByteSpan page = p.modify(row.page);
             put32(page, spanOf(page, row).begin, 0);
             return of(inChain);
         }},
        {"a value that nobody names", Severity::Harmless, "SPSTUD",
         "«NOTE»: ничья строка длинного значения",
         [=, &students](Pager& p) {
             const RowPointer row = target(p, inRow);
             const ByteSpan page = p.modify(inRow.page);
             const unsigned bit = 1U << column(students, "NOTE").id % 8;
             page[maskAt(page, inRow, students, "NOTE")] &= static_cast<std::uint8_t>(~bit);
             return of(row);
         },
         Outside::Warning},
    };
}

TEST(RowDamage, IsFoundInLongValues)
{
    expectFound(longValueDamages);
}

} // namespace
} // namespace jet::test
