#include "jet/storage/valuecodec.h"

#include "jet/error.h"
#include "jet/storage/textcodec.h"
#include "jet/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>

namespace jet {

namespace {

constexpr std::uint8_t kNegative = 0x80;
constexpr std::size_t kDecimalBytes = 17; // whatever length the column states
// Position of each printed byte of a GUID in the file.
constexpr std::array<std::uint8_t, 16> kGuidOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                     8, 9, 10, 11, 12, 13, 14, 15};

Guid decodeGuid(ByteView item)
{
    Guid guid;
    for (std::size_t i = 0; i < kGuidOrder.size(); ++i)
        guid.bytes[i] = item[kGuidOrder[i]];
    return guid;
}

Decimal decodeDecimal(const ColumnDefinition& column, ByteView item)
{
    Decimal decimal;
    decimal.negative = (item[0] & kNegative) != 0;
    decimal.scale = static_cast<std::uint8_t>(column.collation >> 8);
    for (std::size_t i = 0; i < decimal.magnitude.size(); ++i)
        decimal.magnitude[i] = get32(item, 1 + 4 * i);
    return decimal;
}

template <class T>
const T& get(const Value& value)
{
    const T* held = value.as<T>();
    assert(held);
    return *held;
}

void appendBits(Bytes& out, std::uint64_t bits, std::size_t bytes)
{
    for (std::size_t i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
}

void appendGuid(Bytes& out, const Guid& guid)
{
    for (const std::uint8_t position : kGuidOrder) // the order is its own inverse
        out.push_back(guid.bytes[position]);
}

void appendDecimal(Bytes& out, const Decimal& decimal)
{
    out.push_back(decimal.negative ? kNegative : 0);
    for (const std::uint32_t part : decimal.magnitude)
        appendBits(out, part, 4);
}

void append(Bytes& out, ByteView bytes)
{
    out.insert(out.end(), bytes.begin(), bytes.end());
}

void appendText(Bytes& out, const ColumnDefinition& column, const std::string& text)
{
    append(out, encodeText(utf16FromUtf8(text), column.compresses() && !column.isFixed()));
}

} // namespace

std::size_t storedSize(FieldType type)
{
    switch (type) {
    case FieldType::Boolean: // lives in the null mask
    case FieldType::Block:   // read as bytes, whatever there are
        return 0;
    case FieldType::Decimal:
        return kDecimalBytes;
    default:
        return static_cast<std::size_t>(fieldSize(type));
    }
}

std::optional<Value> decodeItem(const ColumnDefinition& column, ByteView item)
{
    const FieldType type = column.type();
    if (item.size() < storedSize(type))
        return std::nullopt;
    switch (type) {
    case FieldType::Byte:
        return std::int64_t{item[0]};
    case FieldType::Integer:
        return std::int64_t{static_cast<std::int16_t>(get16(item, 0))};
    case FieldType::Long:
        return std::int64_t{static_cast<std::int32_t>(get32(item, 0))};
    case FieldType::Currency:
        return Currency{static_cast<std::int64_t>(get64(item, 0))};
    case FieldType::Single:
        return double{std::bit_cast<float>(get32(item, 0))};
    case FieldType::Double:
        return getDouble(item, 0);
    case FieldType::Date:
        return DateTime{getDouble(item, 0)};
    case FieldType::Guid:
        return decodeGuid(item);
    case FieldType::Decimal:
        return decodeDecimal(column, item);
    case FieldType::Text: {
        std::string text;
        appendStoredText(text, item);
        return text;
    }
    default:
        return Bytes(item.begin(), item.end());
    }
}

void appendItem(Bytes& out, const ColumnDefinition& column, const Value& value)
{
    const FieldType type = column.type();
    switch (type) {
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return appendBits(out, static_cast<std::uint64_t>(get<std::int64_t>(value)),
                          storedSize(type));
    case FieldType::Currency:
        return appendBits(out, static_cast<std::uint64_t>(get<Currency>(value).tenThousandths), 8);
    case FieldType::Single:
        return appendBits(out, std::bit_cast<std::uint32_t>(static_cast<float>(get<double>(value))),
                          4);
    case FieldType::Double:
        return appendBits(out, std::bit_cast<std::uint64_t>(get<double>(value)), 8);
    case FieldType::Date:
        return appendBits(out, std::bit_cast<std::uint64_t>(get<DateTime>(value).days), 8);
    case FieldType::Guid:
        return appendGuid(out, get<Guid>(value));
    case FieldType::Decimal:
        return appendDecimal(out, get<Decimal>(value));
    case FieldType::Text:
        return appendText(out, column, get<std::string>(value));
    default:
        return append(out, get<Bytes>(value));
    }
}

} // namespace jet
