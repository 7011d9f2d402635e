#include "tests/import/timetablefile.h"

#include "data/convert.h"
#include "data/schema.h"

#include <algorithm>
#include <array>

TimetableFile::TimetableFile(const std::vector<std::string>& without, bool encoded)
{
    constexpr std::array<std::string_view, 7> kTables = {"SPOTD",  "SPPREP", "SPTIPZ", "SPGRUP",
                                                         "SPPRED", "SPNAGR", "UROKI"};
    const auto lacks = [&](const std::string& name) {
        return std::ranges::find(without, name) != without.end();
    };
    m_database = jet::Database::create(m_folder / "timetable.mdb", {.encoded = encoded});
    for (const data::TableDefinition& table : data::verifiedTables()) {
        const std::string name(table.name);
        if (std::ranges::find(kTables, table.name) == kTables.end() || lacks(name))
            continue;
        jet::TableDef definition;
        definition.name = name;
        for (const data::FieldDefinition& field : table.fields)
            if (!lacks(name + '.' + std::string(field.name)))
                definition.fields.push_back({.name = std::string(field.name),
                                             .type = field.type,
                                             .size = field.size,
                                             .attributes = field.attributes});
        m_database->createTable(definition);
    }
    m_filling.emplace(*m_database);
}

int TimetableFile::add(const std::string& table, const Values& values)
{
    return static_cast<int>(m_database->insert(table, values));
}

TimetableFile::Place TimetableFile::place(const std::string& suffix)
{
    const int speciality = add("SPOTD", {{"SOKR", "ИС"}, {"NAIM", "Системы" + suffix}});
    Place place{};
    place.teacher = add("SPPREP", {{"FAMIO", "Белов А.А." + suffix}});
    place.group = add("SPGRUP", {{"IDO", speciality}, {"KURS", 2}, {"NAIM", "ИС-21" + suffix}});
    place.discipline = add("SPPRED", {{"NAIM", "Физика" + suffix}});
    place.workload = add("SPNAGR", {{"IDP", place.teacher},
                                    {"IDG", place.group},
                                    {"IDD", place.discipline},
                                    {"DATNN", data::toJet(QDate(2024, 9, 1))},
                                    {"DATKK", data::toJet(QDate(2024, 12, 31))}});
    return place;
}

int TimetableFile::lesson(const Place& place, QDate date, int number, const jet::Value& project)
{
    return add("UROKI", {{"DAT", data::toJet(date)},
                         {"UR", number},
                         {"IDP", place.teacher},
                         {"IDG", place.group},
                         {"IDD", place.discipline},
                         {"IDN", place.workload},
                         {"IDR", project}});
}

QString TimetableFile::path()
{
    if (m_filling)
        m_filling->commit();
    m_filling.reset();
    m_database.reset();
    return data::fromPath(m_folder / "timetable.mdb");
}
