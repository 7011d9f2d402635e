#include "refbooks/listquery.h"

#include "jet/sqltext.h"
#include "shell/wording.h"

#include <cassert>

namespace sql = jet::sql;

namespace refbooks {
namespace {

std::string workloadQuery(const ListFilter& filter)
{
    if (!filter.key)
        return "SELECT SPNAGR.* FROM SPNAGR WHERE ((SPNAGR.IDN)=0);";
    static constexpr const char* kFields[] = {"IDP", "IDG", "IDA"};
    return R"(SELECT SPNAGR.*, SPPRED.*, SPPREP.*, SPGRUP.*, SPGRUP.NAIM as SPGRUP_NAIM,
                     SPPRED.NAIM as SPPRED_NAIM,spnagr.MEMO as spnagr_MEMO
              FROM ((SPNAGR INNER JOIN SPPRED ON SPNAGR.IDD = SPPRED.IDD)
                    INNER JOIN SPPREP ON SPNAGR.IDP = SPPREP.IDP)
                    INNER JOIN SPGRUP ON SPNAGR.IDG = SPGRUP.IDG
              WHERE (((SPNAGR.)"
           + std::string(kFields[static_cast<int>(filter.kind)]) + ")=" + sql::number(*filter.key)
           + "));";
}

// Left joins: a group without a form teacher or speciality is listed too.
std::string groupsQuery(const shell::Wording& wording)
{
    const std::string speciality = wording.isSchool()
                                       ? "[SPOTD]![NAIM]"
                                       : R"(TRIM("" & [SPOTD]![KOD] & " " & [SPOTD]![NAIM]))";
    return "SELECT SPGRUP.*, SPOTD.*, SPPREP.*, [SPGRUP]![NAIM] AS GR, " + speciality
           + R"( AS SPEC, IIF([SPGRUP]![FINAL],"Да","Нет") AS FIN
              FROM (((SPGRUP LEFT JOIN SPPREP ON SPGRUP.IDP = SPPREP.IDP)
                    LEFT JOIN SPOTD ON SPGRUP.IDO = SPOTD.IDO))
              ORDER BY [SPOTD]![Sokr]+[SPGRUP]![NAIM];)";
}

std::string studentsQuery(const ListFilter& filter)
{
    if (!filter.key)
        return "SELECT SPSTUD.* FROM SPSTUD WHERE ((SPSTUD.ID)=0);";
    std::string query = R"(SELECT SPSTUD.*, SPGRUP.NAIM, IIf([SPSTUD].[POL]=0,"Ж","М") AS POL1,
                    iif(isnull(IDGG),0,IDGG) as  IDGG1
             FROM SPSTUD INNER JOIN SPGRUP ON SPSTUD.IDG = SPGRUP.IDG
             WHERE (((SPSTUD.IDG)=)"
                        + sql::number(*filter.key) + ")";
    if (filter.subgroup)
        query += " AND ((iif(isnull(IDGG),0,IDGG))=" + sql::number(*filter.subgroup) + ")";
    return query + ") ORDER BY SPGRUP.NAIM, SPSTUD.FAM, SPSTUD.IM, SPSTUD.OTCH;";
}

constexpr const char* kUsers = R"(
    SELECT USERS.*, IIF(USERS.ROLE=0,"Администратор",
           IIF(USERS.ROLE=1,"Диспетчер","Пользователь")) AS ROL
    FROM USERS
    ORDER BY USERS.NAIM;)";

constexpr const char* kLessons = R"(
    SELECT UROKI.ID, UROKI.DAT, UROKI.UR, SPPREP.FAMIO, SPGRUP.NAIM, UROKI.IDGG, SPPRED.Naim
    FROM ((UROKI INNER JOIN SPPRED ON UROKI.IDD = SPPRED.IDD)
          INNER JOIN SPPREP ON UROKI.IDP = SPPREP.IDP)
          INNER JOIN SPGRUP ON (SPPREP.IDP = SPGRUP.IDP) AND (UROKI.IDG = SPGRUP.IDG)
    ORDER BY UROKI.DAT;)";

constexpr const char* kRooms = R"(
    SELECT SPKAUD.*, SPAUD.NAIM AS TIP, Format(SPKAUD.TIM1,"hh:nn") AS OTKR,
           Format(SPKAUD.TIM2,"hh:nn") AS ZAKR
    FROM SPKAUD LEFT JOIN SPAUD ON SPKAUD.IDT = SPAUD.IDT
    ORDER BY SPKAUD.KAUDI;)";

constexpr const char* kHolidays = R"(
    SELECT HOLI.*, MONTH.NAIM AS MES
    FROM HOLI LEFT JOIN MONTH ON HOLI.MN = MONTH.MN
    ORDER BY HOLI.MN, HOLI.DAY;)";

constexpr const char* kBanReasons = R"(
    SELECT SPPRIH.*, IIF(SPPRIH.ALLDAY,"Да","Нет") AS VESD, IIF(SPPRIH.RABDAY,"Да","Нет") AS RABD
    FROM SPPRIH
    ORDER BY SPPRIH.NAIM;)";

// All fields of a book's table in the order of one of them.
std::string wholeTable(Book book, const std::string& orderField)
{
    const std::string table(bookInfo(book).table);
    const std::string query = "SELECT " + table + ".* FROM " + table;
    return orderField.empty() ? query + ";" : query + " ORDER BY " + table + "." + orderField + ";";
}

} // namespace

std::string listQuery(Book book, const ListFilter& filter, const shell::Wording& wording)
{
    switch (book) {
    case Book::Workload:
        return workloadQuery(filter);
    case Book::Specialities:
        return wholeTable(book, "");
    case Book::Groups:
        return groupsQuery(wording);
    case Book::Teachers:
        return "SELECT SPPREP.* FROM  SPPREP ORDER BY FAMIO;";
    case Book::Rooms:
        return kRooms;
    case Book::Holidays:
        return kHolidays;
    case Book::BanReasons:
        return kBanReasons;
    case Book::LessonTimes:
        return wholeTable(book, "IDUR");
    case Book::Users:
        return kUsers;
    case Book::Students:
        return studentsQuery(filter);
    case Book::TimetableProjects:
        return wholeTable(book, "DAT1");
    case Book::Lessons:
        return kLessons;
    case Book::RoomTypes:
    case Book::Disciplines:
    case Book::Departments:
    case Book::LessonTypes:
    case Book::GroupTypes:
    case Book::StudyForms:
        return wholeTable(book, "NAIM");
    }
    assert(false);
    return {};
}

} // namespace refbooks
