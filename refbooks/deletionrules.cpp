#include "refbooks/deletionrules.h"

#include <algorithm>
#include <iterator>

namespace refbooks {
namespace {

constexpr UseCheck kWorkloadUses[] = {
    {"UROKI",
     "ID",
     "IDN",
     {u"Невозможно удалить нагрузку: %1 - %2 - %3, так как такие занятия имеются в расписании.",
      u"Невозможно удалить нагрузку: %1 - %2 - %3, так как такие уроки имеются в расписании."}},
};
constexpr UseCheck kSpecialityUses[] = {
    {"SPGRUP",
     "IDG",
     "IDO",
     {u"Невозможно удалить специальность \"%1\", так как она используется в справочнике групп.",
      u"Невозможно удалить параллель \"%1\", так как она используется в справочнике классов."}},
};
constexpr UseCheck kGroupUses[] = {
    {"SPNAGR",
     "IDN",
     "IDG",
     {u"Невозможно удалить группу \"%1\" специальность \"%2\", так как она используется в "
      u"справочнике нагрузки.",
      u"Невозможно удалить класс \"%1\" параллель \"%2\", так как он используется в "
      u"справочнике нагрузки."}},
    {"UROKI",
     "ID",
     "IDG",
     {u"Невозможно удалить группу \"%1\" специальность \"%2\", так как имеются занятия или "
      u"запреты группы в расписании.",
      u"Невозможно удалить класс \"%1\" параллель \"%2\", так как имеются уроки или запреты "
      u"класса в расписании."}},
};
constexpr UseCheck kTeacherUses[] = {
    {"SPNAGR",
     "IDN",
     "IDP",
     {u"Невозможно удалить преподавателя \"%1\", так как он обнаружен в справочнике нагрузки.",
      u"Невозможно удалить учителя \"%1\", так как он обнаружен в справочнике нагрузки."}},
    {"SPGRUP",
     "IDG",
     "IDP",
     {u"Невозможно удалить преподавателя \"%1\", так как он обнаружен в справочнике групп в "
      u"графе \"Классный руководитель\".",
      u"Невозможно удалить учителя \"%1\", так как он обнаружен в справочнике классов в графе "
      u"\"Классный руководитель\"."}},
    {"UROKI",
     "ID",
     "IDP",
     {u"Невозможно удалить преподавателя \"%1\", так как имеются занятия или запреты "
      u"преподавателя в расписании.",
      u"Невозможно удалить учителя \"%1\", так как имеются уроки или запреты учителя в "
      u"расписании."}},
};
constexpr UseCheck kRoomUses[] = {
    {"SPNAGR",
     "IDN",
     "IDA",
     {u"Невозможно удалить аудиторию \"%1\", так как она используется в справочнике нагрузки."}},
    {"UROKI",
     "ID",
     "IDA",
     {u"Невозможно удалить аудиторию \"%1\", так как имеются учебные занятия или запреты "
      u"аудитории в расписании."}},
};
constexpr UseCheck kRoomTypeUses[] = {
    {"SPKAUD",
     "IDA",
     "IDT",
     {u"Невозможно удалить тип аудиторий \"%1\", так как он используется в справочнике "
      u"аудиторий."}},
};
constexpr UseCheck kDisciplineUses[] = {
    {"SPNAGR",
     "IDN",
     "IDD",
     {u"Невозможно удалить дисциплину \"%1\", так как она используется в справочнике нагрузки.",
      u"Невозможно удалить предмет \"%1\", так как он используется в справочнике нагрузки."}},
    {"UROKI",
     "ID",
     "IDD",
     {u"Невозможно удалить дисциплину \"%1\", так как имеются занятия данного типа в расписании.",
      u"Невозможно удалить предмет \"%1\", так как имеются уроки данного типа в расписании."}},
};
constexpr UseCheck kDepartmentUses[] = {
    {"SPPREP",
     "IDP",
     "IDK",
     {u"Невозможно удалить кафедру \"%1\", так как она указана в справочнике преподавателей.",
      u"Невозможно удалить методическое объединение \"%1\", так как оно указано в справочнике "
      u"учителей."}},
};
constexpr UseCheck kBanReasonUses[] = {
    {"UROKI",
     "ID",
     "IDI",
     {u"Невозможно удалить причину \"%1\", так как она используется в планшете занятий."}},
};
constexpr UseCheck kLessonTypeUses[] = {
    {"SPNAGR",
     "IDN",
     "IDZ",
     {u"Невозможно удалить тип занятия \"%1\", так как он используется в справочнике нагрузки."}},
};
constexpr UseCheck kGroupTypeUses[] = {
    {"SPGRUP",
     "IDG",
     "IDF",
     {u"Невозможно удалить тип группы \"%1\", так как он используется в справочнике групп."}},
};
constexpr UseCheck kProjectUses[] = {
    {"UROKI",
     "ID",
     "IDR",
     {u"Невозможно удалить проект расписания \"%1\", так как имеются назначенные занятия (и/или "
      u"запреты), соответствующие данному проекту.",
      u"Невозможно удалить проект расписания \"%1\", так как имеются назначенные уроки (и/или "
      u"запреты), соответствующие данному проекту."}},
};
constexpr UseCheck kStudyFormUses[] = {
    {"SPGRUP",
     "IDG",
     "IDV",
     {u"Невозможно удалить вид обучения \"%1\", так как он используется в справочнике групп."}},
};

constexpr std::string_view kWorkloadNames =
    "SELECT SPPREP.FAMIO, SPGRUP.NAIM, SPPRED.NAIM "
    "FROM ((SPNAGR LEFT JOIN SPPREP ON SPNAGR.IDP = SPPREP.IDP) "
    "LEFT JOIN SPGRUP ON SPNAGR.IDG = SPGRUP.IDG) LEFT JOIN SPPRED ON SPNAGR.IDD = SPPRED.IDD";
constexpr std::string_view kGroupNames =
    "SELECT SPGRUP.NAIM, SPOTD.NAIM FROM SPGRUP LEFT JOIN SPOTD ON SPGRUP.IDO = SPOTD.IDO";
constexpr std::string_view kStudentNames =
    R"(SELECT fam & " " & im & " " & otch AS fio FROM SPSTUD)";
constexpr std::string_view kProjectNames = R"(SELECT DAT1 & " - " & DAT2 AS period FROM SPRASP)";

constexpr DeletionRule kRules[] = {
    {Book::Workload, kWorkloadNames, kWorkloadUses},
    {Book::Specialities, "SELECT NAIM FROM SPOTD", kSpecialityUses},
    {Book::Groups, kGroupNames, kGroupUses},
    {Book::Teachers, "SELECT FAMIO FROM SPPREP", kTeacherUses},
    {Book::Rooms, "SELECT KAUDI FROM SPKAUD", kRoomUses},
    {Book::RoomTypes, "SELECT NAIM FROM SPAUD", kRoomTypeUses},
    {Book::Disciplines, "SELECT NAIM FROM SPPRED", kDisciplineUses},
    {Book::Departments, "SELECT NAIM FROM SPKAF", kDepartmentUses},
    {Book::Holidays, "SELECT NAIM FROM HOLI"},
    {Book::BanReasons, "SELECT NAIM FROM SPPRIH", kBanReasonUses},
    {Book::LessonTimes, "SELECT NAIM FROM UR_TIME"},
    {Book::Users, "SELECT NAIM FROM USERS"},
    {Book::LessonTypes, "SELECT NAIM FROM SPTIPZ", kLessonTypeUses},
    {Book::GroupTypes, "SELECT NAIM FROM SPTIPG", kGroupTypeUses},
    {Book::Students, kStudentNames},
    {Book::TimetableProjects, kProjectNames, kProjectUses},
    {Book::StudyForms, "SELECT NAIM FROM SPVID", kStudyFormUses},
};

} // namespace

const DeletionRule* deletionRule(Book book)
{
    const auto* const found = std::ranges::find(kRules, book, &DeletionRule::book);
    return found == std::end(kRules) ? nullptr : found;
}

} // namespace refbooks
