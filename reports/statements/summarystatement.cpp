#include "data/convert.h"
#include "jet/database.h"
#include "journals/attendancesheetreader.h"
#include "journals/lists.h"
#include "papers/frame.h"
#include "reports/statements.h"
#include "reports/statements/gradetable.h"
#include "reports/worded.h"

#include <algorithm>
#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

constexpr double kGroupWidth = 24, kCuratorWidth = 34, kFigureWidth = 11.8; // mm
constexpr int kLead = 3;                                                    // columns

// The columns of figures, in order.
enum Column : int {
    ColumnSize,
    ColumnFives,
    ColumnFours,
    ColumnThrees,
    ColumnTwos,
    ColumnNoMarks,
    ColumnQuality,
    ColumnPassRate,
    ColumnAverage,
    ColumnTaught,
    ColumnPersonHours,
    ColumnMissed,
    ColumnExcused,
    ColumnUnexcused,
    ColumnPerStudent,
    ColumnAttendance,
    ColumnForgiving,
    ColumnCount, // how many
};

struct Figures
{
    Performance performance;
    AttendanceFigures attendance;

    Figures& operator+=(const Figures& other)
    {
        performance += other.performance;
        attendance += other.attendance;
        return *this;
    }
};

struct Group
{
    GroupRow row;
    Figures figures;
};

// The groups of one speciality, by name.
struct Speciality
{
    QString name;
    std::vector<Group> groups;
};

// Over several months a student belongs where all of his monthly grades put him.
Figures readFigures(const StatementSource& source, const ReportRequest& request,
                    journals::GroupId group)
{
    std::map<journals::StudentId, GradeCounts> grades;
    journals::AttendanceSelection absences;
    absences.group = group;
    journals::Absence missed;
    for (int i = 0; i < request.months; ++i) {
        absences.month = journals::monthOf(request.month.first().addMonths(i));
        const GradeTable table = readGradeTable(source, monthGrades(source, absences.month, group));
        for (std::size_t student = 0; student < table.sheet.students.size(); ++student)
            grades[table.sheet.students[student].id] += table.countsOf(student);
        missed += journals::readAttendanceSheet(source.database, absences).monthTotal();
    }
    Performance performance;
    for (const auto& [student, counts] : grades)
        performance.add(counts);
    return {performance,
            AttendanceFigures::ofGroup(
                performance.all(), taughtHours(source.database, group, monthsOf(request)), missed)};
}

using GoesOn = std::function<bool(std::size_t done, std::size_t all)>;

// By name; groups without a speciality stand last. Nothing when it was not to go on.
std::optional<std::vector<Speciality>>
readSpecialities(const StatementSource& source, const ReportRequest& request, const GoesOn& goesOn)
{
    std::vector<Speciality> specialities;
    const auto groups = journals::groupList(source.database);
    std::size_t done = 0;
    for (const auto& entry : groups) {
        if (!goesOn(done++, groups.size()))
            return std::nullopt;
        Group group{readGroup(source.database, entry.key), readFigures(source, request, entry.key)};
        const QString name = specialityText(group.row);
        auto found = std::ranges::find(specialities, name, &Speciality::name);
        if (found == specialities.end())
            found = specialities.insert(found, {name, {}});
        found->groups.push_back(std::move(group));
    }
    std::ranges::sort(specialities, [](const Speciality& left, const Speciality& right) {
        if (left.name.isEmpty() != right.name.isEmpty())
            return right.name.isEmpty();
        return QString::localeAwareCompare(left.name, right.name) < 0;
    });
    return specialities;
}

int value(const Figures& figures, Column figure)
{
    const Performance& students = figures.performance;
    const AttendanceFigures& hours = figures.attendance;
    switch (figure) {
    case ColumnSize:
        return students.all();
    case ColumnFives:
    case ColumnFours:
    case ColumnThrees:
    case ColumnTwos:
    case ColumnNoMarks:
        return students.students[static_cast<std::size_t>(figure - ColumnFives)];
    case ColumnTaught:
        return hours.hours;
    case ColumnPersonHours:
        return hours.personHours;
    case ColumnMissed:
        return hours.missed.total();
    case ColumnExcused:
        return hours.missed.excused;
    default:
        return hours.missed.unexcused;
    }
}

class SummaryTable
{
public:
    explicit SummaryTable(const StatementSource& source)
        : m_source(source)
    {}

    std::vector<Row> fill(const std::vector<Speciality>& specialities)
    {
        Figures all;
        for (const Speciality& speciality : specialities)
            all += add(speciality);
        addSums(u"ВСЕГО ПО УЧЕБНОМУ ЗАВЕДЕНИЮ"_s, all, 0);
        return std::move(m_body);
    }

private:
    int line() const { return static_cast<int>(m_body.size()); }

    Figures add(const Speciality& speciality)
    {
        const QString none = worded(m_source.wording, u"Без специальности"_s);
        m_body.push_back(
            {totalLabel(speciality.name.isEmpty() ? none : speciality.name, kLead + ColumnCount)});
        const int first = line();
        Figures sum;
        for (const Group& group : speciality.groups) {
            Row row{number(++m_number), text(group.row.name), text(group.row.curator)};
            addFigures(row, group.figures);
            m_body.push_back(std::move(row));
            sum += group.figures;
        }
        addSums(worded(m_source.wording, u"Итого по специальности"_s), sum, first);
        return sum;
    }

    void addSums(const QString& label, const Figures& sum, int first)
    {
        Row row{totalLabel(label, kLead)};
        addFigures(row, sum);
        for (int figure = 0; figure < ColumnCount; ++figure) {
            Cell& cell = row[static_cast<std::size_t>(figure + 1)];
            cell.bold = true;
            // SUBTOTAL leaves out the subtotals above it.
            if (cell.formula.isEmpty() && figure != ColumnAverage && line() > first)
                cell.formula = u"SUBTOTAL(9,%1:%2)"_s.arg(place(kLead + figure, first),
                                                          place(kLead + figure, line() - 1));
        }
        m_body.push_back(std::move(row));
    }

    // A share in percent of the sum of the columns, computed in the row.
    QString share(const QString& part, Column whole, int factor = 100) const
    {
        return u"IF(%1=0,\"—\",(%2)/%1*%3)"_s.arg(at(whole), part, QString::number(factor));
    }
    QString at(Column figure) const { return place(kLead + figure, line()); }

    void addFigures(Row& row, const Figures& figures) const
    {
        const Performance& students = figures.performance;
        const AttendanceFigures& hours = figures.attendance;
        const QString good = at(ColumnFives) + u'+' + at(ColumnFours);
        for (int figure = 0; figure < ColumnCount; ++figure) {
            switch (figure) {
            case ColumnQuality:
                row.push_back(rateCell(students.quality(), share(good, ColumnSize)));
                break;
            case ColumnPassRate:
                row.push_back(rateCell(students.passRate(),
                                       share(good + u'+' + at(ColumnThrees), ColumnSize)));
                break;
            case ColumnAverage:
                row.push_back(averageCell(students.grades.average()));
                break;
            case ColumnPerStudent:
                row.push_back(rateCell(hours.perStudent(), share(at(ColumnMissed), ColumnSize, 1)));
                break;
            case ColumnAttendance:
                row.push_back(rateCell(
                    hours.attendance(),
                    share(at(ColumnPersonHours) + u'-' + at(ColumnMissed), ColumnPersonHours)));
                break;
            case ColumnForgiving:
                row.push_back(rateCell(
                    hours.forgiving(),
                    share(at(ColumnPersonHours) + u'-' + at(ColumnUnexcused), ColumnPersonHours)));
                break;
            default:
                row.push_back(number(value(figures, static_cast<Column>(figure))));
            }
        }
    }

    const StatementSource& m_source;
    std::vector<Row> m_body;
    int m_number = 0;
};

std::vector<Row> headOf(const StatementSource& source)
{
    Row head{heading(u"№"_s), heading(worded(source.wording, u"Группа"_s)),
             heading(worded(source.wording, u"Куратор"_s))};
    for (const QString& figure :
         {u"Состав"_s, u"на «5»"_s, u"на «4» и «5»"_s, u"с «3»"_s, u"с «2»"_s, u"без оценок"_s,
          u"Качественная, %"_s, u"Общая, %"_s, u"Средний балл"_s, u"Выдано часов"_s,
          u"Человеко-часов"_s, u"Пропущено всего"_s, u"по уважительным"_s, u"без уважительных"_s,
          u"Пропущено на 1 чел."_s, u"Посещаемость, %"_s, u"с учетом уваж., %"_s})
        head.push_back(rotatedHeading(figure));
    return {head};
}

} // namespace

std::vector<Paper> summaryStatement(const StatementSource& source, const ReportRequest& request,
                                    const GoesOn& goesOn)
{
    const auto specialities = readSpecialities(source, request, goesOn);
    if (!specialities)
        return {};
    Paper paper;
    paper.name = reportTitle(ReportKind::Summary);
    paper.title = u"СВОДНЫЙ ОТЧЕТ ПО УСПЕВАЕМОСТИ И ПОСЕЩАЕМОСТИ"_s;
    paper.subtitle = u"за "_s + journals::monthText(request.month);
    if (request.months > 1)
        paper.subtitle += u" - "_s + journals::monthText(journals::monthOf(monthsOf(request).to));
    paper.widths = {kNumberWidth, kGroupWidth, kCuratorWidth};
    paper.widths.insert(paper.widths.end(), ColumnCount, kFigureWidth);
    paper.head = headOf(source);
    paper.body = SummaryTable(source).fill(*specialities);
    paper.notes = {worded(source.wording,
                          u"Каждый студент учтен один раз: без оценок; иначе с «2»; иначе с «3»; "
                          "иначе на «4» и «5»; иначе на «5»."_s),
                   performanceFormulas(source)};
    paper.notes << attendanceFormulas(source)
                << u"Проценты и средние итоговых строк вычислены по суммам, а не как среднее из "
                   "процентов."_s;
    addFrame(paper, source.settings);
    return {std::move(paper)};
}

} // namespace reports
