#include "jet/storage/datapage.h"

#include "jet/error.h"

#include <algorithm>
#include <cassert>

namespace jet::datapage {

namespace {

constexpr std::size_t slotAt(std::size_t row)
{
    return kSlots + kSlotBytes * row;
}

std::size_t offsetOf(ByteView page, std::size_t row)
{
    return get16(page, slotAt(row)) & kOffsetMask;
}

// Where row `row` ends: the beginning of the row before it.
std::size_t endOf(ByteView page, std::size_t row)
{
    return row == 0 ? kPageSize : offsetOf(page, row - 1);
}

std::size_t lowest(ByteView page)
{
    return endOf(page, rowCount(page));
}

void storeFreeBytes(ByteSpan page)
{
    put16(page, kFree, static_cast<std::uint16_t>(freeBytes(page)));
}

} // namespace

void throwMisplacedRow(PageNumber number)
{
    throw Error(Fault::Damaged, "запись выходит за пределы страницы данных", number);
}

void check(ByteView page, PageNumber number)
{
    if (page[0] != 1 || get16(page, kRowCount) > kMostRows)
        throw Error(Fault::Damaged, "недопустимая страница данных", number);
    for (std::size_t row = 0; row < rowCount(page); ++row)
        slot(page, number, row);
}

std::size_t freeBytes(ByteView page)
{
    return lowest(page) - slotAt(rowCount(page));
}

bool fits(ByteView page, std::size_t length)
{
    return rowCount(page) < kMostRows && length + kSlotBytes <= freeBytes(page);
}

bool isVacant(ByteView page)
{
    for (std::size_t row = 0; row < rowCount(page); ++row) {
        if ((get16(page, slotAt(row)) & kStateMask) != kDeleted)
            return false;
    }
    return true;
}

void initialise(ByteSpan page, std::uint32_t owner)
{
    std::fill(page.begin(), page.end(), std::uint8_t{0});
    page[0] = 1;
    page[1] = 1;
    put32(page, kOwner, owner);
    storeFreeBytes(page);
}

std::uint8_t addRow(ByteSpan page, std::size_t length, std::uint16_t state)
{
    assert(fits(page, length));
    const std::size_t row = rowCount(page);
    const std::size_t offset = lowest(page) - length;
    put16(page, slotAt(row), static_cast<std::uint16_t>(offset | state));
    put16(page, kRowCount, static_cast<std::uint16_t>(row + 1));
    storeFreeBytes(page);
    return static_cast<std::uint8_t>(row);
}

void resizeRow(ByteSpan page, std::size_t row, std::size_t length)
{
    const std::size_t offset = offsetOf(page, row);
    const std::size_t before = endOf(page, row) - offset;
    const std::size_t bottom = lowest(page);
    assert(length <= before || length - before <= freeBytes(page));
    if (length == before)
        return;
    // What keeps its place in the row moves together with the rows behind it.
    const std::size_t kept = std::min(length, before);
    std::uint8_t* const from = page.data() + bottom;
    if (length > before)
        std::memmove(from - (length - before), from, offset - bottom + kept);
    else
        std::memmove(from + (before - length), from, offset - bottom + kept);
    for (std::size_t i = row; i < rowCount(page); ++i) {
        const std::uint16_t entry = get16(page, slotAt(i));
        const std::size_t moved = (entry & kOffsetMask) + before - length;
        put16(page, slotAt(i), static_cast<std::uint16_t>((entry & ~kOffsetMask) | moved));
    }
    storeFreeBytes(page);
}

void setState(ByteSpan page, std::size_t row, std::uint16_t state)
{
    put16(page, slotAt(row), static_cast<std::uint16_t>(offsetOf(page, row) | state));
}

void eraseRow(ByteSpan page, std::size_t row)
{
    resizeRow(page, row, 0);
    setState(page, row, kDeleted);
}

void squeeze(ByteSpan page)
{
    for (std::size_t row = 0; row < rowCount(page); ++row) {
        if ((get16(page, slotAt(row)) & kStateMask) == kDeleted)
            resizeRow(page, row, 0);
    }
}

ByteSpan rowBytes(ByteSpan page, std::size_t row)
{
    return page.subspan(offsetOf(page, row), endOf(page, row) - offsetOf(page, row));
}

} // namespace jet::datapage
