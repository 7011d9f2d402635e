#include "refbooks/recordstore.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "shell/access/rights.h"

#include <QLocale>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

namespace sql = jet::sql;

namespace refbooks {
namespace {

using Column = std::pair<std::string, jet::Value>;

bool isTextual(jet::FieldType type)
{
    return type == jet::FieldType::Text || type == jet::FieldType::Memo;
}

// The number in a text, with a decimal comma or point.
std::optional<double> numberIn(QString text)
{
    bool isNumber = false;
    const double number = text.replace(u',', u'.').toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::pair<double, double> rangeOf(jet::FieldType type)
{
    switch (type) {
    case jet::FieldType::Byte:
        return {0, std::numeric_limits<std::uint8_t>::max()};
    case jet::FieldType::Integer:
        return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
    case jet::FieldType::Long:
        return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    default:
        return {std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max()};
    }
}

// A choice as the lists know it: a missing subgroup of the workload is the whole group, and
// whatever is neither administrator nor dispatcher is a user.
std::optional<int> choiceOf(const RecordDraft& draft, const RecordField& field,
                            const jet::Value& value)
{
    const int number = static_cast<int>(value.toInteger());
    if (field.lookup == Lookup::Roles)
        return static_cast<int>(value.isNull() ? shell::Role::User : shell::roleOf(number));
    if (field.lookup == Lookup::Sexes)
        return value.toBool() ? -1 : 0;
    if (value.isNull())
        return draft.book == Book::Workload && field.lookup == Lookup::Subgroups ? std::optional(0)
                                                                                 : std::nullopt;
    return number;
}

FieldValue valueOf(const RecordDraft& draft, const RecordField& field, const jet::Value& value)
{
    switch (field.kind) {
    case FieldKind::List:
        return {.choice = choiceOf(draft, field, value)};
    case FieldKind::CheckBox:
        return {.checked = value.toBool()};
    case FieldKind::Date:
        return {.date = data::toDate(value)};
    case FieldKind::TimeOfDay:
        return {.time = value.isNull() ? QTime() : data::toTime(value.toDate())};
    case FieldKind::Text:
    case FieldKind::LessonTime:
    case FieldKind::Password:
        break;
    }
    return {.text = data::toText(value)};
}

jet::Value textValue(const QString& text, jet::FieldType type)
{
    if (text.isEmpty())
        return {};
    return isTextual(type) ? jet::Value(data::toUtf8(text)) : jet::Value(*numberIn(text));
}

jet::Value stored(const RecordDraft& draft, int position, jet::FieldType type)
{
    const FieldValue& value = draft.values[static_cast<std::size_t>(position)];
    switch (draft.fields[static_cast<std::size_t>(position)].kind) {
    case FieldKind::List:
        if (type == jet::FieldType::Boolean)
            return value.choice.value_or(0) != 0;
        return value.choice ? jet::Value(*value.choice) : jet::Value();
    case FieldKind::CheckBox:
        return value.checked;
    case FieldKind::Date:
        return value.date.isValid() ? jet::Value(data::toJet(value.date)) : jet::Value();
    case FieldKind::TimeOfDay:
        return value.time.isValid() ? jet::Value(data::toJet(value.time)) : jet::Value();
    case FieldKind::Text:
    case FieldKind::LessonTime:
    case FieldKind::Password:
        break;
    }
    return textValue(draft.text(position), type);
}

std::vector<Column> storedColumns(jet::Database& database, const RecordDraft& draft)
{
    const jet::TableDef table = database.tableDef(bookInfo(draft.book).table);
    std::vector<Column> columns;
    for (int i = 0; i < static_cast<int>(draft.fields.size()); ++i) {
        if (!draft.isStored(i))
            continue;
        const jet::Field* column = table.field(draft.fields[static_cast<std::size_t>(i)].field);
        columns.emplace_back(column->name, stored(draft, i, column->type));
    }
    return columns;
}

std::string literal(const jet::Value& value)
{
    if (value.isNull())
        return "NULL";
    if (const auto* flag = value.as<bool>())
        return *flag ? "True" : "False";
    if (const auto* number = value.as<std::int64_t>())
        return sql::number(*number);
    if (const auto* number = value.as<double>())
        return sql::number(*number);
    if (const auto* date = value.as<jet::DateTime>())
        return sql::date(*date);
    return sql::text(value.toText());
}

std::string whereKey(const RecordDraft& draft)
{
    const BookInfo& info = bookInfo(draft.book);
    return " WHERE ((" + std::string(info.table) + "." + std::string(info.key)
           + ")=" + sql::number(draft.key) + ");";
}

} // namespace

bool fitsColumn(const QString& text, const jet::Field& column)
{
    if (text.isEmpty())
        return true;
    if (isTextual(column.type))
        return column.size == 0 || text.size() <= column.size;
    const auto number = numberIn(text);
    const auto [least, most] = rangeOf(column.type);
    return number && *number >= least && *number <= most;
}

bool readRecord(jet::Database& database, RecordDraft& draft)
{
    const std::string table(bookInfo(draft.book).table);
    auto rows = database.query("SELECT * FROM " + table + whereKey(draft));
    if (!rows.next())
        return false;
    readValues(rows, draft);
    return true;
}

void readValues(const jet::Recordset& rows, RecordDraft& draft)
{
    for (std::size_t i = 0; i < draft.fields.size(); ++i)
        draft.values[i] = valueOf(draft, draft.fields[i], rows[draft.fields[i].field]);
}

std::optional<std::int64_t> storeRecord(jet::Database& database, const RecordDraft& draft)
{
    const BookInfo& info = bookInfo(draft.book);
    const std::vector<Column> columns = storedColumns(database, draft);
    std::int64_t key = draft.key;
    if (draft.mode == RecordMode::Edit) {
        std::string changes;
        for (const auto& [name, value] : columns)
            changes += (changes.empty() ? "" : ", ") + sql::name(name) + "=" + literal(value);
        if (database.execute("UPDATE " + std::string(info.table) + " SET " + changes
                             + whereKey(draft))
            == 0)
            return {};
    } else {
        key = database.insert(info.table, columns);
    }
    // The lesson number is typed and is the key itself.
    return draft.book == Book::LessonTimes ? draft.text("IDUR").toLongLong() : key;
}

} // namespace refbooks
