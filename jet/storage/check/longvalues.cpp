#include "jet/storage/check/longvalues.h"

#include "jet/storage/datapage.h"
#include "jet/storage/longvalue.h"

#include <algorithm>
#include <utility>

namespace jet::check {
namespace {

constexpr std::size_t kTag = 8;  // in the row's item
constexpr std::size_t kLink = 4; // in front of a chain row's data

[[noreturn]] void damaged(const char* what, PageNumber page)
{
    throw Error(Fault::Damaged, what, page);
}

} // namespace

LongValues::LongValues(Space& space, Findings& findings, Owner owner, std::vector<PageNumber> pages)
    : m_space(space)
    , m_findings(findings)
    , m_owner(std::move(owner))
    , m_pages(std::move(pages))
{}

LongValues::Piece LongValues::use(RowPointer row)
{
    if (!std::binary_search(m_pages.begin(), m_pages.end(), row.page))
        damaged("длинное значение лежит не на странице своего поля", row.page);
    Piece piece{m_space.dataPage(row.page, datapage::kLongValueOwner, m_owner.table), {}};
    const ByteView page = piece.page.bytes();
    if (row.row >= datapage::rowCount(page))
        damaged("нет строки длинного значения", row.page);
    const datapage::Slot slot = datapage::slot(page, row.page, row.row);
    if (slot.state != 0)
        damaged("строка длинного значения удалена", row.page);
    if (!m_used.insert(row).second)
        damaged("строка длинного значения занята дважды", row.page);
    piece.bytes = page.subspan(slot.offset, slot.length);
    return piece;
}

Bytes LongValues::read(ByteView item)
{
    const auto header = longvalue::decodeHeader(item);
    if (!header)
        throw Error(Fault::Damaged, "повреждён заголовок длинного значения");
    Bytes out;
    switch (header->place) {
    case longvalue::Header::Place::Inline: {
        const ByteView data = item.subspan(longvalue::kHeaderBytes);
        out.assign(data.begin(), data.end());
        break;
    }
    case longvalue::Header::Place::Row: {
        const Piece piece = use(header->row);
        out.assign(piece.bytes.begin(), piece.bytes.end());
        break;
    }
    case longvalue::Header::Place::Chain:
        readChain(header->row, get32(item, kTag), header->length, out);
        break;
    }
    if (out.size() != header->length)
        damaged("не сходится длина длинного значения", header->row.page);
    return out;
}

void LongValues::readChain(RowPointer first, std::uint32_t tag, std::size_t length, Bytes& out)
{
    for (RowPointer row = first; !row.isNull();) {
        const Piece piece = use(row); // which also ends a chain that runs in a circle
        if (row == first && get32(piece.page.bytes(), datapage::kTag) != tag)
            m_findings.harmful(m_owner.table, "не сходится метка длинного значения", row.page,
                               row.row);
        if (piece.bytes.size() < kLink || out.size() + piece.bytes.size() - kLink > length)
            damaged("не сходится длина длинного значения", row.page);
        out.insert(out.end(), piece.bytes.begin() + kLink, piece.bytes.end());
        row = RowPointer::unpack(get32(piece.bytes, 0));
    }
}

void LongValues::reportUnused()
{
    for (const PageNumber number : m_pages) {
        m_findings.attempt(
            m_owner.table,
            [&] {
                const PageRef page =
                    m_space.dataPage(number, datapage::kLongValueOwner, m_owner.table);
                for (std::size_t i = 0; i < datapage::rowCount(page.bytes()); ++i) {
                    const RowPointer row{number, static_cast<std::uint8_t>(i)};
                    const bool live =
                        datapage::slot(page.bytes(), number, i).state != datapage::kDeleted;
                    if (live && !m_used.contains(row)) {
                        m_findings.harmless(m_owner.table,
                                            m_owner.part + ": ничья строка длинного значения",
                                            number, row.row);
                    }
                }
            },
            number);
    }
}

} // namespace jet::check
