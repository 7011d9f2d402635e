#include "jet/storage/indexpage.h"
#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jet::test {
namespace {

// Of a real index its pages: the root node, then the leaves from left to right.
struct Tree
{
    RealIndex index;
    std::size_t real = 0;

    PageNumber child(Pager& p, std::size_t i) const
    {
        IndexPage root;
        const PageRef page = p.read(index.root);
        root.load(page.bytes(), index.root, get32(page.bytes(), kIndexOwner));
        return root.child(i);
    }
    ByteSpan leaf(Pager& p, std::size_t i) const { return p.modify(child(p, i)); }
};

Tree treeOf(const CheckedFile& file, const char* name)
{
    const Definition& students = file.students();
    const std::size_t real =
        std::ranges::find(students.logicalIndexes, name, &LogicalIndex::name)->real;
    return {students.realIndexes.at(real), real};
}

std::size_t firstEnd(ByteView page)
{
    std::size_t end = 1;
    while ((page[kIndexMask + end / 8] >> end % 8 & 1) == 0)
        ++end;
    return end;
}

std::size_t lastEnd(ByteView page)
{
    return kIndexArea - get16(page, kIndexFree);
}

std::vector<Damage> pageDamages(const CheckedFile& file)
{
    const Tree tree = treeOf(file, "FAMBORN");
    const auto inLeaf = [tree](std::size_t leaf, const std::function<void(ByteSpan)>& change) {
        return [=](Pager& p) {
            change(tree.leaf(p, leaf));
            return Place{tree.child(p, leaf)};
        };
    };
    const auto inRoot = [tree](const std::function<void(ByteSpan)>& change) {
        return [=](Pager& p) {
            change(p.modify(tree.index.root));
            return Place{tree.index.root};
        };
    };
    return {
        {"the type of a page", Severity::Harmful, "SPSTUD", "не принадлежит индексу",
         inLeaf(1, [](ByteSpan page) { page[0] = 1; })},
        {"the second byte of a page", Severity::Harmful, "SPSTUD", "не принадлежит индексу",
         inLeaf(1, [](ByteSpan page) { page[1] = 0; })},
        {"the owner of a page", Severity::Harmful, "SPSTUD", "индексу другой таблицы",
         inLeaf(1, [](ByteSpan page) { page[kIndexOwner] ^= 1; })},
        {"the free field", Severity::Harmful, "SPSTUD", "«FAMBORN»: неверно указано свободное",
         inLeaf(1, [](ByteSpan page) { page[kIndexFree] ^= 1; })},
        {"an end behind the page", Severity::Harmful, "SPSTUD", "не помещается на странице",
         inLeaf(1, [](ByteSpan page) { page[kIndexMask + 452] |= 0x80; })},
        {"an entry of two bytes", Severity::Harmful, "SPSTUD", "не помещается на странице",
         inLeaf(1, [](ByteSpan page) { page[kIndexMask] |= 0x04; })},
        {"the prefix", Severity::Harmful, "SPSTUD", "общее начало записей",
         inLeaf(1, [](ByteSpan page) { put16(page, kIndexPrefix, 999); })},
        {"the level of a leaf", Severity::Harmful, "SPSTUD", "неверный уровень",
         inLeaf(1, [](ByteSpan page) { page[kIndexLevel] = 1; })},
        {"a child of a leaf", Severity::Harmful, "SPSTUD", "у листа есть вложенная",
         inLeaf(1, [](ByteSpan page) { page[kIndexTail] = 1; })},
        {"the link back", Severity::Harmful, "SPSTUD", "связаны не по порядку",
         inLeaf(1, [](ByteSpan page) { put32(page, kIndexPrevious, 0); })},
        {"the link to itself", Severity::Harmful, "SPSTUD", "связаны не по порядку",
         [tree](Pager& p) {
             put32(tree.leaf(p, 1), kIndexNext, tree.child(p, 1));
             return Place{tree.child(p, 2)};
         }},
        {"the level of a node", Severity::Harmful, "SPSTUD", "неверный уровень",
         inRoot([](ByteSpan page) { page[kIndexLevel] = 7; })},
        {"a node without level", Severity::Harmless, "SPSTUD", "не указан уровень",
         inRoot([](ByteSpan page) { page[kIndexLevel] = 0; }), Outside::Warning},
        {"a node entry", Severity::Harmful, "SPSTUD", "запись узла не равна",
         inRoot([](ByteSpan page) { page[kIndexEntries + 4] ^= 1; })},
        {"the node as its own child", Severity::Harmful, "SPSTUD", "двумя путями",
         inRoot([tree](ByteSpan page) { put32(page, kIndexTail, tree.index.root); })},
        {"a child beyond the file", Severity::Harmful, "SPSTUD", "за концом файла",
         [tree](Pager& p) {
             put32(p.modify(tree.index.root), kIndexTail, 0xFFFFFF);
             return Place{0xFFFFFF};
         }},
        {"a child of another index", Severity::Harmful, "SPSTUD", "владеют двое",
         [tree, &file](Pager& p) {
             const PageNumber other = treeOf(file, "PrimaryKey").index.root;
             put32(p.modify(tree.index.root), kIndexTail, other);
             return Place{other};
         }},
        {"the root", Severity::Harmful, "SPSTUD", "владеют двое: заголовок файла",
         [tree, &file](Pager& p) {
             const std::size_t at = realIndexAt(file.students(), tree.real) + 0x26;
             put32(p.modify(file.students().page), at, 0);
             return Place{};
         }},
        {"a page that is not in the map", Severity::Harmful, "SPSTUD", "страницы нет в карте",
         [tree](Pager& p) {
             setInMap(p, tree.index.pageMap, tree.child(p, 1), false);
             return Place{tree.child(p, 1)};
         }},
        {"a page that is not in the tree", Severity::Harmful, "SPSTUD", "страница вне дерева",
         [tree](Pager& p) {
             PageAllocator allocator(p);
             const PageNumber page = allocator.allocate();
             setInMap(p, tree.index.pageMap, page, true);
             return Place{page};
         }},
    };
}

TEST(IndexDamage, IsFoundInPages)
{
    expectFound(pageDamages);
}

std::vector<Damage> entryDamages(const CheckedFile& file)
{
    const Tree tree = treeOf(file, "FAMBORN");
    const std::size_t flags = realIndexAt(file.students(), tree.real) + 0x2E;
    const auto inLeaf = [tree](const std::function<void(ByteSpan)>& change) {
        return [=](Pager& p) {
            change(tree.leaf(p, 1));
            return Place{tree.child(p, 1)};
        };
    };
    const auto rowOfLast = [](ByteView page, std::size_t end) {
        std::uint32_t packed = 0;
        for (std::size_t i = 4; i > 0; --i)
            packed = packed << 8 | page[kIndexEntries + end - i];
        return RowPointer::unpack(packed);
    };
    return {
        {"a byte of a key", Severity::Harmful, "SPSTUD", "не соответствует ни одной строке",
         inLeaf([](ByteSpan page) { page[kIndexEntries + 12] ^= 1; })},
        {"a row pointer", Severity::Harmful, "SPSTUD", "не соответствует ни одной строке",
         inLeaf([](ByteSpan page) { page[kIndexEntries + firstEnd(page) - 1] ^= 0x80; })},
        {"entries in disorder", Severity::Harmful, "SPSTUD", "не по порядку",
         inLeaf([](ByteSpan page) { page[kIndexEntries] = 0x7E; })},
        {"a missing entry", Severity::Harmful, "SPSTUD", "для строки нет записи",
         [=](Pager& p) {
             // The last one of the last leaf.
             IndexPage root;
             const PageRef node = p.read(tree.index.root);
             root.load(node.bytes(), tree.index.root, file.students().page);
             const ByteSpan page = p.modify(root.child(root.count()));
             const std::size_t end = lastEnd(page);
             const RowPointer row = rowOfLast(page, end);
             page[kIndexMask + end / 8] &= static_cast<std::uint8_t>(~(1U << end % 8));
             IndexPage leaf;
             leaf.load(page, root.child(root.count()), file.students().page);
             put16(page, kIndexFree, static_cast<std::uint16_t>(kIndexArea - leaf.used()));
             return Place{row.page, row.row};
         }},
        {"a value of a row", Severity::Harmful, "SPSTUD", "для строки нет записи",
         [&file](Pager& p) {
             const RowPointer row = file.student(0);
             const ByteSpan page = p.modify(row.page);
             page[fixedAt(page, row, file.students(), "ID")] ^= 0x40;
             return Place{row.page, row.row};
         }},
        {"a row marked deleted", Severity::Harmful, "SPSTUD", "не соответствует ни одной строке",
         [&file](Pager& p) {
             const RowPointer row = file.rows("SPSTUD")[0]; // ID 1
             p.modify(row.page)[slotOf(row) + 1] |= 0xC0;
             return Place{treeOf(file, "PrimaryKey").index.root}; // one leaf
         }},
        {"an index become unique", Severity::Harmful, "SPSTUD", "«SPGRUPSPSTUD»: значение",
         [&file](Pager& p) {
             const Tree byGroup = treeOf(file, "SPGRUPSPSTUD");
             p.modify(file.students().page)[realIndexAt(file.students(), byGroup.real) + 0x2E] |= 1;
             // The second of the rows of group 1: IDG is 1 + i % 3, NULL where i % 10 is 3.
             const RowPointer row = file.rows("SPSTUD").at(0);
             RowPointer second;
             for (const RowPointer other : file.rows("SPSTUD")) {
                 const PageRef page = p.read(other.page);
                 const std::size_t at = fixedAt(page.bytes(), other, file.students(), "IDG");
                 if (other != row && get32(page.bytes(), at) == 1 && second.isNull())
                     second = other;
             }
             return Place{second.page, second.row};
         }},
        {"an index become required", Severity::Harmful, "SPSTUD", "пустое значение недопустимо",
         [&file, flags](Pager& p) {
             p.modify(file.students().page)[flags] |= 8;
             const RowPointer row = file.rows("SPSTUD")[0]; // BORN is NULL
             return Place{row.page, row.row};
         }},
    };
}

TEST(IndexDamage, IsFoundInEntries)
{
    expectFound(entryDamages);
}

} // namespace
} // namespace jet::test
