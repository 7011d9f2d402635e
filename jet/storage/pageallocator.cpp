#include "jet/storage/usagemap.h"

#include "jet/error.h"
#include "jet/storage/maprow.h"
#include "jet/storage/pagebits.h"

#include <algorithm>

namespace jet {

namespace {

using pagebits::kBitmapStart;
using pagebits::kPagesPerBitmap;

constexpr RowPointer kGlobalMap{1, 0};
constexpr std::size_t kInlineHeader = 5;
constexpr std::size_t kLengthStep = 4; // bytes, that is 32 pages
// The engine of Access reserves a few pages beyond the end of the file.
constexpr int kMostReserved = 256;

ByteView rowBytes(const PageRef& page)
{
    const maprow::Place place = maprow::locate(page.bytes(), kGlobalMap);
    return page.bytes().subspan(place.offset, place.length);
}

ByteSpan modifyRow(Pager& pager)
{
    const maprow::Place place = maprow::locate(pager.read(kGlobalMap.page).bytes(), kGlobalMap);
    return pager.modify(kGlobalMap.page).subspan(place.offset, place.length);
}

std::size_t references(ByteView row)
{
    return (row.size() - 1) / 4;
}

PageRef readBitmap(Pager& pager, PageNumber page)
{
    PageRef bitmap = pager.read(page);
    if (bitmap.type() != PageType::UsageBitmap)
        throw Error(Fault::Damaged, "общая карта размещения повреждена", page);
    return bitmap;
}

// Takes a page at the end of the file for a slice of the map; all its pages count as free
// but itself.
PageNumber appendBitmap(Pager& pager)
{
    const PageNumber number = pager.append();
    const ByteSpan bytes = pager.modify(number);
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xFF});
    put32(bytes, 0, 0);
    bytes[0] = static_cast<std::uint8_t>(PageType::UsageBitmap);
    bytes[1] = 1;
    return number;
}

void clearBit(Pager& pager, PageNumber page);

// The bitmap page for a slice, made when there is none yet.
PageNumber bitmapOf(Pager& pager, std::size_t slice)
{
    {
        const PageRef page = pager.read(kGlobalMap.page);
        const ByteView row = rowBytes(page);
        if (slice >= references(row))
            throw Error(Fault::Limit, "общая карта размещения переполнена", kGlobalMap.page);
        if (const PageNumber bitmap = get32(row, 1 + 4 * slice); bitmap != 0)
            return bitmap;
    }
    const PageNumber bitmap = appendBitmap(pager);
    put32(modifyRow(pager), 1 + 4 * slice, bitmap);
    clearBit(pager, bitmap);
    return bitmap;
}

// Pages below an inline map's start count as used, those behind its end as free.
void convertToReferences(Pager& pager)
{
    const PageRef page = pager.read(kGlobalMap.page);
    const ByteView view = rowBytes(page);
    const Bytes old(view.begin(), view.end());
    const PageNumber start = get32(old, 1);
    const ByteView bits = ByteView(old).subspan(kInlineHeader);
    const PageNumber oldCount = pager.pageCount();
    const ByteSpan row = modifyRow(pager);
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    row[0] = 1;
    for (PageNumber number = 0; number < oldCount; ++number) {
        const bool used =
            number < start
            || (number - start < bits.size() * 8 && !pagebits::test(bits, number - start));
        if (used)
            clearBit(pager, number);
    }
}

void clearInline(Pager& pager, PageNumber page)
{
    for (;;) {
        const ByteSpan row = modifyRow(pager);
        const PageNumber start = get32(row, 1);
        const std::size_t size = row.size() - kInlineHeader;
        if (page < start)
            return; // counts as used
        if (page - start < size * 8) {
            pagebits::set(row.subspan(kInlineHeader), page - start, false);
            return;
        }
        const ByteSpan mapPage = pager.modify(kGlobalMap.page);
        if (!maprow::lengthen(mapPage, kGlobalMap, kLengthStep)) {
            convertToReferences(pager);
            clearBit(pager, page);
            return;
        }
        const ByteSpan longer = modifyRow(pager);
        std::fill_n(longer.end() - kLengthStep, kLengthStep, std::uint8_t{0xFF});
    }
}

void clearBit(Pager& pager, PageNumber page)
{
    const bool byReference = rowBytes(pager.read(kGlobalMap.page))[0] == 1;
    if (!byReference) {
        clearInline(pager, page);
        return;
    }
    const PageNumber bitmap = bitmapOf(pager, page / kPagesPerBitmap);
    readBitmap(pager, bitmap);
    pagebits::set(pager.modify(bitmap).subspan(kBitmapStart), page % kPagesPerBitmap, false);
}

} // namespace

PageAllocator::PageAllocator(Pager& pager)
    : m_pager(pager)
    , m_rollbacks(pager.rollbackCount())
{}

PageNumber PageAllocator::allocate()
{
    if (m_rollbacks != m_pager.rollbackCount()) {
        m_rollbacks = m_pager.rollbackCount();
        m_firstCandidate = 0;
    }
    if (const std::optional<PageNumber> reused = nextFree(m_firstCandidate)) {
        m_firstCandidate = *reused + 1;
        setFree(*reused, false);
        const ByteSpan bytes = m_pager.modify(*reused);
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        return *reused;
    }
    m_firstCandidate = m_pager.pageCount();
    for (int reserved = 0; reserved <= kMostReserved; ++reserved) {
        const PageNumber page = m_pager.append();
        if (!isFree(page))
            continue; // reserved by the program that wrote the file: never given out twice
        setFree(page, false);
        return page;
    }
    throw Error(Fault::Damaged, "общая карта размещения повреждена", kGlobalMap.page);
}

void PageAllocator::release(PageNumber page, PageType type)
{
    if (page <= kGlobalMap.page || isFree(page))
        throw Error(Fault::Damaged, "страница освобождается дважды", page);
    m_pager.modify(page)[0] = static_cast<std::uint8_t>(type);
    setFree(page, true);
    m_firstCandidate = std::min(m_firstCandidate, page);
}

bool PageAllocator::isFree(PageNumber page) const
{
    const PageRef mapPage = m_pager.read(kGlobalMap.page);
    const ByteView row = rowBytes(mapPage);
    if (row[0] == 0) {
        const PageNumber start = get32(row, 1);
        const ByteView bits = row.subspan(kInlineHeader);
        return page >= start
               && (page - start >= bits.size() * 8 || pagebits::test(bits, page - start));
    }
    const std::size_t slice = page / kPagesPerBitmap;
    const PageNumber bitmap = slice < references(row) ? get32(row, 1 + 4 * slice) : 0;
    if (bitmap == 0)
        return true;
    return pagebits::test(readBitmap(m_pager, bitmap).bytes().subspan(kBitmapStart),
                          page % kPagesPerBitmap);
}

void PageAllocator::setFree(PageNumber page, bool free)
{
    if (!free) {
        clearBit(m_pager, page);
        return;
    }
    // Only pages with a cleared bit are ever set free, so the map covers them, unless an
    // inline map starts behind them: then the page is lost until the file is compacted.
    const ByteSpan row = modifyRow(m_pager);
    if (row[0] == 0) {
        const PageNumber start = get32(row, 1);
        if (page >= start)
            pagebits::set(row.subspan(kInlineHeader), page - start, true);
        return;
    }
    const PageNumber bitmap = bitmapOf(m_pager, page / kPagesPerBitmap);
    readBitmap(m_pager, bitmap);
    pagebits::set(m_pager.modify(bitmap).subspan(kBitmapStart), page % kPagesPerBitmap, true);
}

std::optional<PageNumber> PageAllocator::nextFree(PageNumber from) const
{
    const PageRef mapPage = m_pager.read(kGlobalMap.page);
    const ByteView row = rowBytes(mapPage);
    if (row[0] == 0) {
        // The number behind the last bit is the first one that no bit covers: free as well.
        const PageNumber start = get32(row, 1);
        const std::size_t bit =
            pagebits::next(row.subspan(kInlineHeader), from > start ? from - start : 0);
        const std::uint64_t page = std::max<std::uint64_t>(std::uint64_t{start} + bit, from);
        if (page < m_pager.pageCount())
            return static_cast<PageNumber>(page);
        return std::nullopt;
    }
    for (PageNumber page = from; page < m_pager.pageCount(); ++page) {
        if (isFree(page))
            return page;
    }
    return std::nullopt;
}

RowPointer PageAllocator::createMap(PageNumber mapPage)
{
    if (mapPage > kGlobalMap.page) {
        if (const auto row = maprow::append(m_pager.modify(mapPage), mapPage))
            return {mapPage, *row};
    }
    const PageNumber page = allocate();
    const ByteSpan bytes = m_pager.modify(page);
    maprow::initialise(bytes);
    return {page, *maprow::append(bytes, page)};
}

void PageAllocator::deleteMap(RowPointer row)
{
    maprow::erase(m_pager.modify(row.page), row);
    if (row.page != kGlobalMap.page && maprow::isEmpty(m_pager.read(row.page).bytes(), row.page))
        release(row.page, PageType::FreedData);
}

} // namespace jet
