#include "jet/storage/rowview.h"

#include "jet/error.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/table.h"
#include "jet/storage/textcodec.h"
#include "jet/storage/valuecodec.h"

#include <bit>

namespace jet {

void RowView::throwDamaged() const
{
    throw Error(Fault::Damaged, "повреждена запись", m_page.number(), m_table->name());
}

ByteView RowView::item(const ColumnDefinition& column, std::size_t least) const
{
    const auto bytes = m_parts.item(column);
    if (!bytes || bytes->size() < least)
        throwDamaged();
    return *bytes;
}

bool RowView::isNull(int column) const
{
    return m_parts.isNull(at(column));
}

Value RowView::value(int column) const
{
    const ColumnDefinition& definition = at(column);
    if (definition.isBoolean())
        return m_parts.maskBit(definition);
    if (m_parts.isNull(definition))
        return {};
    if (!definition.isLongValue()) {
        const auto decoded = decodeItem(definition, item(definition));
        if (!decoded)
            throwDamaged();
        return *decoded;
    }
    if (definition.type() == FieldType::Memo) {
        std::string memo;
        text(column, memo);
        return memo;
    }
    Bytes bytes;
    longvalue::read(m_table->pager(), item(definition), bytes);
    return bytes;
}

std::int64_t RowView::integer(int column) const
{
    const ColumnDefinition& definition = at(column);
    switch (definition.type()) {
    case FieldType::Boolean:
        return m_parts.maskBit(definition) ? -1 : 0;
    case FieldType::Byte:
        return item(definition, 1)[0];
    case FieldType::Integer:
        return static_cast<std::int16_t>(get16(item(definition, 2), 0));
    case FieldType::Long:
        return static_cast<std::int32_t>(get32(item(definition, 4), 0));
    default:
        return value(column).toInteger();
    }
}

double RowView::number(int column) const
{
    const ColumnDefinition& definition = at(column);
    switch (definition.type()) {
    case FieldType::Single:
        return double{std::bit_cast<float>(get32(item(definition, 4), 0))};
    case FieldType::Double:
    case FieldType::Date:
        return getDouble(item(definition, 8), 0);
    case FieldType::Currency:
        return static_cast<double>(static_cast<std::int64_t>(get64(item(definition, 8), 0)))
               / 10000;
    default:
        return value(column).toDouble();
    }
}

void RowView::text(int column, std::string& out) const
{
    const ColumnDefinition& definition = at(column);
    const ByteView stored = item(definition);
    if (!definition.isLongValue())
        return appendStoredText(out, stored);
    Bytes data;
    longvalue::read(m_table->pager(), stored, data);
    appendStoredText(out, data);
}

} // namespace jet
