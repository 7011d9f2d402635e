#include "jet/storage/check/properties.h"

#include "jet/error.h"
#include "jet/storage/definition.h"
#include "jet/storage/valuecodec.h"
#include "jet/text.h"

namespace jet::check {
namespace {

constexpr std::uint32_t kMagic = 0x0032524D; // "MR2"
constexpr std::uint16_t kNameBlock = 0x80;
constexpr std::uint16_t kObjectBlock = 0;
constexpr std::uint16_t kColumnBlock = 1;
constexpr std::size_t kBlockHeader = 6;
constexpr std::size_t kOwnerHeader = 6;
constexpr std::size_t kPropertyHeader = 8;

[[noreturn]] void damaged()
{
    throw Error(Fault::Damaged, "повреждены свойства объекта");
}

void require(bool sound)
{
    if (!sound)
        damaged();
}

ByteView take(ByteView& bytes, std::size_t size)
{
    require(size <= bytes.size());
    const ByteView taken = bytes.first(size);
    bytes = bytes.subspan(size);
    return taken;
}

std::size_t countNames(ByteView block)
{
    std::size_t count = 0;
    for (; !block.empty(); ++count)
        take(block, get16(take(block, 2), 0));
    return count;
}

bool hasSoundSize(std::uint8_t type, std::size_t size)
{
    ColumnDefinition column;
    column.storedType = type;
    switch (column.type()) {
    case FieldType::Boolean: // Access itself writes some in four bytes
        return size == 1 || size == 4;
    case FieldType::Integer:
        return size == 2 || size == 4;
    case FieldType::Text:
    case FieldType::Memo:
        return size % 2 == 0;
    default:
        return storedSize(column.type()) == 0 || size == storedSize(column.type());
    }
}

//   0 u16 length   2 u8 DDL flag   3 u8 data type   4 u16 name   6 u16 length of the value
void checkProperty(ByteView& block, std::size_t names)
{
    require(block.size() >= kPropertyHeader);
    const std::size_t size = get16(block, 6);
    require(get16(block, 0) == kPropertyHeader + size);
    require(get16(block, 4) < names);
    require(hasSoundSize(block[3], size));
    take(block, kPropertyHeader + size);
}

// Gives the owner: the name of a column, "" for the object itself.
std::string checkProperties(ByteView block, std::size_t names)
{
    require(block.size() >= kOwnerHeader);
    const std::size_t length = get16(block, 4);
    require(get32(block, 0) == kOwnerHeader + length);
    take(block, kOwnerHeader);
    std::string owner = utf8FromUtf16(take(block, length));
    while (!block.empty())
        checkProperty(block, names);
    return owner;
}

} // namespace

std::vector<std::string> checkPropertyBlob(ByteView blob)
{
    std::vector<std::string> columns;
    if (blob.empty())
        return columns;
    require(get32(take(blob, sizeof kMagic), 0) == kMagic);
    std::size_t names = 0;
    while (!blob.empty()) {
        require(blob.size() >= kBlockHeader && get32(blob, 0) >= kBlockHeader);
        const std::uint16_t type = get16(blob, 4);
        const ByteView block = take(blob, get32(blob, 0)).subspan(kBlockHeader);
        if (type == kNameBlock)
            names += countNames(block);
        else if (type == kColumnBlock)
            columns.push_back(checkProperties(block, names));
        else if (type == kObjectBlock)
            checkProperties(block, names);
        else
            damaged();
    }
    return columns;
}

} // namespace jet::check
