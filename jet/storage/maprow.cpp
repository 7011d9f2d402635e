#include "jet/storage/maprow.h"

#include "jet/error.h"

#include <cstring>

namespace jet::maprow {

namespace {

constexpr std::size_t kFree = 2;
constexpr std::size_t kCount = 12;
constexpr std::size_t kSlots = 14;
constexpr std::uint16_t kOffsetMask = 0x1FFF;
constexpr std::uint16_t kDeleted = 0xC000;
constexpr std::size_t kMaxRows = 255;

[[noreturn]] void damaged(PageNumber page)
{
    throw Error(Fault::Damaged, "повреждена страница карт размещения", page);
}

std::size_t slotAt(std::size_t row)
{
    return kSlots + 2 * row;
}

std::size_t offsetOf(ByteView page, std::size_t row)
{
    return get16(page, slotAt(row)) & kOffsetMask;
}

std::size_t endOf(ByteView page, std::size_t row)
{
    return row == 0 ? kPageSize : offsetOf(page, row - 1);
}

// Number of slots; throws unless the page is a sound data page.
std::size_t checkedCount(ByteView page, PageNumber number)
{
    const std::size_t count = get16(page, kCount);
    if (page[0] != static_cast<std::uint8_t>(PageType::Data) || page[1] != 1 || count > kMaxRows)
        damaged(number);
    for (std::size_t row = 0; row < count; ++row) {
        const std::size_t offset = offsetOf(page, row);
        if (offset > endOf(page, row) || offset < slotAt(count))
            damaged(number);
    }
    return count;
}

std::size_t lowest(ByteView page, std::size_t count)
{
    return count == 0 ? kPageSize : offsetOf(page, count - 1);
}

void updateFree(ByteSpan page, std::size_t count)
{
    put16(page, kFree, static_cast<std::uint16_t>(lowest(page, count) - slotAt(count)));
}

// Adds `by` (negative moves towards the page start) to the offsets of rows first..count-1
// and moves the bytes between them and `end`.
void shift(ByteSpan page, std::size_t first, std::size_t count, std::size_t end, std::ptrdiff_t by)
{
    const std::size_t from = lowest(page, count);
    std::memmove(page.data() + static_cast<std::ptrdiff_t>(from) + by, page.data() + from,
                 end - from);
    for (std::size_t row = first; row < count; ++row) {
        const std::uint16_t slot = get16(page, slotAt(row));
        put16(page, slotAt(row), static_cast<std::uint16_t>(slot + by));
    }
}

} // namespace

Place locate(ByteView page, RowPointer row)
{
    const std::size_t count = checkedCount(page, row.page);
    if (row.row >= count || (get16(page, slotAt(row.row)) & ~kOffsetMask) != 0)
        damaged(row.page);
    const std::size_t offset = offsetOf(page, row.row);
    const std::size_t length = endOf(page, row.row) - offset;
    if (length < 5 || page[offset] > 1)
        damaged(row.page);
    return {offset, length};
}

void initialise(ByteSpan page)
{
    page[0] = static_cast<std::uint8_t>(PageType::Data);
    page[1] = 1;
    updateFree(page, 0);
}

std::optional<std::uint8_t> append(ByteSpan page, PageNumber number)
{
    const std::size_t count = checkedCount(page, number);
    const std::size_t end = lowest(page, count);
    if (count == kMaxRows || end - slotAt(count) < kNewLength + 2)
        return std::nullopt;
    std::memset(page.data() + end - kNewLength, 0, kNewLength);
    put16(page, slotAt(count), static_cast<std::uint16_t>(end - kNewLength));
    put16(page, kCount, static_cast<std::uint16_t>(count + 1));
    updateFree(page, count + 1);
    return static_cast<std::uint8_t>(count);
}

bool lengthen(ByteSpan page, RowPointer row, std::size_t by)
{
    const Place place = locate(page, row);
    const std::size_t count = get16(page, kCount);
    if (lowest(page, count) - slotAt(count) < by)
        return false;
    const std::size_t end = place.offset + place.length;
    shift(page, row.row, count, end, -static_cast<std::ptrdiff_t>(by));
    std::memset(page.data() + end - by, 0, by);
    updateFree(page, count);
    return true;
}

void erase(ByteSpan page, RowPointer row)
{
    const Place place = locate(page, row);
    const std::size_t count = get16(page, kCount);
    shift(page, row.row, count, place.offset, static_cast<std::ptrdiff_t>(place.length));
    put16(page, slotAt(row.row),
          static_cast<std::uint16_t>(kDeleted | (place.offset + place.length)));
    updateFree(page, count);
}

bool isEmpty(ByteView page, PageNumber number)
{
    const std::size_t count = checkedCount(page, number);
    for (std::size_t row = 0; row < count; ++row) {
        if ((get16(page, slotAt(row)) & kDeleted) != kDeleted)
            return false;
    }
    return true;
}

} // namespace jet::maprow
