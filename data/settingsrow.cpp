#include "data/settingsrow.h"

#include "data/convert.h"
#include "data/schema.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace data {

namespace {

// Texts of the row are never left empty; documents print what is stored.
std::string stored(const QString& text)
{
    return jet::sql::text(toUtf8(text.isEmpty() ? u"нет"_s : text));
}

std::string stored(bool flag)
{
    return flag ? "True" : "False";
}

std::string stored(QDate date)
{
    return date.isValid() ? jet::sql::date(toJet(date)) : "Null";
}

} // namespace

int settingsTextLimit(std::string_view field)
{
    const auto isSettings = [](const TableDefinition& table) { return table.name == "RASP"; };
    return std::ranges::find_if(verifiedTables(), isSettings)->field(field).size;
}

std::optional<QString> settingsProblem(const SettingsRow& row)
{
    if (row.yearBegin.isValid() && row.yearEnd.isValid() && row.yearBegin > row.yearEnd)
        return u"Учебный период начинается позже, чем заканчивается."_s;
    if (row.hoursPerLesson < 1 || row.hoursPerLesson > kMostHoursPerLesson)
        return u"Занятие может длиться от 1 до %1 часов."_s.arg(kMostHoursPerLesson);
    return {};
}

SettingsRow readSettingsRow(jet::Database& database)
{
    SettingsRow row;
    auto record = database.query("SELECT RASP.* FROM RASP WHERE RASP.IDR = 1;");
    if (!record.next())
        return row;
    const auto text = [&](std::string_view field) { return fromUtf8(record.text(field)); };
    const auto flag = [&](std::string_view field) { return record[field].toBool(); };
    const auto date = [&](std::string_view field) { return toDate(record[field]); };
    row.institution = text("NAIM");
    row.address = text("ADR");
    row.headPost = text("DIR_D");
    row.headName = text("DIR_FIO");
    row.printHead = flag("DIR_P");
    row.responsiblePost = text("OTV_D");
    row.responsibleName = text("OTV_FIO");
    row.printResponsible = flag("OTV_P");
    row.workingDate = date("DATR");
    row.yearBegin = date("DATN");
    row.yearEnd = date("DATK");
    row.useTimetable = flag("Uroki");
    row.autoSaveGrades = flag("AvtSave");
    row.askWorkingDate = flag("LockOR");
    row.hoursPerLesson = static_cast<int>(record.integer("MNJ"));
    return row;
}

void writeSettingsRow(jet::Database& database, const SettingsRow& row)
{
    database.execute("UPDATE RASP SET AvtSave = " + stored(row.autoSaveGrades)
                     + ", LockOR = " + stored(row.askWorkingDate)
                     + ", Uroki = " + stored(row.useTimetable) + ", DIR_D = " + stored(row.headPost)
                     + ", DIR_FIO = " + stored(row.headName) + ", DIR_P = " + stored(row.printHead)
                     + ", OTV_D = " + stored(row.responsiblePost) + ", OTV_FIO = "
                     + stored(row.responsibleName) + ", OTV_P = " + stored(row.printResponsible)
                     + ", ADR = " + stored(row.address) + ", NAIM = " + stored(row.institution)
                     + ", DATR = " + stored(row.workingDate) + ", DATN = " + stored(row.yearBegin)
                     + ", DATK = " + stored(row.yearEnd)
                     + ", MNJ = " + jet::sql::number(row.hoursPerLesson) + " WHERE RASP.IDR = 1;");
}

} // namespace data
