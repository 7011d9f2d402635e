#include "data/schema.h"

#include "data/convert.h"

#include <algorithm>
#include <cassert>

using namespace Qt::StringLiterals;

namespace data {

namespace {

using jet::FieldType;
namespace attribute = jet::attribute;

FieldDefinition fixed(std::string_view name, FieldType type)
{
    return {name, type, jet::fieldSize(type), attribute::kFixed};
}

FieldDefinition counter(std::string_view name)
{
    return {name, FieldType::Long, 4, attribute::kFixed | attribute::kAutoIncrement};
}

FieldDefinition text(std::string_view name, int characters)
{
    return {name, FieldType::Text, characters, attribute::kVariable};
}

FieldDefinition memo(std::string_view name)
{
    return {name, FieldType::Memo, 0, attribute::kVariable};
}

FieldDefinition flag(std::string_view name)
{
    return fixed(name, FieldType::Boolean);
}

FieldDefinition byte(std::string_view name)
{
    return fixed(name, FieldType::Byte);
}

FieldDefinition integer(std::string_view name)
{
    return fixed(name, FieldType::Integer);
}

FieldDefinition longInteger(std::string_view name)
{
    return fixed(name, FieldType::Long);
}

FieldDefinition date(std::string_view name)
{
    return fixed(name, FieldType::Date);
}

// A table of data: it grows with the schema, whatever its length.
// NOLINTNEXTLINE(readability-function-size)
std::vector<TableDefinition> journalTables()
{
    return {
        {"EXAM",
         {counter("IDE"), longInteger("ID"), longInteger("IDD"), longInteger("OCEN"),
          integer("TIME")},
         {{"PrimaryKey", "+IDE"}}},
        {"MONTH", {byte("MN"), text("NAIM", 15)}, {{"PrimaryKey", "+MN"}}},
        {"POS",
         {longInteger("ID"), byte("uv"), byte("nuv"), date("dat"), integer("UR"),
          longInteger("IDD"), longInteger("IDDG")},
         {}},
        {"RASP",
         {counter("IDR"),
          flag("SelKab"),
          flag("LockOR"),
          date("DATR"),
          flag("URNUL"),
          flag("PrZap"),
          text("NAIM", 100),
          text("DIR_D", 50),
          text("DIR_FIO", 50),
          text("OTV_D", 50),
          text("OTV_FIO", 50),
          flag("DIR_P"),
          flag("OTV_P"),
          flag("TIME_P"),
          flag("DEL_STR"),
          flag("ULAST"),
          integer("UDAY"),
          flag("NO_CALC"),
          text("ADR", 255),
          flag("AUD_GR"),
          byte("MNJ"),
          flag("AvtSave"),
          flag("Uroki"),
          longInteger("appMajor"),
          longInteger("appMinor"),
          longInteger("appRevision"),
          date("DATN"),
          date("DATK")},
         {{"PrimaryKey", "+IDR"}}},
        {"SPGRUP",
         {counter("IDG"), longInteger("IDO"), text("MEMO", 50), longInteger("IDP"), integer("IG"),
          integer("KURS"), flag("FINAL"), text("NAIM", 30)},
         {{"PrimaryKey", "+IDG"}}},
        {"SPNAGR",
         {counter("IDN"), longInteger("IDP"), longInteger("IDG"), longInteger("IDD"),
          longInteger("IDT"), integer("CHSEM"), date("DATNN"), date("DATKK"), integer("CH"),
          byte("IDGG"), text("MEMO", 50), flag("PRAKT"), flag("WITHD"), longInteger("IDZ"),
          longInteger("IDNN"), flag("NO_CALC")},
         {{"PrimaryKey", "+IDN"}}},
        {"SPOTD",
         {counter("IDO"), text("SOKR", 30), text("KOD", 12), text("NAIM", 255)},
         {{"PrimaryKey", "+IDO"}}},
        {"SPPRED",
         {counter("IDD"), text("KOD", 20), text("MEMO", 255), text("NAIM", 255)},
         {{"PrimaryKey", "+IDD"}}},
        {"SPPREP",
         {counter("IDP"), text("MEMO", 50), text("TABNOM", 10), text("FAMIO", 255)},
         {{"PrimaryKey", "+IDP"}}},
        {"SPSTUD",
         {counter("ID"), longInteger("IDG"), longInteger("IDGG"), date("D_R"), text("DOC", 255),
          memo("KURS"), flag("POL"), text("FAM", 50), text("IM", 50), text("OTCH", 50),
          text("MEMO", 50), text("ADR", 255), text("TEL", 255), text("prikazOtch", 255),
          text("prichOtch", 255)},
         {{"PrimaryKey", "+ID"}}},
        {"UROKI",
         {counter("ID"), date("DAT"), integer("UR"), longInteger("IDP"), longInteger("IDG"),
          byte("IDGG"), longInteger("IDA"), longInteger("IDD"), longInteger("IDN"),
          longInteger("IDR"), flag("ZP"), flag("MORE"), flag("HAND")},
         {{"IDG", "+IDG"}, {"IDP", "+IDP"}, {"IDR", "+IDR"}, {"PrimaryKey", "+ID"}}},
        {"USP",
         {longInteger("ID"), longInteger("IDD"), byte("OC"), date("DAT"), flag("it"), flag("TEK")},
         {}},
        {"USERS", {counter("IDU"), text("NAIM", 50), byte("ROLE"), text("PSSW", 15)}, {}},
        {"SPAUD", {counter("IDT"), text("NAIM", 20), text("SOKR", 2), integer("IT")}, {}},
        {"SPKAUD",
         {counter("IDA"), longInteger("IDT"), text("MEMO", 20), integer("IA"), text("KAUDI", 10)},
         {}},
        {"SPTIPZ", {counter("IDZ"), text("NAIM", 50), text("MEMO", 150)}, {}},
    };
}

} // namespace

const FieldDefinition& TableDefinition::field(std::string_view fieldName) const
{
    const auto found = std::ranges::find(fields, fieldName, &FieldDefinition::name);
    assert(found != fields.end());
    return *found;
}

std::span<const TableDefinition> verifiedTables()
{
    static const std::vector<TableDefinition> tables = journalTables();
    return tables;
}

std::span<const AddedField> addedFields()
{
    static const std::vector<AddedField> fields = {
        {{"USP", "TEK"}, {}},
        {{"POS", "IDDG"}, {}},
        {{"RASP", "DATN"}, toJet(presetYearBegin())},
        {{"RASP", "DATK"}, toJet(presetYearEnd())},
        {{"SPSTUD", "prikazOtch"}, ""},
        {{"SPSTUD", "prichOtch"}, ""},
    };
    return fields;
}

std::span<const FieldName> resizedFields()
{
    static constexpr FieldName kFields[] = {
        {"SPOTD", "KOD"},
        {"SPOTD", "NAIM"},
        {"SPPREP", "FAMIO"},
        {"SPPRED", "NAIM"},
    };
    return kFields;
}

bool isAdded(const FieldName& name)
{
    return std::ranges::find(addedFields(), name, &AddedField::name) != addedFields().end();
}

bool isResized(const FieldName& name)
{
    return std::ranges::find(resizedFields(), name) != resizedFields().end();
}

std::span<const TableDefinition> supplementaryTables()
{
    static const std::vector<TableDefinition> tables = {
        {"SPKAF", {counter("IDK"), text("NAIM", 50)}, {{"PrimaryKey", "+IDK"}}},
        {"HOLI",
         {counter("IDH"), byte("DAY"), byte("MN"), text("NAIM", 50)},
         {{"PrimaryKey", "+IDH"}}},
        {"SPPRIH",
         {counter("IDI"), text("NAIM", 50), text("TABEL", 2), flag("ALLDAY"), flag("RABDAY")},
         {{"PrimaryKey", "+IDI"}}},
        // The lesson number is the key itself, the name its time: "8:30-10:00".
        {"UR_TIME", {longInteger("IDUR"), text("NAIM", 50)}, {{"PrimaryKey", "+IDUR"}}},
        {"SPTIPG", {counter("IDF"), text("NAIM", 50), text("MEMO", 150)}, {{"PrimaryKey", "+IDF"}}},
        {"SPRASP",
         {counter("IDR"), flag("DEY"), date("DAT1"), date("DAT2"), text("MEMO", 50)},
         {{"PrimaryKey", "+IDR"}}},
        {"SPVID", {counter("IDV"), text("NAIM", 50), text("MEMO", 150)}, {{"PrimaryKey", "+IDV"}}},
        {"SPBALL", {byte("OCEN"), text("NAIMOC", 50)}, {{"PrimaryKey", "+OCEN"}}},
    };
    return tables;
}

std::span<const SupplementaryField> supplementaryFields()
{
    static const std::vector<SupplementaryField> fields = {
        {"SPNAGR", longInteger("IDA")}, {"SPNAGR", flag("PO_ZAM")},
        {"UROKI", longInteger("IDNN")}, {"UROKI", longInteger("IDI")},
        {"SPPREP", longInteger("IDK")}, {"SPGRUP", longInteger("IDF")},
        {"SPGRUP", longInteger("IDV")}, {"SPPRED", integer("TRUD")},
        {"SPKAUD", integer("KOL")},     {"SPKAUD", date("TIM1")},
        {"SPKAUD", date("TIM2")},
    };
    return fields;
}

const std::array<QString, 12>& monthNames()
{
    static const std::array<QString, 12> names = {
        u"Январь"_s, u"Февраль"_s, u"Март"_s,     u"Апрель"_s,  u"Май"_s,    u"Июнь"_s,
        u"Июль"_s,   u"Август"_s,  u"Сентябрь"_s, u"Октябрь"_s, u"Ноябрь"_s, u"Декабрь"_s};
    return names;
}

std::span<const GradeName> gradeNames()
{
    static const std::array<GradeName, 5> names = {{
        {5, u"5 (отлично)"_s},
        {4, u"4 (хорошо)"_s},
        {3, u"3 (удовлетворительно)"_s},
        {2, u"2 (неудовлетворительно)"_s},
        {1, u"Зачет"_s},
    }};
    return names;
}

std::span<const UserRow> firstUsers()
{
    static const std::array<UserRow, 3> users = {
        {{u"Администратор"_s, 0}, {u"Оператор"_s, 1}, {u"Пользователь"_s, 2}}};
    return users;
}

std::span<const QString> studyForms()
{
    static const std::array<QString, 4> forms = {u"Очная"_s, u"Очно-заочная"_s, u"Заочная"_s,
                                                 u"Экстернат"_s};
    return forms;
}

QDate presetYearBegin()
{
    return {2022, 9, 1};
}

QDate presetYearEnd()
{
    return {2023, 6, 30};
}

const std::array<QString, 18>& bookTitles()
{
    static const std::array<QString, 18> titles = {
        u"Нагрузка"_s,           u"Специальности"_s,
        u"Учебные группы"_s,     u"Преподаватели"_s,
        u"Аудитории"_s,          u"Типы аудиторий"_s,
        u"Дисциплины"_s,         u"Кафедры"_s,
        u"Праздничные дни"_s,    u"Причины запретов"_s,
        u"Время занятий"_s,      u"Пользователи"_s,
        u"Типы занятий"_s,       u""_s,
        u"Типы групп"_s,         u"Студенты"_s,
        u"Проекты расписаний"_s, u"Виды обучения"_s,
    };
    return titles;
}

} // namespace data
