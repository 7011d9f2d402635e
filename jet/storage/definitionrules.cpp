#include "jet/storage/definitionrules.h"

#include "jet/error.h"
#include "jet/text.h"

#include <algorithm>
#include <set>

namespace jet::rules {

namespace {

constexpr int kMaxTextSize = 255;
constexpr int kMaxBinarySize = 510;
constexpr int kMaxPrecision = 28;

std::string quoted(std::string_view name)
{
    return "«" + std::string(name) + "»";
}

bool isAllowedInNames(char32_t c)
{
    return c >= 0x20 && c != '.' && c != '!' && c != '`' && c != '[' && c != ']' && c != 0x7F
           && c != 0xFFFD;
}

void checkSize(const Field& field, int most)
{
    if (field.size < 0 || field.size > most)
        throw Error(Fault::Limit, "недопустимый размер поля " + quoted(field.name) + ": "
                                      + std::to_string(field.size));
}

} // namespace

void checkName(std::string_view name, std::string_view what)
{
    const auto refuse = [&](Fault fault, const std::string& why) {
        throw Error(fault,
                    "недопустимое имя " + std::string(what) + " " + quoted(name) + ": " + why);
    };
    if (name.empty())
        refuse(Fault::Unsupported, "оно пустое");
    if (utf16Length(name) > kMaxNameLength)
        refuse(Fault::Limit, "оно длиннее 64 знаков");
    if (name.front() == ' ')
        refuse(Fault::Unsupported, "оно начинается с пробела");
    for (std::size_t at = 0; at < name.size();) {
        if (!isAllowedInNames(nextCodePoint(name, at)))
            refuse(Fault::Unsupported, "в нём есть недопустимый знак");
    }
}

void checkField(const Field& field)
{
    checkName(field.name, "поля");
    switch (field.type) {
    case FieldType::Text:
        return checkSize(field, kMaxTextSize);
    case FieldType::Binary:
        return checkSize(field, kMaxBinarySize);
    case FieldType::Decimal:
        if (field.precision < 1 || field.precision > kMaxPrecision || field.scale > field.precision)
            throw Error(Fault::Limit, "недопустимая точность поля " + quoted(field.name));
        return;
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
    case FieldType::Memo:
    case FieldType::LongBinary:
    case FieldType::Guid:
        break;
    case FieldType::Block:
    default:
        throw Error(Fault::Unsupported, "недопустимый тип поля " + quoted(field.name));
    }
    const bool counter = (field.attributes & attribute::kAutoIncrement) != 0;
    if (counter && field.type != FieldType::Long && field.type != FieldType::Guid)
        throw Error(Fault::Unsupported,
                    "счётчиком может быть только поле типа Long: " + quoted(field.name));
}

void checkIndex(const Index& index, const Definition& definition)
{
    checkName(index.name, "индекса");
    const auto& present = definition.logicalIndexes;
    if (present.size() >= kMaxIndexes || definition.realIndexes.size() >= kMaxIndexes)
        throw Error(Fault::Limit, "в таблице не может быть больше 32 индексов");
    for (const LogicalIndex& other : present) {
        if (sameName(other.name, index.name))
            throw Error(Fault::Exists, "индекс " + quoted(index.name) + " уже есть");
        if (index.primary && other.type == 1)
            throw Error(Fault::Exists, "в таблице уже есть первичный ключ " + quoted(other.name));
    }
    if (index.fields.empty())
        throw Error(Fault::Unsupported, "в индексе " + quoted(index.name) + " нет полей");
    if (index.fields.size() > kMaxIndexColumns)
        throw Error(Fault::Limit, "в индексе не может быть больше 10 полей");
    std::set<int> seen;
    for (const IndexField& field : index.fields) {
        const int position = definition.columnPosition(field.name);
        if (position < 0)
            throw Error(Fault::UnknownName, "нет поля " + quoted(field.name));
        if (!seen.insert(position).second)
            throw Error(Fault::Exists, "поле " + quoted(field.name) + " стоит в индексе дважды");
        const FieldType type = definition.columns[static_cast<std::size_t>(position)].type();
        if (type == FieldType::LongBinary || type == FieldType::Block)
            throw Error(Fault::Unsupported,
                        "по полю " + quoted(field.name) + " нельзя построить индекс");
    }
}

void checkRowSize(const Definition& definition)
{
    const std::size_t mask = (definition.nextColumnId + std::size_t{7}) / 8;
    const std::size_t slots = definition.variableSlots;
    const std::size_t trailer = slots == 0 ? 0 : 4 + 2 * slots;
    if (2 + definition.fixedLength() + trailer + mask > kMaxRowBytes)
        throw Error(Fault::Limit, "запись таблицы слишком велика");
}

} // namespace jet::rules
