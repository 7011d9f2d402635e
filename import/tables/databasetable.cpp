#include "import/tables/databasetable.h"

#include "data/convert.h"
#include "import/tables/tablelimits.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/sqltext.h"
#include "jet/text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

QString cellText(const jet::Value& value)
{
    return value.as<jet::Bytes>() ? QString() : data::toText(value);
}

std::string chosen(const std::vector<std::string>& tables, const QString& name)
{
    if (tables.empty())
        throw jet::Error(jet::Fault::UnknownName, "в базе данных нет таблиц");
    if (name.isEmpty())
        return tables.front();
    const auto found = std::ranges::find_if(
        tables, [&](const std::string& each) { return jet::sameName(each, data::toUtf8(name)); });
    if (found == tables.end())
        throw jet::Error(jet::Fault::UnknownName,
                         "в базе данных нет таблицы " + data::toUtf8(name));
    return *found;
}

} // namespace

TextTable readDatabaseTable(const QString& path, const QString& table)
{
    const auto database = jet::Database::open(data::toPath(path), jet::OpenMode::ReadOnly);
    const std::vector<std::string> tables = database->tableNames();
    const std::string name = chosen(tables, table);
    TextTable result;
    for (const std::string& each : tables)
        result.sheets << data::fromUtf8(each);
    result.sheet = data::fromUtf8(name);
    RowCollector rows;
    auto records = database->query("SELECT * FROM " + jet::sql::name(name) + ';');
    QStringList cells;
    for (const jet::RecordsetColumn& column : records.columns())
        cells << data::fromUtf8(column.name);
    const auto columns = static_cast<int>(cells.size());
    rows.add(1, cells);
    for (int number = 2; records.next(); ++number) {
        cells.clear();
        for (int column = 0; column < columns; ++column)
            cells << cellText(records.value(column));
        rows.add(number, cells);
    }
    result.rows = rows.take();
    return result;
}

} // namespace imports
