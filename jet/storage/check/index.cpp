#include "jet/storage/check/index.h"

#include "jet/storage/indexkey.h"
#include "jet/storage/sortkeytable.h"
#include "jet/text.h"

#include <algorithm>
#include <span>
#include <utility>

namespace jet::check {
namespace {

ByteView keyOf(const Bytes& entry)
{
    return ByteView(entry).first(entry.size() - kRowPointerBytes);
}

RowPointer rowOf(const Bytes& entry)
{
    std::uint32_t packed = 0;
    for (const std::uint8_t byte : ByteView(entry).last(kRowPointerBytes))
        packed = packed << 8 | byte;
    return RowPointer::unpack(packed);
}

std::string placeOf(RowPointer row)
{
    return "страница " + std::to_string(row.page) + ", строка " + std::to_string(row.row);
}

std::string nameOf(const Definition& definition, std::size_t real)
{
    for (const LogicalIndex& index : definition.logicalIndexes) {
        if (index.real == real)
            return "индекс «" + index.name + "»";
    }
    return "индекс без имени";
}

} // namespace

Index::Index(Space& space, Findings& findings, const std::string& table,
             const Definition& definition, std::size_t real)
    : m_space(space)
    , m_findings(findings)
    , m_definition(definition)
    , m_index(definition.realIndexes[real])
    , m_owner{table, nameOf(definition, real) + " таблицы «" + table + "»",
              nameOf(definition, real)}
{
    for (const RealIndexColumn& column : m_index.columns) {
        m_columns.push_back(
            static_cast<std::size_t>(definition.columnPositionById(column.columnId)));
    }
    const bool primary = std::any_of(
        definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
        [&](const LogicalIndex& index) { return index.real == real && index.type == kPrimaryKey; });
    m_unique = primary || (m_index.flags & indexflag::kUnique) != 0;
    m_required = primary || (m_index.flags & indexflag::kRequired) != 0;
}

Bytes Index::entryOf(const CheckedRow& row, TwoLetterCount twoLetters) const
{
    Bytes entry;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        appendIndexKey(entry, m_definition.columns[m_columns[i]], m_index.columns[i].descending,
                       row.values[m_columns[i]], twoLetters);
    }
    for (const int shift : {24, 16, 8, 0})
        entry.push_back(static_cast<std::uint8_t>(row.pointer.packed() >> shift));
    return entry;
}

bool Index::hasTwoLetterCharacter(const CheckedRow& row) const
{
    return std::any_of(m_columns.begin(), m_columns.end(), [&](std::size_t column) {
        const auto* text = row.values[column].as<std::string>();
        for (std::size_t at = 0; text && at < text->size();) {
            if (charCode(nextCodePoint(*text, at)).kind == CharKind::TwoLetter)
                return true;
        }
        return false;
    });
}

void Index::expect(const CheckedRow& row)
{
    const auto isNull = [&](std::size_t column) { return row.values[column].isNull(); };
    if (std::any_of(m_columns.begin(), m_columns.end(),
                    [&](std::size_t column) { return row.unreadable[column]; })) {
        m_unknown.insert(row.pointer);
        return;
    }
    if (m_required && std::any_of(m_columns.begin(), m_columns.end(), isNull))
        m_findings.harmful(m_owner.table, m_owner.part + ": пустое значение недопустимо",
                           row.pointer.page, row.pointer.row);
    if ((m_index.flags & indexflag::kIgnoreNulls) != 0
        && std::all_of(m_columns.begin(), m_columns.end(), isNull))
        return;
    try {
        Bytes entry = entryOf(row, TwoLetterCount::Two);
        if (hasTwoLetterCharacter(row)) {
            Bytes other = entryOf(row, TwoLetterCount::One);
            if (other != entry)
                m_alternatives.emplace(std::move(other), entry);
        }
        m_expected.push_back(std::move(entry));
    } catch (const Error&) { // a text or an order without known keys
        m_unknown.insert(row.pointer);
    }
}

void Index::run()
{
    Tree tree(m_space, m_findings, m_owner, m_definition.page);
    tree.walk(m_index.root);
    m_findings.totals().indexEntries += tree.entries().size();
    checkPages(tree);
    checkOrder(tree);
    compare(tree);
    checkUnknownRows(tree);
}

void Index::checkPages(const Tree& tree)
{
    const std::vector<PageNumber> owned = m_space.ownedPages(m_index.pageMap, {}, m_owner);
    for (const PageNumber page : owned) {
        if (!tree.pages().contains(page) && tree.isComplete())
            m_findings.harmful(m_owner.table, m_owner.part + ": страница вне дерева", page);
    }
    for (const PageNumber page : tree.pages()) {
        if (!std::binary_search(owned.begin(), owned.end(), page))
            m_findings.harmful(m_owner.table, m_owner.part + ": страницы нет в карте", page);
    }
}

void Index::checkOrder(const Tree& tree)
{
    Bytes nullKey; // equal entries of rows with no value at all are allowed
    for (const RealIndexColumn& column : m_index.columns)
        nullKey.push_back(column.descending ? 0xFF : 0x00);
    const std::vector<Tree::Entry>& entries = tree.entries();
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const Bytes& before = entries[i - 1].bytes;
        const Bytes& entry = entries[i].bytes;
        if (before >= entry)
            m_findings.harmful(m_owner.table, m_owner.part + ": записи идут не по порядку",
                               entries[i].leaf);
        const ByteView key = keyOf(entry);
        if (m_unique && std::ranges::equal(keyOf(before), key)
            && !std::ranges::equal(key, nullKey)) {
            m_findings.harmful(m_owner.table, m_owner.part + ": значение повторяется",
                               rowOf(entry).page, rowOf(entry).row);
        }
    }
}

void Index::compare(const Tree& tree)
{
    std::sort(m_expected.begin(), m_expected.end());
    std::vector<bool> met(m_expected.size());
    const auto meet = [&](const Bytes& entry) {
        const auto place = std::lower_bound(m_expected.begin(), m_expected.end(), entry);
        if (place == m_expected.end() || *place != entry)
            return false;
        met[static_cast<std::size_t>(place - m_expected.begin())] = true;
        return true;
    };
    for (const Tree::Entry& entry : tree.entries()) {
        const auto alternative = m_alternatives.find(entry.bytes);
        const bool known =
            meet(alternative == m_alternatives.end() ? entry.bytes : alternative->second);
        if (!known && !m_unknown.contains(rowOf(entry.bytes)))
            m_findings.harmful(m_owner.table,
                               m_owner.part + ": запись не соответствует ни одной строке ("
                                   + placeOf(rowOf(entry.bytes)) + ")",
                               entry.leaf);
    }
    for (std::size_t i = 0; i < met.size() && tree.isComplete(); ++i) {
        if (!met[i])
            m_findings.harmful(m_owner.table, m_owner.part + ": для строки нет записи",
                               rowOf(m_expected[i]).page, rowOf(m_expected[i]).row);
    }
}

// Their keys cannot be compared, but each must have one entry.
void Index::checkUnknownRows(const Tree& tree)
{
    if (m_unknown.empty())
        return;
    std::map<RowPointer, int> entries;
    for (const Tree::Entry& entry : tree.entries())
        ++entries[rowOf(entry.bytes)];
    for (const RowPointer row : m_unknown) {
        if (entries[row] != 1 && tree.isComplete())
            m_findings.harmful(m_owner.table, m_owner.part + ": для строки нет записи", row.page,
                               row.row);
    }
    m_findings.harmless(m_owner.table,
                        m_owner.part + ": ключи не сравнить, порядок сортировки неизвестен (строк: "
                            + std::to_string(m_unknown.size()) + ")");
}

} // namespace jet::check
