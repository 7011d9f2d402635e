#include "demo/writer.h"

#include "jet/database.h"

#include <initializer_list>

namespace demo {

namespace {

using Columns = std::vector<std::string>;

jet::DateTime date(int day)
{
    return {static_cast<double>(day)};
}

// "8:30" of minutes since midnight.
std::string clock(int minutes)
{
    const std::string rest = std::to_string(minutes % 60);
    return std::to_string(minutes / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

void add(jet::Appender& appender, std::initializer_list<jet::Value> row)
{
    appender.append({row.begin(), row.size()});
}

// Rows of a book that consists of a name and, where given, a short name.
struct NamedRow
{
    const char* name;
    const char* shortName;
};
constexpr NamedRow kRoomTypes[] = {
    {"Лекционная", "ЛК"}, {"Компьютерный класс", "КК"}, {"Лаборатория", "ЛБ"}, {"Спортзал", "СЗ"}};
constexpr const char* kLessonTypes[] = {"Лекция", "Практическое занятие", "Лабораторная работа"};
constexpr const char* kGroupTypes[] = {"Очная", "Заочная"};
constexpr const char* kDepartments[] = {"Общеобразовательных дисциплин", "Специальных дисциплин"};
constexpr const char* kStreets[] = {"Ленина",   "Советская", "Мира",    "Гагарина",
                                    "Школьная", "Садовая",   "Пушкина", "Заводская"};
constexpr const char* kReasons[] = {"по собственному желанию", "в связи с переводом",
                                    "за академическую задолженность"};

template <std::size_t n>
const char* pickOf(const char* const (&list)[n], Random& random)
{
    return list[random.next() % n];
}

std::string phone(Random& random)
{
    std::string digits = "+7 9";
    for (const int group : {2, 3, 2, 2}) {
        for (int i = 0; i < group; ++i)
            digits += static_cast<char>('0' + random.between(0, 9));
        digits += group == 2 && digits.size() > 12 ? "-" : " ";
    }
    digits.pop_back();
    return digits;
}

} // namespace

Writer::Writer(jet::Database& database, const Institution& institution, const Calendar& calendar,
               const Size& size, Random& random)
    : m_database(database)
    , m_institution(institution)
    , m_calendar(calendar)
    , m_size(size)
    , m_random(random)
{}

void Writer::writeBooks()
{
    writeSettings();
    writeCalendar();
    writeSpecialities();
    writeDisciplines();
    writeTeachers();
    writeRooms();
    writeGroups();
    writeStudents();
    writeWorkload();
}

void Writer::writeSettings()
{
    // Column names are the file's; a settings row exists in every journal.
    const auto first = jet::DateTime{static_cast<double>(m_calendar.yearStart())}.parts();
    const std::string begin = "#09/01/" + std::to_string(first.year) + "#";
    const std::string end = "#06/30/" + std::to_string(first.year + 1) + "#";
    m_database.execute(
        "UPDATE RASP SET NAIM = \"Демонстрационный колледж\", "
        "ADR = \"г. Демонстрационный, ул. Учебная, д. 1\", DIR_D = \"Директор\", "
        "DIR_FIO = \"И.П. Соколова\", OTV_D = \"Заведующий отделением\", "
        "OTV_FIO = \"А.В. Морозов\", DIR_P = True, OTV_P = True, AvtSave = True, Uroki = True, "
        "DATR = "
        + end + ", DATN = " + begin + ", DATK = " + end
        + ", MNJ = " + std::to_string(m_size.hoursPerLesson) + ";");
}

void Writer::writeCalendar()
{
    jet::Appender holidayRows(m_database, "HOLI", Columns{"DAY", "MN", "NAIM"});
    for (const Holiday& holiday : holidays())
        add(holidayRows, {holiday.day, holiday.month, holiday.name});

    jet::Appender times(m_database, "UR_TIME", Columns{"IDUR", "NAIM"});
    const int length = 45 * m_size.hoursPerLesson;
    for (int number = 1; number <= kSlotsPerDay * 2 / m_size.hoursPerLesson + 1; ++number) {
        const int begin = 8 * 60 + 30 + (number - 1) * (length + 10);
        add(times, {number, clock(begin) + "-" + clock(begin + length)});
    }

    jet::Appender projects(m_database, "SPRASP", Columns{"DEY", "DAT1", "DAT2", "MEMO"});
    add(projects, {true, date(m_calendar.yearStart()), date(m_calendar.yearEnd()),
                   "Расписание учебного года"});
}

void Writer::writeSpecialities()
{
    jet::Appender rows(m_database, "SPOTD", Columns{"SOKR", "KOD", "NAIM"});
    for (const SpecialityPlan& plan : specialities())
        add(rows, {plan.shortName, plan.code, plan.name});
}

void Writer::writeDisciplines()
{
    jet::Appender rows(m_database, "SPPRED", Columns{"KOD", "MEMO", "NAIM"});
    int number = 0;
    for (const Discipline& discipline : m_institution.disciplines) {
        const std::string digits = std::to_string(++number);
        const std::string code = (digits.size() < 2 ? "ОП.0" : "ОП.") + digits;
        add(rows, {code, discipline.name, discipline.name});
    }
}

void Writer::writeTeachers()
{
    jet::Appender departments(m_database, "SPKAF", Columns{"NAIM"});
    for (const char* name : kDepartments)
        add(departments, {name});

    jet::Appender rows(m_database, "SPPREP", Columns{"TABNOM", "FAMIO", "IDK"});
    int number = 100;
    for (const Teacher& teacher : m_institution.teachers)
        add(rows, {std::to_string(++number), teacher.name.withInitials(), m_random.between(1, 2)});
}

void Writer::writeRooms()
{
    jet::Appender types(m_database, "SPAUD", Columns{"NAIM", "SOKR", "IT"});
    int number = 0;
    for (const NamedRow& type : kRoomTypes)
        add(types, {type.name, type.shortName, ++number});

    jet::Appender rooms(m_database, "SPKAUD", Columns{"IDT", "IA", "KAUDI", "KOL"});
    for (int room = 0; room < std::ssize(m_institution.teachers); ++room) {
        constexpr int kRoomsPerFloor = 40;
        const int label = (room / kRoomsPerFloor + 1) * 100 + room % kRoomsPerFloor + 1;
        add(rooms, {m_random.between(1, 3), room + 1, std::to_string(label), 30});
    }

    jet::Appender lessonTypes(m_database, "SPTIPZ", Columns{"NAIM"});
    for (const char* name : kLessonTypes)
        add(lessonTypes, {name});
}

void Writer::writeGroups()
{
    jet::Appender types(m_database, "SPTIPG", Columns{"NAIM"});
    for (const char* name : kGroupTypes)
        add(types, {name});

    jet::Appender rows(m_database, "SPGRUP",
                       Columns{"IDO", "IDP", "IG", "KURS", "FINAL", "NAIM", "IDF", "IDV"});
    int number = 0;
    for (const Group& group : m_institution.groups)
        add(rows, {group.speciality, group.curator, ++number, group.course, group.course == 4,
                   group.name, 1, 1});
}

void Writer::writeStudents()
{
    jet::Appender rows(m_database, "SPSTUD",
                       Columns{"IDG", "IDGG", "D_R", "POL", "FAM", "IM", "OTCH", "ADR", "TEL",
                               "prikazOtch", "prichOtch"});
    for (const Student& student : m_institution.students) {
        std::string order;
        std::string reason;
        if (student.expelledOn != 0) {
            const auto day = jet::DateTime{static_cast<double>(student.expelledOn)};
            order = "№ " + std::to_string(m_random.between(10, 250)) + "-у от "
                    + jet::Value(day).toText();
            reason = pickOf(kReasons, m_random);
        }
        const std::string address = std::string("ул. ") + pickOf(kStreets, m_random) + ", д. "
                                    + std::to_string(m_random.between(1, 120)) + ", кв. "
                                    + std::to_string(m_random.between(1, 90));
        add(rows, {student.group, student.subgroup, date(student.born), student.name.male,
                   student.name.family, student.name.given, student.name.patronymic, address,
                   phone(m_random), order, reason});
    }
}

int Writer::workloadKey(int workload, int term) const
{
    return workload * static_cast<int>(m_calendar.terms().size()) + term + 1;
}

void Writer::writeWorkload()
{
    constexpr int kWeeksPerTerm = 17;
    jet::Appender rows(m_database, "SPNAGR",
                       Columns{"IDP", "IDG", "IDD", "IDT", "CHSEM", "DATNN", "DATKK", "CH", "IDGG",
                               "IDZ", "IDNN", "IDA"});
    for (const Workload& workload : m_institution.workloads) {
        const int perWeek = static_cast<int>(workload.slots.size()) * 2;
        const int room =
            m_institution.teachers[static_cast<std::size_t>(workload.teacher - 1)].room;
        for (const Term& term : m_calendar.terms())
            add(rows, {workload.teacher, workload.group, workload.discipline, 1,
                       perWeek * kWeeksPerTerm, date(term.first), date(term.last), perWeek,
                       workload.subgroup, workload.subgroup == 0 ? 1 : 2, 0, room});
    }
}

void Writer::writeLessons(const std::vector<Lesson>& lessons)
{
    jet::Appender rows(
        m_database, "UROKI",
        Columns{"DAT", "UR", "IDP", "IDG", "IDGG", "IDA", "IDD", "IDN", "IDR", "ZP", "IDNN"});
    for (const Lesson& lesson : lessons) {
        const Workload& workload =
            m_institution.workloads[static_cast<std::size_t>(lesson.workload)];
        const int room =
            m_institution.teachers[static_cast<std::size_t>(workload.teacher - 1)].room;
        add(rows,
            {date(lesson.day), lesson.number, workload.teacher, workload.group, workload.subgroup,
             room, workload.discipline, workloadKey(lesson.workload, lesson.term), 1, false, 0});
    }
}

void Writer::writeAbsences(const std::vector<Lesson>& lessons, const std::vector<Absence>& absences)
{
    jet::Appender rows(m_database, "POS", Columns{"ID", "uv", "nuv", "dat", "UR", "IDD", "IDDG"});
    for (const Absence& absence : absences) {
        const Lesson& lesson = lessons[static_cast<std::size_t>(absence.lesson)];
        const Workload& workload =
            m_institution.workloads[static_cast<std::size_t>(lesson.workload)];
        const int hours = m_size.hoursPerLesson;
        add(rows, {absence.student, absence.excused ? hours : 0, absence.excused ? 0 : hours,
                   date(lesson.day), lesson.number, workload.discipline, workload.subgroup});
    }
}

void Writer::writeGrades(const std::vector<Grade>& grades)
{
    jet::Appender rows(m_database, "USP", Columns{"ID", "IDD", "OC", "DAT", "it", "TEK"});
    for (const Grade& grade : grades)
        add(rows, {grade.student, grade.discipline, grade.mark, date(grade.day),
                   grade.kind == GradeKind::Final, grade.kind == GradeKind::Current});
}

} // namespace demo
