#include "jet/storage/properties.h"

#include "jet/error.h"
#include "jet/storage/jet3/codepage.h"
#include "jet/text.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

constexpr std::array<std::uint8_t, 4> kMagic = {0x4D, 0x52, 0x32, 0x00};
constexpr std::array<std::uint8_t, 4> kJet3Magic = {0x4B, 0x4B, 0x44, 0x00};
constexpr std::uint16_t kNameBlock = 0x80;
constexpr std::uint16_t kTableBlock = 0;
constexpr std::uint16_t kColumnBlock = 1;
constexpr std::size_t kBlockHeader = 6;
constexpr std::size_t kPropertyHeader = 8;
constexpr std::uint8_t kEngineProperty = 1;

// Takes fields off the front of a view, each checked against what is left.
class Reader
{
public:
    explicit Reader(ByteView bytes)
        : m_bytes(bytes)
    {}
    bool atEnd() const { return m_bytes.empty(); }
    ByteView take(std::size_t size)
    {
        if (size > m_bytes.size())
            throw Error(Fault::Damaged, "повреждены свойства таблицы");
        const ByteView taken = m_bytes.first(size);
        m_bytes = m_bytes.subspan(size);
        return taken;
    }
    std::uint8_t u8() { return take(1)[0]; }
    std::uint16_t u16() { return get16(take(2), 0); }
    std::uint32_t u32() { return get32(take(4), 0); }
    ByteView name() { return take(u16()); }
    // A part whose length field, already taken, counts `counted` bytes of itself.
    Reader part(std::size_t length, std::size_t counted)
    {
        if (length < counted)
            throw Error(Fault::Damaged, "повреждены свойства таблицы");
        return Reader(take(length - counted));
    }
    ByteView rest() { return take(m_bytes.size()); }

private:
    ByteView m_bytes;
};

void add16(Bytes& out, std::size_t value)
{
    out.push_back(static_cast<std::uint8_t>(value));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void add32(Bytes& out, std::size_t value)
{
    add16(out, value);
    add16(out, value >> 16);
}

void addBytes(Bytes& out, ByteView bytes)
{
    out.insert(out.end(), bytes.begin(), bytes.end());
}

void addName(Bytes& out, std::string_view name)
{
    const Bytes utf16 = utf16FromUtf8(name);
    add16(out, utf16.size());
    addBytes(out, utf16);
}

void addBlock(Bytes& out, std::uint16_t type, ByteView content)
{
    add32(out, kBlockHeader + content.size());
    add16(out, type);
    addBytes(out, content);
}

} // namespace

Properties::Properties(ByteView blob)
{
    parse(blob, kMagic, utf8FromUtf16);
}

Properties Properties::fromJet3(ByteView blob, const jet3::CodePage& codePage)
{
    Properties properties;
    properties.parse(blob, kJet3Magic,
                     [&codePage](ByteView text) { return codePage.toUtf8(text); });
    for (Block& block : properties.m_blocks) {
        for (Property& property : block.properties) {
            const auto type = static_cast<FieldType>(property.type);
            if (type == FieldType::Text || type == FieldType::Memo)
                property.value = utf16FromUtf8(codePage.toUtf8(property.value));
        }
    }
    return properties;
}

void Properties::parse(ByteView blob, ByteView magic, const NameDecoder& decode)
{
    if (blob.empty())
        return;
    Reader reader(blob);
    if (!std::ranges::equal(reader.take(magic.size()), magic))
        throw Error(Fault::Damaged, "повреждены свойства таблицы");
    while (!reader.atEnd()) {
        Reader block = reader.part(reader.u32(), 4);
        const std::uint16_t type = block.u16();
        const ByteView content = block.rest();
        if (type == kNameBlock)
            parseNames(content, decode);
        else if (type == kTableBlock || type == kColumnBlock)
            m_blocks.push_back(parseProperties(type, content, decode));
        else
            m_blocks.push_back({type, {}, {}, Bytes(content.begin(), content.end())});
    }
}

void Properties::parseNames(ByteView content, const NameDecoder& decode)
{
    Reader reader(content);
    while (!reader.atEnd())
        m_names.push_back(decode(reader.name()));
}

Properties::Block Properties::parseProperties(std::uint16_t type, ByteView content,
                                              const NameDecoder& decode)
{
    Reader reader(content);
    Block block;
    block.type = type;
    Reader owner = reader.part(reader.u32(), 4);
    block.owner = decode(owner.name());
    while (!reader.atEnd()) {
        Reader property = reader.part(reader.u16(), 2);
        const std::uint8_t ddlFlag = property.u8();
        const std::uint8_t valueType = property.u8();
        const std::uint16_t name = property.u16();
        const ByteView value = property.take(property.u16());
        if (name >= m_names.size())
            throw Error(Fault::Damaged, "повреждены свойства таблицы");
        block.properties.push_back({ddlFlag, valueType, name, Bytes(value.begin(), value.end())});
    }
    return block;
}

Bytes Properties::encode() const
{
    if (m_blocks.empty() && m_names.empty())
        return {};
    Bytes out(kMagic.begin(), kMagic.end());
    Bytes names;
    for (const std::string& name : m_names)
        addName(names, name);
    addBlock(out, kNameBlock, names);
    for (const Block& block : m_blocks) {
        Bytes content = block.raw;
        if (block.type == kTableBlock || block.type == kColumnBlock) {
            Bytes owner;
            addName(owner, block.owner);
            add32(content, 4 + owner.size());
            addBytes(content, owner);
            for (const Property& property : block.properties) {
                add16(content, kPropertyHeader + property.value.size());
                content.push_back(property.ddlFlag);
                content.push_back(property.type);
                add16(content, property.name);
                add16(content, property.value.size());
                addBytes(content, property.value);
            }
        }
        addBlock(out, block.type, content);
    }
    return out;
}

const Properties::Property* Properties::find(std::string_view column,
                                             std::string_view property) const
{
    for (const Block& block : m_blocks) {
        if (block.type != kColumnBlock || !sameName(block.owner, column))
            continue;
        for (const Property& candidate : block.properties) {
            if (sameName(m_names[candidate.name], property))
                return &candidate;
        }
    }
    return nullptr;
}

bool Properties::columnFlag(std::string_view column, std::string_view property) const
{
    const Property* const found = find(column, property);
    return found && std::any_of(found->value.begin(), found->value.end(), [](std::uint8_t byte) {
               return byte != 0;
           });
}

bool Properties::hasColumn(std::string_view column, std::string_view property) const
{
    return find(column, property) != nullptr;
}

std::string Properties::columnText(std::string_view column, std::string_view property) const
{
    const Property* const found = find(column, property);
    return found ? utf8FromUtf16(found->value) : std::string();
}

std::uint16_t Properties::nameNumber(std::string_view name)
{
    const auto found = std::find_if(m_names.begin(), m_names.end(),
                                    [name](const std::string& n) { return sameName(n, name); });
    const auto number = static_cast<std::uint16_t>(found - m_names.begin());
    if (found == m_names.end())
        m_names.emplace_back(name);
    return number;
}

void Properties::set(std::string_view column, std::string_view property, std::uint8_t type,
                     Bytes value)
{
    const std::uint16_t name = nameNumber(property);
    auto block = std::find_if(m_blocks.begin(), m_blocks.end(), [column](const Block& b) {
        return b.type == kColumnBlock && sameName(b.owner, column);
    });
    if (block == m_blocks.end())
        block = m_blocks.insert(block, Block{kColumnBlock, std::string(column), {}, {}});
    std::erase_if(block->properties, [name](const Property& p) { return p.name == name; });
    block->properties.push_back({kEngineProperty, type, name, std::move(value)});
}

void Properties::setColumnFlag(std::string_view column, std::string_view property, bool value)
{
    set(column, property, static_cast<std::uint8_t>(FieldType::Boolean),
        {static_cast<std::uint8_t>(value ? 1 : 0)});
}

void Properties::setColumnText(std::string_view column, std::string_view property,
                               std::string_view value)
{
    set(column, property, static_cast<std::uint8_t>(FieldType::Memo), utf16FromUtf8(value));
}

void Properties::removeColumn(std::string_view column)
{
    std::erase_if(m_blocks, [column](const Block& block) {
        return block.type == kColumnBlock && sameName(block.owner, column);
    });
    if (m_blocks.empty())
        m_names.clear();
}

void Properties::addField(const Field& field)
{
    if (field.required)
        setColumnFlag(field.name, "Required", true);
    if (field.allowZeroLength)
        setColumnFlag(field.name, "AllowZeroLength", true);
    if (!field.defaultValue.empty())
        setColumnText(field.name, "DefaultValue", field.defaultValue);
}

} // namespace jet
