#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jet::test {
namespace {

Place of(RowPointer row)
{
    return {row.page, row.row};
}

std::vector<Damage> objectDamages(const CheckedFile& file)
{
    const Definition& objects = file.definition("MSysObjects");
    const RowPointer students = file.object("SPSTUD");
    const auto put = [&objects, students](const char* field, std::uint32_t value, Place place) {
        return [=, &objects](Pager& p) {
            const ByteSpan page = p.modify(students.page);
            put32(page, fixedAt(page, students, objects, field), value);
            return place;
        };
    };
    const auto item = [&objects](ByteView page, RowPointer row, const char* field) {
        return itemAt(page, row, objects, field);
    };
    return {
        {"an id that is no definition", Severity::Harmful, "SPSTUD", "должно быть описание",
         put("Id", students.page, {students.page})},
        {"an id beyond the file", Severity::Harmful, "SPSTUD", "за концом файла",
         put("Id", 0xFFFFFF, {0xFFFFFF})},
        {"an id twice", Severity::Harmful, "MSysObjects", "номер объекта повторяется",
         put("Id", file.definition("SPGRUP").page, of(students))},
        {"a parent that does not exist", Severity::Harmful, "MSysObjects", "в который вложен",
         put("ParentId", 0x0F000009, of(students))},
        {"a NULL", Severity::Harmful, "MSysObjects", "не заполнено поле Name",
         [=, &objects](Pager& p) {
             const ByteSpan page = p.modify(students.page);
             page[maskAt(page, students, objects, "Name")] &=
                 static_cast<std::uint8_t>(~(1U << column(objects, "Name").id));
             return of(students);
         }},
        {"a name twice", Severity::Harmful, "MSysObjects", "имя «spgrup» повторяется",
         [=](Pager& p) {
             const ByteSpan page = p.modify(students.page);
             const Bytes name = {'s', 0, 'p', 0, 'g', 0, 'r', 0, 'u', 0, 'p', 0};
             std::ranges::copy(
                 name, page.begin() + static_cast<std::ptrdiff_t>(item(page, students, "Name")));
             return of(students);
         }},
        {"an owner that nobody knows", Severity::Harmful, "MSysObjects", "неизвестного владельца",
         [=](Pager& p) {
             const ByteSpan page = p.modify(students.page);
             page[item(page, students, "Owner")] ^= 0x10;
             return of(students);
         }},
        {"a system table of another name", Severity::Harmful, "MSysQueries",
         "системной таблицы нет",
         [=](Pager& p) {
             const RowPointer row = file.object("MSysQueries");
             const ByteSpan page = p.modify(row.page);
             page[item(page, row, "Name")] ^= 1;
             return Place{4};
         }},
        {"the catalogue's definition", Severity::Harmful, "MSysObjects", "описание таблицы",
         [](Pager& p) {
             p.modify(2)[0x0C] ^= 1;
             return Place{2};
         }},
        {"the catalogue's maps", Severity::Harmful, "MSysObjects", "не удалось прочесть",
         [](Pager& p) {
             put32(p.modify(2), 0x37, 0xFFFFFFFF);
             return Place{2};
         }},
    };
}

TEST(CatalogueDamage, IsFoundInObjects)
{
    expectFound(objectDamages);
}

std::vector<Damage> permissionDamages(const CheckedFile& file)
{
    const Definition& permissions = file.definition("MSysACEs");
    const PageNumber students = file.students().page;
    const RowPointer row = file.permissions(students).at(0);
    const auto put = [&permissions, row](const char* field, std::uint32_t value) {
        return [=, &permissions](Pager& p) {
            const ByteSpan page = p.modify(row.page);
            put32(page, fixedAt(page, row, permissions, field), value);
            return of(row);
        };
    };
    return {
        {"an object that does not exist", Severity::Harmful, "MSysACEs", "объект, которого нет",
         put("ObjectId", 0x0F000077)},
        {"rights that nobody knows", Severity::Harmful, "MSysACEs", "неизвестные права",
         put("ACM", 0x00F00000)},
        {"other rights than new tables get", Severity::Harmless, "SPSTUD", "не такие, как",
         [=](Pager& p) {
             put("ACM", 0x00000014)(p);
             return of(file.object("SPSTUD"));
         },
         Outside::Warning},
        {"an account that nobody knows", Severity::Harmful, "MSysACEs", "неизвестного пользователя",
         [=, &permissions](Pager& p) {
             const ByteSpan page = p.modify(row.page);
             page[itemAt(page, row, permissions, "SID")] ^= 0x10;
             return of(row);
         }},
        {"rights to be inherited from a table", Severity::Harmful, "MSysACEs", "наследуемые права",
         [=, &permissions](Pager& p) {
             const ByteSpan page = p.modify(row.page);
             page[maskAt(page, row, permissions, "FInheritable")] |=
                 static_cast<std::uint8_t>(1U << column(permissions, "FInheritable").id);
             return of(row);
         }},
        {"an account twice", Severity::Harmful, "MSysACEs", "указаны дважды",
         [=, &permissions](Pager& p) {
             const RowPointer other = file.permissions(students).at(1);
             const ByteSpan page = p.modify(row.page);
             const std::size_t from = itemAt(page, row, permissions, "SID");
             const std::size_t to = itemAt(page, other, permissions, "SID");
             page[to] = page[from];
             page[to + 1] = page[from + 1];
             return of(other);
         }},
        {"no rights at all", Severity::Harmful, "SPSTUD", "ни у кого нет прав",
         [=](Pager& p) {
             for (const RowPointer one : file.permissions(students))
                 p.modify(one.page)[slotOf(one) + 1] |= 0xC0;
             return of(file.object("SPSTUD"));
         }},
    };
}

TEST(CatalogueDamage, IsFoundInPermissions)
{
    expectFound(permissionDamages);
}

// Offset in page and page of the properties of SPGRUP, which no other object has.
Place findProperties(Pager& p)
{
    const Bytes mark = {'M', 'R', '2', 0};
    for (PageNumber number = 2; number < p.pageCount(); ++number) {
        const PageRef page = p.read(number);
        const ByteView bytes = page.bytes();
        const auto found = std::search(bytes.begin(), bytes.end(), mark.begin(), mark.end());
        if (found != bytes.end())
            return {number, static_cast<int>(found - bytes.begin())};
    }
    return {};
}

std::vector<Damage> propertyDamages(const CheckedFile& file)
{
    const Place place = of(file.object("SPGRUP"));
    const auto in = [place](const std::function<void(ByteSpan)>& change) {
        return [=](Pager& p) {
            const Place found = findProperties(p);
            change(p.modify(found.page).subspan(static_cast<std::size_t>(found.row)));
            return place;
        };
    };
    // Where the second block begins, that of the properties of NAIM.
    const auto second = [](ByteView blob) { return 4 + get32(blob, 4); };
    const char* const damaged = "повреждены свойства";
    return {
        {"the mark", Severity::Harmful, "MSysObjects", damaged,
         in([](ByteSpan blob) { blob[0] = 'X'; })},
        {"the length of a block", Severity::Harmful, "MSysObjects", damaged,
         in([](ByteSpan blob) { blob[4] ^= 1; })},
        {"a block of length 0", Severity::Harmful, "MSysObjects", damaged,
         in([](ByteSpan blob) { put32(blob, 4, 0); })},
        {"an unknown block", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { blob[second(blob) + 4] = 7; })},
        {"the length of a name", Severity::Harmful, "MSysObjects", damaged,
         in([](ByteSpan blob) { ++blob[10]; })},
        {"the length of the owner", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { ++blob[second(blob) + 6]; })},
        {"the length of a property", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { ++blob[second(blob) + 20]; })},
        {"the type of a property", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { blob[second(blob) + 23] = 8; })}, // a date of one byte
        {"the name of a property", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { blob[second(blob) + 24] = 99; })},
        {"the length of a value", Severity::Harmful, "MSysObjects", damaged,
         in([=](ByteSpan blob) { ++blob[second(blob) + 26]; })},
        {"a field that does not exist", Severity::Harmless, "SPGRUP", "поля, которого нет: XAIM",
         in([=](ByteSpan blob) { blob[second(blob) + 12] = 'X'; }), Outside::Warning},
    };
}

TEST(CatalogueDamage, IsFoundInProperties)
{
    expectFound(propertyDamages);
}

std::vector<Damage> relationDamages(const CheckedFile& file)
{
    const Definition& relations = file.definition("MSysRelationships");
    const RowPointer row = file.rows("MSysRelationships").at(0);
    const auto rename = [&relations, row](const char* field) {
        return [=, &relations](Pager& p) {
            const ByteSpan page = p.modify(row.page);
            page[itemAt(page, row, relations, field)] ^= 0x10;
            return of(row);
        };
    };
    return {
        {"a field that does not exist", Severity::Harmless, "MSysRelationships",
         "по полю, которого нет", rename("szColumn"), Outside::Warning},
        {"a referenced field that does not exist", Severity::Harmless, "MSysRelationships",
         "по полю, которого нет", rename("szReferencedColumn"), Outside::Warning},
        {"a relationship that is no object", Severity::Harmless, "MSysRelationships",
         "связи нет в каталоге",
         [=](Pager& p) {
             // The object becomes a query.
             const Definition& objects = file.definition("MSysObjects");
             const RowPointer object = file.object("SPGRUPSPSTUD");
             const ByteSpan page = p.modify(object.page);
             page[fixedAt(page, object, objects, "Type")] = 5;
             return of(row);
         },
         Outside::Warning},
    };
}

TEST(CatalogueDamage, IsFoundInRelations)
{
    expectFound(relationDamages);
}

} // namespace
} // namespace jet::test
