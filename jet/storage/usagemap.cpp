#include "jet/storage/usagemap.h"

#include "jet/error.h"
#include "jet/storage/maprow.h"
#include "jet/storage/pagebits.h"

#include <algorithm>

namespace jet {

namespace {

using pagebits::kBitmapStart;
using pagebits::kPagesPerBitmap;

constexpr std::size_t kInlineHeader = 5;
constexpr std::size_t kLengthStep = 4;

// A map row decoded as far as its kind asks. The views show the pinned page.
struct MapRow
{
    MapRow(Pager& pager, RowPointer pointer)
        : page(pager.read(pointer.page))
        , place(maprow::locate(page.bytes(), pointer))
        , bytes(page.bytes().subspan(place.offset, place.length))
    {}

    bool byReference() const { return bytes[0] == 1; }
    PageNumber start() const { return get32(bytes, 1); }
    ByteView bits() const { return bytes.subspan(kInlineHeader); }
    std::uint64_t capacity() const { return std::uint64_t{bits().size()} * 8; }
    std::size_t references() const { return (bytes.size() - 1) / 4; }
    PageNumber reference(std::size_t slice) const { return get32(bytes, 1 + 4 * slice); }

    PageRef page;
    maprow::Place place;
    ByteView bytes;
};

PageRef readBitmap(Pager& pager, PageNumber page)
{
    PageRef bitmap = pager.read(page);
    if (bitmap.type() != PageType::UsageBitmap)
        throw Error(Fault::Damaged, "карта размещения ссылается не на страницу карты", page);
    return bitmap;
}

ByteSpan modifyRow(Pager& pager, RowPointer row)
{
    const maprow::Place place = maprow::locate(pager.read(row.page).bytes(), row);
    return pager.modify(row.page).subspan(place.offset, place.length);
}

void insideFile(const Pager& pager, std::uint64_t page, RowPointer row)
{
    if (page >= pager.pageCount())
        throw Error(Fault::Damaged, "карта размещения называет страницу за концом файла", row.page);
}

// Rewrites an inline row so that its window starts at `start`, keeping its members, all of
// which must lie in the new window.
void moveWindow(ByteSpan row, PageNumber start)
{
    const PageNumber oldStart = get32(row, 1);
    const ByteSpan bits = row.subspan(kInlineHeader);
    const Bytes old(bits.begin(), bits.end());
    std::fill(bits.begin(), bits.end(), std::uint8_t{0});
    for (std::size_t bit = pagebits::next(old, 0); bit < old.size() * 8;
         bit = pagebits::next(old, bit + 1))
        pagebits::set(bits, oldStart + bit - start, true);
    put32(row, 1, start);
}

// Makes an inline row hold `page` as a possible member: by moving its window, else by
// lengthening the row. False when only a row by reference can do.
bool widen(Pager& pager, RowPointer pointer, PageNumber page)
{
    PageNumber lowest = page;
    PageNumber highest = page;
    std::size_t size;
    {
        const MapRow row(pager, pointer);
        size = row.bits().size();
        for (std::size_t bit = pagebits::next(row.bits(), 0); bit < row.capacity();
             bit = pagebits::next(row.bits(), bit + 1)) {
            const PageNumber member = row.start() + static_cast<PageNumber>(bit);
            lowest = std::min(lowest, member);
            highest = std::max(highest, member);
        }
    }
    const PageNumber start = lowest & ~PageNumber{7};
    const std::size_t needed = (highest - start) / 8 + 1;
    if (needed > size) {
        const std::size_t steps = (needed - size + kLengthStep - 1) / kLengthStep;
        if (!maprow::lengthen(pager.modify(pointer.page), pointer, steps * kLengthStep))
            return false;
    }
    moveWindow(modifyRow(pager, pointer), start);
    return true;
}

void setInSlice(Pager& pager, PageAllocator& allocator, RowPointer pointer, PageNumber page)
{
    const std::size_t slice = page / kPagesPerBitmap;
    const MapRow row(pager, pointer);
    if (slice >= row.references()) {
        const std::size_t missing = (slice + 1 - row.references()) * 4;
        if (!maprow::lengthen(pager.modify(pointer.page), pointer, missing))
            throw Error(Fault::Limit, "карта размещения переполнена", pointer.page);
    }
    PageNumber bitmap = get32(modifyRow(pager, pointer), 1 + 4 * slice);
    if (bitmap == 0) {
        bitmap = allocator.allocate();
        const ByteSpan bytes = pager.modify(bitmap);
        bytes[0] = static_cast<std::uint8_t>(PageType::UsageBitmap);
        bytes[1] = 1;
        put32(modifyRow(pager, pointer), 1 + 4 * slice, bitmap);
    }
    readBitmap(pager, bitmap);
    pagebits::set(pager.modify(bitmap).subspan(kBitmapStart), page % kPagesPerBitmap, true);
}

} // namespace

UsageMap::UsageMap(Pager& pager, PageAllocator& allocator, RowPointer row)
    : m_pager(pager)
    , m_allocator(allocator)
    , m_row(row)
{}

bool UsageMap::contains(PageNumber page) const
{
    const MapRow row(m_pager, m_row);
    if (!row.byReference())
        return page >= row.start() && page - row.start() < row.capacity()
               && pagebits::test(row.bits(), page - row.start());
    const std::size_t slice = page / kPagesPerBitmap;
    if (slice >= row.references() || row.reference(slice) == 0)
        return false;
    const PageRef bitmap = readBitmap(m_pager, row.reference(slice));
    return pagebits::test(bitmap.bytes().subspan(kBitmapStart), page % kPagesPerBitmap);
}

void UsageMap::add(PageNumber page)
{
    insideFile(m_pager, page, m_row);
    bool inWindow;
    bool byReference;
    {
        const MapRow row(m_pager, m_row);
        byReference = row.byReference();
        inWindow = page >= row.start() && page - row.start() < row.capacity();
    }
    if (!byReference && (inWindow || widen(m_pager, m_row, page))) {
        const ByteSpan row = modifyRow(m_pager, m_row);
        pagebits::set(row.subspan(kInlineHeader), page - get32(row, 1), true);
        return;
    }
    if (!byReference) {
        const std::vector<PageNumber> members = pages();
        const ByteSpan row = modifyRow(m_pager, m_row);
        std::fill(row.begin(), row.end(), std::uint8_t{0});
        row[0] = 1;
        for (const PageNumber member : members)
            setInSlice(m_pager, m_allocator, m_row, member);
    }
    setInSlice(m_pager, m_allocator, m_row, page);
}

void UsageMap::remove(PageNumber page)
{
    if (!contains(page))
        return;
    const MapRow row(m_pager, m_row);
    if (!row.byReference()) {
        const ByteSpan bytes = modifyRow(m_pager, m_row);
        pagebits::set(bytes.subspan(kInlineHeader), page - row.start(), false);
        return;
    }
    const PageNumber bitmap = row.reference(page / kPagesPerBitmap);
    pagebits::set(m_pager.modify(bitmap).subspan(kBitmapStart), page % kPagesPerBitmap, false);
}

std::vector<PageNumber> UsageMap::pages() const
{
    std::vector<PageNumber> members;
    for (std::optional<PageNumber> page = next(0); page; page = next(*page + 1))
        members.push_back(*page);
    return members;
}

std::optional<PageNumber> UsageMap::next(PageNumber from) const
{
    const MapRow row(m_pager, m_row);
    std::optional<std::uint64_t> found;
    if (!row.byReference()) {
        const std::uint64_t first = from > row.start() ? from - row.start() : 0;
        const std::size_t bit =
            first < row.capacity() ? pagebits::next(row.bits(), first) : row.capacity();
        if (bit < row.capacity())
            found = std::uint64_t{row.start()} + bit;
    } else {
        for (std::size_t slice = from / kPagesPerBitmap; slice < row.references() && !found;
             ++slice, from = static_cast<PageNumber>(slice * kPagesPerBitmap)) {
            if (row.reference(slice) == 0)
                continue;
            const PageRef bitmap = readBitmap(m_pager, row.reference(slice));
            const std::size_t bit =
                pagebits::next(bitmap.bytes().subspan(kBitmapStart), from % kPagesPerBitmap);
            if (bit < kPagesPerBitmap)
                found = std::uint64_t{slice} * kPagesPerBitmap + bit;
        }
    }
    if (!found)
        return std::nullopt;
    insideFile(m_pager, *found, m_row);
    return static_cast<PageNumber>(*found);
}

void UsageMap::releaseBitmaps()
{
    std::vector<PageNumber> bitmaps;
    {
        const MapRow row(m_pager, m_row);
        if (!row.byReference())
            return;
        for (std::size_t slice = 0; slice < row.references(); ++slice) {
            if (row.reference(slice) != 0)
                bitmaps.push_back(row.reference(slice));
        }
    }
    for (const PageNumber bitmap : bitmaps)
        m_allocator.release(bitmap, PageType::UsageBitmap);
    const ByteSpan row = modifyRow(m_pager, m_row);
    std::fill(row.begin(), row.end(), std::uint8_t{0});
}

} // namespace jet
