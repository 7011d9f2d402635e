#include "jet/storage/indexkey.h"

#include "jet/error.h"
#include "jet/storage/sortkey.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <string>

namespace jet {
namespace {

constexpr std::uint8_t kAscendingNull = 0x00;
constexpr std::uint8_t kDescendingNull = 0xFF;
constexpr std::uint8_t kAscendingValue = 0x7F;
constexpr std::uint8_t kDescendingValue = 0x80;
constexpr std::size_t kPiece = 8; // binary keys go in pieces of 8 bytes
constexpr std::uint8_t kMoreFollows = 0x09;
constexpr std::uint16_t kGeneralCollation = 0x0409;

void appendBigEndian(Bytes& key, std::uint64_t value, int bytes)
{
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        key.push_back(static_cast<std::uint8_t>(value >> shift));
}

// Signed integers order as unsigned ones with the top bit inverted.
void appendInteger(Bytes& key, std::int64_t value, int bytes)
{
    appendBigEndian(key, static_cast<std::uint64_t>(value) ^ (1ULL << (8 * bytes - 1)), bytes);
}

// IEEE bits in an order that unsigned comparison keeps.
template <class Bits, class Number>
void appendFloat(Bytes& key, Number value)
{
    constexpr Bits kSign = Bits{1} << (8 * sizeof(Bits) - 1);
    const Bits bits = std::bit_cast<Bits>(value);
    appendBigEndian(key, (bits & kSign) != 0 ? ~bits : bits | kSign, sizeof(Bits));
}

void invertFrom(Bytes& key, std::size_t start)
{
    for (std::size_t i = start; i < key.size(); ++i)
        key[i] = static_cast<std::uint8_t>(~key[i]);
}

// The mark between pieces is not inverted in descending order, the length at the end is.
void appendBinary(Bytes& key, ByteView bytes, bool descending)
{
    for (std::size_t at = 0; at == 0 || at < bytes.size(); at += kPiece) {
        const std::size_t length = std::min(kPiece, bytes.size() - at);
        const bool last = at + kPiece >= bytes.size();
        const std::size_t start = key.size();
        key.insert(key.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   bytes.begin() + static_cast<std::ptrdiff_t>(at + length));
        key.resize(start + kPiece, 0);
        if (last)
            key.push_back(static_cast<std::uint8_t>(length));
        if (descending)
            invertFrom(key, start);
        if (!last)
            key.push_back(kMoreFollows);
    }
}

// The sign byte is the same in both orders; so descending indexes hold negative numbers in
// their own, ascending place. The engine has always done so.
void appendDecimal(Bytes& key, const Decimal& value, bool descending)
{
    key.push_back(value.negative ? 0x00 : 0xFF);
    const std::size_t start = key.size();
    for (const std::uint32_t word : value.magnitude)
        appendBigEndian(key, word, 4);
    if (value.negative != descending)
        invertFrom(key, start);
}

void appendText(Bytes& key, const ColumnDefinition& column, bool descending,
                const std::string& text, TwoLetterCount twoLetters)
{
    if (!hasKnownTextOrder(column)) {
        throw Error(Fault::Unsupported,
                    "порядок сортировки поля «" + column.name + "» не поддерживается");
    }
    const std::optional<Bytes> value = generalKey(text, twoLetters);
    if (!value) {
        throw Error(Fault::Unsupported, "в индексированное поле «" + column.name
                                            + "» нельзя записать знак, место которого в порядке "
                                              "сортировки неизвестно");
    }
    const std::size_t start = key.size();
    key.insert(key.end(), value->begin(), value->end());
    if (descending) {
        invertFrom(key, start);
        key.push_back(0x00);
    }
}

[[noreturn]] void throwWrongValue(const ColumnDefinition& column)
{
    throw Error(Fault::Type, "значение не подходит к индексированному полю «" + column.name + "»");
}

template <class T>
const T& require(const ColumnDefinition& column, const Value& value)
{
    const T* held = value.as<T>();
    if (!held)
        throwWrongValue(column);
    return *held;
}

std::int64_t tenThousandths(const Value& value)
{
    const auto* currency = value.as<Currency>();
    return currency ? currency->tenThousandths : std::llround(value.toDouble() * 10000.0);
}

// Types whose descending form is the ascending one with every byte inverted. False for the
// others.
bool appendNumber(Bytes& key, const ColumnDefinition& column, const Value& value)
{
    switch (column.storedType) {
    case 0x01:
        key.push_back(value.toBool() ? 0x00 : 0xFF);
        return true;
    case 0x02:
        key.push_back(static_cast<std::uint8_t>(value.toInteger()));
        return true;
    case 0x03:
        appendInteger(key, static_cast<std::int16_t>(value.toInteger()), 2);
        return true;
    case 0x04:
        appendInteger(key, static_cast<std::int32_t>(value.toInteger()), 4);
        return true;
    case 0x05:
        appendInteger(key, tenThousandths(value), 8);
        return true;
    case 0x06:
        appendFloat<std::uint32_t>(key, static_cast<float>(value.toDouble()));
        return true;
    case 0x07:
        appendFloat<std::uint64_t>(key, value.toDouble());
        return true;
    case 0x08:
        appendFloat<std::uint64_t>(key, value.toDate().days);
        return true;
    default:
        return false;
    }
}

} // namespace

bool hasKnownTextOrder(const ColumnDefinition& column)
{
    return column.collation == kGeneralCollation && column.collationVersion == 0;
}

void appendIndexKey(Bytes& key, const ColumnDefinition& column, bool descending, const Value& value,
                    TwoLetterCount twoLetters)
{
    if (value.isNull() && !column.isBoolean()) {
        key.push_back(descending ? kDescendingNull : kAscendingNull);
        return;
    }
    key.push_back(descending ? kDescendingValue : kAscendingValue);
    const std::size_t start = key.size();
    if (appendNumber(key, column, value)) {
        if (descending)
            invertFrom(key, start);
        return;
    }
    switch (column.storedType) {
    case 0x09:
        appendBinary(key, require<Bytes>(column, value), descending);
        return;
    case 0x0A:
    case 0x0C:
        appendText(key, column, descending, require<std::string>(column, value), twoLetters);
        return;
    case 0x0F:
        appendBinary(key, require<Guid>(column, value).bytes, descending);
        return;
    case 0x10:
        appendDecimal(key, require<Decimal>(column, value), descending);
        return;
    default:
        throw Error(Fault::Unsupported,
                    "по полю «" + column.name + "» нельзя построить индекс: не тот тип");
    }
}

Bytes encodeIndexKey(std::span<const ColumnDefinition* const> columns,
                     std::span<const bool> descending, std::span<const Value> values,
                     TwoLetterCount twoLetters)
{
    Bytes key;
    for (std::size_t i = 0; i < columns.size(); ++i)
        appendIndexKey(key, *columns[i], descending[i], values[i], twoLetters);
    return key;
}

} // namespace jet
