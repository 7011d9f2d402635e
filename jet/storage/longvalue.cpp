#include "jet/storage/longvalue.h"

#include "jet/error.h"
#include "jet/storage/datapage.h"
#include "jet/storage/textcodec.h"
#include "jet/text.h"

#include <algorithm>

namespace jet::longvalue {

namespace {

constexpr std::uint32_t kInline = 0x80000000;
constexpr std::uint32_t kSingleRow = 0x40000000;
constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::size_t kLink = 4; // in front of a chain row's data

// A row of a long-value page; the bytes are pinned by `page`.
struct StoredRow
{
    PageRef page;
    ByteView bytes;
};

[[noreturn]] void damaged(PageNumber page)
{
    throw Error(Fault::Damaged, "повреждено длинное значение", page);
}

StoredRow rowAt(Pager& pager, RowPointer pointer)
{
    StoredRow row{pager.read(pointer.page), {}};
    const ByteView page = row.page.bytes();
    if (!datapage::belongsTo(page, datapage::kLongValueOwner)
        || pointer.row >= datapage::rowCount(page))
        damaged(pointer.page);
    const datapage::Slot slot = datapage::slot(page, pointer.page, pointer.row);
    if (slot.state != 0)
        damaged(pointer.page);
    row.bytes = page.subspan(slot.offset, slot.length);
    return row;
}

Header headerOf(ByteView item)
{
    const auto header = decodeHeader(item);
    if (!header)
        throw Error(Fault::Damaged, "повреждено длинное значение");
    return *header;
}

void readChain(Pager& pager, const Header& header, Bytes& out)
{
    // The length bounds the walk, so that a chain in a circle ends too.
    if (header.length > std::size_t{pager.pageCount()} * kPageSize)
        damaged(header.row.page);
    const std::size_t end = out.size() + header.length;
    RowPointer next = header.row;
    while (!next.isNull()) {
        const StoredRow row = rowAt(pager, next);
        if (row.bytes.size() <= kLink || out.size() + row.bytes.size() - kLink > end)
            damaged(next.page);
        out.insert(out.end(), row.bytes.begin() + kLink, row.bytes.end());
        next = RowPointer::unpack(get32(row.bytes, 0));
    }
    if (out.size() != end)
        damaged(header.row.page);
}

Bytes itemOf(std::uint32_t place, std::size_t length, RowPointer row)
{
    Bytes item(kHeaderBytes);
    put32(item, 0, static_cast<std::uint32_t>(length) | place);
    put32(item, 4, row.packed());
    return item;
}

// Written from the last row to the first, so that each can name the one behind it.
RowPointer writeChain(RowSpace& space, ByteView data)
{
    constexpr std::size_t kPiece = kMostInRow - kLink;
    RowPointer next;
    for (std::size_t piece = (data.size() + kPiece - 1) / kPiece; piece-- > 0;) {
        const ByteView part =
            data.subspan(piece * kPiece, std::min(kPiece, data.size() - piece * kPiece));
        Bytes row(kLink);
        put32(row, 0, next.packed());
        row.insert(row.end(), part.begin(), part.end());
        next = space.addAlone(row);
    }
    return next;
}

} // namespace

std::optional<Header> decodeHeader(ByteView item)
{
    if (item.size() < kHeaderBytes)
        return std::nullopt;
    Header header;
    const std::uint32_t word = get32(item, 0);
    header.length = word & kLengthMask;
    header.row = RowPointer::unpack(get32(item, 4));
    if (word & kInline) {
        if (header.length > item.size() - kHeaderBytes)
            return std::nullopt;
        return header;
    }
    header.place = word & kSingleRow ? Header::Place::Row : Header::Place::Chain;
    if (header.row.isNull() && header.length > 0)
        return std::nullopt;
    return header;
}

void read(Pager& pager, ByteView item, Bytes& out)
{
    const Header header = headerOf(item);
    if (header.length == 0)
        return;
    if (header.place == Header::Place::Chain)
        return readChain(pager, header, out);
    StoredRow row;
    if (header.place == Header::Place::Row) {
        row = rowAt(pager, header.row);
        if (row.bytes.size() < header.length)
            damaged(header.row.page);
    } else {
        row.bytes = item.subspan(kHeaderBytes);
    }
    const ByteView data = row.bytes.first(header.length);
    out.insert(out.end(), data.begin(), data.end());
}

Data encode(const ColumnDefinition& column, const Value& value)
{
    if (const Bytes* bytes = value.as<Bytes>())
        return {*bytes, bytes->size() <= kInlineLimit};
    const Bytes utf16 = utf16FromUtf8(value.toText());
    // The engine decides by the uncompressed length, and compresses what is inline whatever
    // the column's flags say.
    const bool mayBeInline = utf16.size() <= kInlineLimit;
    const bool compress = mayBeInline || (column.compresses() && utf16.size() <= kMostCompressed);
    return {encodeText(utf16, compress), mayBeInline};
}

Bytes inlineItem(ByteView data)
{
    Bytes item = itemOf(kInline, data.size(), {});
    item.insert(item.end(), data.begin(), data.end());
    return item;
}

Bytes write(RowSpace& space, ByteView data)
{
    if (data.empty())
        return inlineItem(data);
    if (data.size() > kLengthMask)
        throw Error(Fault::Limit, "значение длиннее 1 ГБ");
    if (data.size() <= kMostInRow)
        return itemOf(kSingleRow, data.size(), space.add(data));
    return itemOf(0, data.size(), writeChain(space, data));
}

void release(Pager& pager, RowSpace& space, ByteView item)
{
    const Header header = headerOf(item);
    if (header.place == Header::Place::Inline)
        return;
    RowPointer next = header.row;
    // A row is deleted before the next is read: a chain in a circle meets a deleted row.
    while (!next.isNull()) {
        const StoredRow row = rowAt(pager, next);
        const RowPointer present = next;
        next = {};
        if (header.place == Header::Place::Chain) {
            if (row.bytes.size() < kLink)
                damaged(present.page);
            next = RowPointer::unpack(get32(row.bytes, 0));
        }
        space.erase(present);
    }
}

} // namespace jet::longvalue
