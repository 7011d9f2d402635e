#pragma once

#include "jet/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace jet {

// DAO's data type numbers. They equal the codes in the file but for Decimal (0x10 there).
enum class FieldType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3, // 16 bit
    Long = 4,    // 32 bit
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12,
    Guid = 15,
    Block = 17, // 3992 opaque bytes, only in tables of Access itself
    Decimal = 20,
};

// DAO's Field.Attributes of a table definition. Updatable (32) belongs to record sets and
// is not reported here.
namespace attribute {
inline constexpr int kFixed = 1;
inline constexpr int kVariable = 2;
inline constexpr int kAutoIncrement = 16;
inline constexpr int kSystem = 8192;
inline constexpr int kHyperlink = 32768;
} // namespace attribute

// A column as DAO shows it.
struct Field
{
    std::string name = {};
    FieldType type = FieldType::Long;
    int size = 0; // characters for Text, bytes otherwise; 0 for Memo and LongBinary
    // To create a column, neither kFixed nor kVariable means as its type usually is.
    int attributes = 0;
    int ordinal = 0; // display position
    bool required = false;
    bool allowZeroLength = false;
    std::string defaultValue = {};         // Jet expression, "" if none
    std::uint8_t precision = 0, scale = 0; // Decimal only
};

struct IndexField
{
    std::string name = {};
    bool descending = false;
    friend bool operator==(const IndexField&, const IndexField&) = default;
};

struct Index
{
    std::string name = {};
    std::vector<IndexField> fields = {};
    bool primary = false;
    bool unique = false;
    bool required = false; // no NULL in any column
    bool ignoreNulls = false;
    bool foreign = false; // made by a relationship

    // DAO's notation, "+IDG;-NAIM".
    std::string fieldList() const;
};

// A table as DAO shows it. To create a table, fill name, fields and indexes.
struct TableDef
{
    std::string name = {};
    std::vector<Field> fields = {};  // in collection order: ordinal, ties by creation
    std::vector<Index> indexes = {}; // hidden partners of relationships left out
    bool system = false;
    bool hidden = false;
    DateTime created = {};
    DateTime updated = {};

    // Case-insensitive; null when there is none.
    const Field* field(std::string_view fieldName) const;
    const Index* index(std::string_view indexName) const;
};

// The size that DAO gives a type: 1, 2, 4, 8, 16; 0 for Memo and LongBinary; `size` itself
// for Text and Binary.
int fieldSize(FieldType type, int size = 0);

} // namespace jet
