#pragma once

#include "jet/storage/bytes.h"
#include "jet/tabledef.h"
#include "jet/value.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

namespace jet3 {
class CodePage;
}

// The properties of a table and its columns, kept in MSysObjects.LvProp.
//
//   4D 52 32 00, then blocks:
//     u32  length of the block, this field included
//     u16  type: 0080 names, 0000 properties of the table, 0001 of one column
//     names:       repeated u16 byte length, UTF-16 name; referred to by position
//     properties:  u32 length of the owner field, itself included;
//                  u16 byte length, UTF-16 name of the column ("" for the table);
//                  then repeated
//                    u16 length, itself included; u8 DDL flag; u8 data type;
//                    u16 number of the name; u16 length of the value; the value
//
// What is not understood is kept as it is.
class Properties
{
public:
    Properties() = default;
    // Throws Error (Damaged) unless the blob parses to its very end. No bytes: no properties.
    explicit Properties(ByteView blob);
    // The blob of an Access 95/97 file, which differs in its mark 4B 4B 44 00 and in names and
    // texts being of 8-bit characters.
    static Properties fromJet3(ByteView blob, const jet3::CodePage& codePage);

    // The blob, no bytes when there is no property left.
    Bytes encode() const;

    bool columnFlag(std::string_view column, std::string_view property) const; // False if none
    std::string columnText(std::string_view column, std::string_view property) const; // "" if none
    bool hasColumn(std::string_view column, std::string_view property) const;
    void setColumnFlag(std::string_view column, std::string_view property, bool value);
    void setColumnText(std::string_view column, std::string_view property, std::string_view value);
    void removeColumn(std::string_view column);
    // Those of a new field that differ from what a column has without any.
    void addField(const Field& field);

private:
    struct Property
    {
        std::uint8_t ddlFlag;
        std::uint8_t type;
        std::uint16_t name;
        Bytes value;
    };
    struct Block
    {
        std::uint16_t type = 0;
        std::string owner;
        std::vector<Property> properties;
        Bytes raw; // content of a block of unknown type
    };

    using NameDecoder = std::function<std::string(ByteView)>;

    void parse(ByteView blob, ByteView magic, const NameDecoder& decode);
    void parseNames(ByteView content, const NameDecoder& decode);
    Block parseProperties(std::uint16_t type, ByteView content, const NameDecoder& decode);
    const Property* find(std::string_view column, std::string_view property) const;
    void set(std::string_view column, std::string_view property, std::uint8_t type, Bytes value);
    std::uint16_t nameNumber(std::string_view name);

    std::vector<std::string> m_names;
    std::vector<Block> m_blocks;
};

} // namespace jet
