#include "jet/error.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/rowdraft.h"
#include "jet/storage/table.h"
#include "jet/storage/tableimpl.h"
#include "jet/storage/valueconversion.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <random>

// Every change runs in the same order: convert, plan the indexes and make the row fit, all
// of which may refuse and write nothing; then long values, row, index entries, counters.

namespace jet {

namespace {

constexpr std::size_t kPointerBytes = 4; // of a moved row's slot

Guid randomGuid()
{
    std::random_device source;
    std::uniform_int_distribution<int> byte(0, 255);
    Guid guid;
    for (std::uint8_t& b : guid.bytes)
        b = static_cast<std::uint8_t>(byte(source));
    guid.bytes[6] = static_cast<std::uint8_t>((guid.bytes[6] & 0x0F) | 0x40); // version 4
    guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3F) | 0x80);
    return guid;
}

void putPointer(ByteSpan slot, RowPointer target)
{
    put32(slot, 0, target.packed());
}

} // namespace

// The next number of the counter. The definition's value may lag behind the rows, therefore
// they are looked through once.
std::int64_t Table::nextCounter()
{
    Impl& t = *m_impl;
    if (!t.highestCounter) {
        t.highestCounter = 0;
        for (TableScan rows = scan(); rows.next();) {
            if (!rows.row().isNull(t.parts->counter))
                t.highestCounter =
                    std::max(*t.highestCounter, rows.row().integer(t.parts->counter));
        }
    }
    const auto last = static_cast<std::int32_t>(t.definition->lastAutoNumber);
    const std::int64_t next =
        std::max<std::int64_t>(last, *t.highestCounter) + std::max(1u, t.definition->autoIncrement);
    if (next > std::numeric_limits<std::int32_t>::max())
        throw Error(Fault::Limit, "исчерпаны номера счётчика", m_name);
    return next;
}

std::vector<Value> Table::convertNew(std::span<const Value> values)
{
    const Definition& d = *m_impl->definition;
    std::vector<Value> row;
    row.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const ColumnDefinition& column = d.columns[i];
        Value value = convertValue(values[i], column, m_name);
        if (value.isNull() && static_cast<int>(i) == m_impl->parts->counter)
            value = nextCounter();
        else if (value.isNull() && (column.flags1 & columnflag::kAutoGuid) != 0)
            value = randomGuid();
        row.push_back(std::move(value));
    }
    return row;
}

void Table::requireColumns(std::span<const Value> values) const
{
    if (values.size() != m_impl->definition->columns.size())
        throw Error(Fault::Type, "число значений не равно числу полей", m_name);
}

void Table::setColumnRules(std::vector<std::uint16_t> required, std::vector<std::uint16_t> filled)
{
    m_impl->requiredColumns = std::move(required);
    m_impl->filledColumns = std::move(filled);
}

// A rule may be younger than the rows; they keep what they have.
void Table::checkRules(std::span<const Value> before, std::span<const Value> after) const
{
    const Definition& d = *m_impl->definition;
    const auto check = [&](std::uint16_t id, const Value& forbidden, const char* rule) {
        const int position = d.columnPositionById(id);
        if (position < 0)
            return;
        const auto column = static_cast<std::size_t>(position);
        if (after[column] == forbidden && (before.empty() || before[column] != forbidden))
            throw Error(Fault::NullValue, "поле «" + d.columns[column].name + "» " + rule, m_name);
    };
    for (const std::uint16_t id : m_impl->requiredColumns)
        check(id, Value(), "нельзя оставить пустым");
    for (const std::uint16_t id : m_impl->filledColumns)
        check(id, Value(""), "не допускает пустой строки");
}

void Table::storeRowCount(std::int64_t change)
{
    Definition& d = *m_impl->definition;
    const std::int64_t count = std::max<std::int64_t>(0, d.rowCount + change);
    d.rowCount = static_cast<std::uint32_t>(count);
    put32(m_pager.modify(d.page), kDefinitionRowCount, d.rowCount);
}

void Table::storeCounter(const Value& stored)
{
    Definition& d = *m_impl->definition;
    const std::int64_t value = stored.toInteger();
    if (stored.isNull() || value <= static_cast<std::int32_t>(d.lastAutoNumber))
        return;
    d.lastAutoNumber = static_cast<std::uint32_t>(value);
    put32(m_pager.modify(d.page), kDefinitionLastAutoNumber, d.lastAutoNumber);
}

void Table::followLookups(RowPointer row, std::span<const Value> before,
                          std::span<const Value> after)
{
    for (auto& lookup : m_impl->lookups) {
        const auto& columns = lookup.first;
        EqualityIndex& index = lookup.second;
        const auto keyIn = [&](std::span<const Value> values) {
            std::optional<std::uint64_t> key;
            for (const int position : columns) {
                const auto column = static_cast<std::size_t>(position);
                const auto next =
                    values.empty()
                        ? std::nullopt
                        : EqualityKey::of(m_impl->definition->columns[column], values[column]);
                if (!next)
                    return std::optional<std::uint64_t>();
                key = key ? EqualityKey::joined(*key, *next) : *next;
            }
            return key;
        };
        const auto oldKey = keyIn(before);
        const auto newKey = keyIn(after);
        if (oldKey == newKey)
            continue;
        if (oldKey)
            index.erase(*oldKey, row);
        if (newKey)
            index.insert(*newKey, row);
    }
}

RowPointer Table::insert(std::span<const Value> values)
{
    Impl& t = current();
    requireColumns(values);
    const std::vector<Value> row = convertNew(values);
    checkRules({}, row);
    const auto changes = t.parts->indexes.plan({}, row);
    RowDraft draft(*t.definition, m_name);
    for (std::size_t i = 0; i < row.size(); ++i)
        draft.set(i, row[i]);
    draft.makeFit();

    const RowPointer pointer = t.parts->rows.add(draft.finish(t.parts->longValues));
    t.pages.reset();
    t.parts->indexes.apply(changes, pointer, *t.definition);
    storeRowCount(+1);
    t.lastCounter = 0;
    if (t.parts->counter >= 0) {
        const Value& counter = row[static_cast<std::size_t>(t.parts->counter)];
        storeCounter(counter);
        t.lastCounter = counter.toInteger();
    }
    followLookups(pointer, {}, row);
    return pointer;
}

std::int64_t Table::lastCounter() const
{
    return m_impl->lastCounter;
}

std::vector<Value> Table::valuesOf(const RowView& row) const
{
    std::vector<Value> values;
    const std::size_t columns = m_impl->definition->columns.size();
    values.reserve(columns);
    for (std::size_t i = 0; i < columns; ++i)
        values.push_back(row.value(static_cast<int>(i)));
    return values;
}

void Table::update(RowPointer pointer, std::span<const Value> values)
{
    Impl& t = current();
    requireColumns(values);
    const RowView view = liveRow(pointer);
    const std::vector<Value> before = valuesOf(view);
    std::vector<Value> after;
    after.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool keepsCounter = values[i].isNull() && static_cast<int>(i) == t.parts->counter;
        const bool same = keepsCounter || values[i] == before[i];
        after.push_back(same ? before[i]
                             : convertValue(values[i], t.definition->columns[i], m_name));
    }
    if (after == before)
        return;
    checkRules(before, after);
    const auto changes = t.parts->indexes.plan(before, after);
    RowDraft draft(*t.definition, m_name);
    std::vector<std::pair<std::size_t, Bytes>> replaced; // items of old long values
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (after[i] == before[i]) {
            draft.keep(i, view);
            continue;
        }
        draft.set(i, after[i]);
        if (t.definition->columns[i].isLongValue() && !before[i].isNull()) {
            const ByteView item = view.storedItem(static_cast<int>(i));
            replaced.emplace_back(i, Bytes(item.begin(), item.end()));
        }
    }
    draft.makeFit();
    for (const auto& [column, item] : replaced)
        releaseLongValue(column, item);
    storeRow(view, draft.finish(t.parts->longValues));
    t.pages.reset();
    t.parts->indexes.apply(changes, pointer, *t.definition);
    if (t.parts->counter >= 0)
        storeCounter(after[static_cast<std::size_t>(t.parts->counter)]);
    followLookups(pointer, before, after);
}

void Table::releaseLongValue(std::size_t column, ByteView item)
{
    const auto space = m_impl->parts->longValues.find(column);
    if (space != m_impl->parts->longValues.end())
        longvalue::release(m_pager, space->second, item);
}

// Puts new bytes under the identity of an existing row: where they are, back home, or on
// another page with a pointer at home. There is never more than one pointer to follow.
void Table::storeRow(const RowView& view, ByteView bytes)
{
    RowSpace& rows = m_impl->parts->rows;
    const RowPointer home = view.pointer();
    const RowPointer moved = view.m_data;
    const auto write = [&](RowPointer at) { std::ranges::copy(bytes, rows.bytes(at).begin()); };
    if (rows.resize(home, bytes.size())) {
        write(home);
        if (!moved.isNull()) {
            rows.setState(home, 0);
            rows.erase(moved);
        }
        return;
    }
    if (!moved.isNull() && rows.resize(moved, bytes.size()))
        return write(moved);
    // A row of 3 bytes, of Booleans only, has no room for the pointer.
    if (rows.bytes(home).size() < kPointerBytes && !rows.resize(home, kPointerBytes))
        throw Error(Fault::Limit, "записи негде расти", home.page, m_name);
    const RowPointer target = rows.add(bytes, datapage::kMovedData);
    putPointer(rows.bytes(home), target);
    rows.setState(home, datapage::kMoved);
    if (!moved.isNull())
        rows.erase(moved);
}

void Table::erase(RowPointer pointer)
{
    Impl& t = current();
    const RowView view = liveRow(pointer);
    const std::vector<Value> before = valuesOf(view);
    const auto changes = t.parts->indexes.plan(before, {});
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (t.definition->columns[i].isLongValue() && !before[i].isNull()) {
            const ByteView item = view.storedItem(static_cast<int>(i));
            releaseLongValue(i, Bytes(item.begin(), item.end()));
        }
    }
    if (!view.m_data.isNull())
        t.parts->rows.erase(view.m_data);
    t.parts->rows.erase(pointer);
    t.pages.reset();
    t.parts->indexes.apply(changes, pointer, *t.definition);
    storeRowCount(-1);
    followLookups(pointer, before, {});
}

} // namespace jet
