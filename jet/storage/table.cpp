#include "jet/storage/table.h"

#include "jet/error.h"
#include "jet/storage/tableimpl.h"

#include <utility>

namespace jet {

namespace {

int counterPosition(const Definition& definition)
{
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        if ((definition.columns[i].flags1 & columnflag::kAutoNumber) != 0
            && definition.columns[i].type() == FieldType::Long)
            return static_cast<int>(i);
    }
    return -1;
}

// True when two definitions differ at most in their counters.
bool sameShape(const Definition& a, Definition b)
{
    b.rowCount = a.rowCount;
    b.lastAutoNumber = a.lastAutoNumber;
    if (a.realIndexes.size() != b.realIndexes.size())
        return false;
    for (std::size_t i = 0; i < a.realIndexes.size(); ++i)
        b.realIndexes[i].distinctKeys = a.realIndexes[i].distinctKeys;
    return encodeDefinition(a) == encodeDefinition(b);
}

} // namespace

Table::Impl::Parts::Parts(Pager& pager, PageAllocator& allocator, const Definition& definition,
                          const std::string& table)
    : rows(pager, allocator, definition.page, definition.ownedMap, definition.freeSpaceMap)
    , indexes(pager, allocator, definition, table)
    , counter(counterPosition(definition))
{
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const ColumnMaps* maps = definition.mapsOf(definition.columns[i].id);
        if (definition.columns[i].isLongValue() && maps)
            longValues.emplace(i, RowSpace(pager, allocator, datapage::kLongValueOwner, maps->owned,
                                           maps->freeSpace));
    }
}

Table::Table(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, std::string name)
    : m_pager(pager)
    , m_allocator(allocator)
    , m_name(std::move(name))
    , m_impl(std::make_unique<Impl>())
{
    m_impl->page = definitionPage;
}

Table::~Table() = default;

Table::Impl& Table::current() const
{
    Impl& t = *m_impl;
    if (t.definition && t.rollbacks == m_pager.rollbackCount())
        return t;
    Definition fresh;
    try {
        fresh = readDefinition(m_pager, t.page);
    } catch (const Error& error) {
        throw Error(error.fault(), error.what(), m_name);
    }
    t.rollbacks = m_pager.rollbackCount();
    t.pages.reset();
    t.lookups.clear();
    // Open scans hold on to the definition; they survive a rollback that did not change it.
    if (t.definition && sameShape(*t.definition, fresh)) {
        t.definition->rowCount = fresh.rowCount;
        t.definition->lastAutoNumber = fresh.lastAutoNumber;
        for (std::size_t i = 0; i < fresh.realIndexes.size(); ++i)
            t.definition->realIndexes[i].distinctKeys = fresh.realIndexes[i].distinctKeys;
        return t;
    }
    t.parts.reset();
    t.highestCounter.reset();
    t.definition = std::make_unique<Definition>(std::move(fresh));
    t.shape = RowShape::of(*t.definition);
    t.parts = std::make_unique<Impl::Parts>(m_pager, m_allocator, *t.definition, m_name);
    return t;
}

const Definition& Table::definition() const
{
    return *current().definition;
}

void Table::reload()
{
    m_impl->parts.reset();
    m_impl->definition.reset();
    current();
}

TableScan Table::scan()
{
    Impl& t = current();
    if (!t.pages)
        t.pages = std::make_shared<const std::vector<PageNumber>>(
            UsageMap(m_pager, m_allocator, t.definition->ownedMap).pages());
    TableScan scan;
    scan.m_table = this;
    scan.m_pages = t.pages;
    return scan;
}

bool Table::owns(PageNumber page) const
{
    return UsageMap(m_pager, m_allocator, current().definition->ownedMap).contains(page);
}

// Requires a page of this table and row < rowCount.
bool Table::show(RowView& view, const PageRef& page, std::size_t row) const
{
    const Impl& t = *m_impl;
    const PageNumber number = page.number();
    const datapage::Slot slot = datapage::slot(page.bytes(), number, row);
    if ((slot.state & datapage::kMovedData) != 0) // also of deleted rows
        return false;
    view.m_table = this;
    view.m_columns = t.definition->columns.data();
    view.m_pointer = {number, static_cast<std::uint8_t>(row)};
    view.m_data = {};
    ByteView bytes = page.bytes().subspan(slot.offset, slot.length);
    if (slot.state == datapage::kMoved) {
        bytes = followMoved(view, bytes);
    } else if (!view.m_page || view.m_page.number() != number) {
        view.m_page = page;
    }
    if (!view.m_parts.parse(bytes, t.shape))
        view.throwDamaged();
    return true;
}

// The data of a moved row, whose slot holds a pointer to them.
ByteView Table::followMoved(RowView& view, ByteView pointer) const
{
    const auto damaged = [&]() {
        return Error(Fault::Damaged, "перенесённая запись потеряна", view.m_pointer.page, m_name);
    };
    if (pointer.size() < 4)
        throw damaged();
    const RowPointer target = RowPointer::unpack(get32(pointer, 0));
    view.m_page = m_pager.read(target.page);
    const ByteView page = view.m_page.bytes();
    if (!datapage::belongsTo(page, m_impl->page) || target.row >= datapage::rowCount(page))
        throw damaged();
    const datapage::Slot slot = datapage::slot(page, target.page, target.row);
    if (slot.state != datapage::kMovedData)
        throw damaged();
    view.m_data = target;
    return page.subspan(slot.offset, slot.length);
}

std::optional<RowView> Table::find(RowPointer row)
{
    current();
    const PageRef page = m_pager.read(row.page);
    RowView view;
    if (!datapage::belongsTo(page.bytes(), m_impl->page)
        || row.row >= datapage::rowCount(page.bytes()) || !show(view, page, row.row))
        return std::nullopt;
    return view;
}

RowView Table::liveRow(RowPointer row)
{
    auto view = find(row);
    if (!view)
        throw Error(Fault::NotFound, "запись уже удалена", m_name);
    return *std::move(view);
}

std::int64_t Table::countRows()
{
    std::int64_t count = 0;
    for (TableScan rows = scan(); rows.next();)
        ++count;
    return count;
}

} // namespace jet
