#include "journals/attendancequeries.h"
#include "journals/graderows.h"
#include "journals/lists.h"
#include "journals/students.h"
#include "papers/frame.h"
#include "reports/statements.h"
#include "reports/statements/gradetable.h"
#include "reports/worded.h"

#include <algorithm>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

using journals::DisciplineId;
using journals::StudentId;

constexpr double kWidths[] = {7, 52, 44, 16, 15, 16, 30}; // mm
constexpr std::size_t kMostOnHalf = 15;                   // disciplines

using Key = std::pair<StudentId, DisciplineId>;

// What all cards of a group are made from.
struct CardContent
{
    const StatementSource& source;
    GradeTable table; // monthly grades
    std::vector<std::pair<DisciplineId, QString>> disciplines;
    std::map<Key, QString> current; // "5 4 5"
    std::map<Key, journals::Absence> missed;
    journals::Month month;
};

// The disciplines taught in the month or with monthly grades, then what else has grades or hours.
void addDisciplines(CardContent& content)
{
    std::set<DisciplineId> known;
    for (const auto& column : content.table.sheet.columns)
        if (known.insert(column.discipline).second)
            content.disciplines.emplace_back(column.discipline, column.title);
    std::set<DisciplineId> others;
    for (const auto& [key, grades] : content.current)
        others.insert(key.second);
    for (const auto& [key, hours] : content.missed)
        others.insert(key.second);
    for (const DisciplineId discipline : others)
        if (known.insert(discipline).second)
            content.disciplines.emplace_back(discipline,
                                             disciplineName(content.source.database, discipline));
}

CardContent readContent(const StatementSource& source, journals::Month month,
                        journals::GroupId group)
{
    journals::GradeSelection grades = monthGrades(source, month, group);
    CardContent content{source, readGradeTable(source, grades), {}, {}, {}, month};
    grades.mode = journals::GradeMode::Current;
    grades.allDisciplines = false;
    for (const auto& grade : journals::readGrades(source.database, grades)) {
        QString& text = content.current[{grade.student, grade.discipline}];
        if (!text.isEmpty())
            text += u' ';
        text += grade.grade == journals::kPassGrade ? journals::kPassSign.toString()
                                                    : journals::gradeText(grade.grade);
    }
    journals::AttendanceSelection absences;
    absences.group = group;
    absences.month = month;
    for (const auto& row : journals::readDisciplineAbsences(source.database, absences))
        content.missed[{row.student, row.discipline}] += row.hours;
    addDisciplines(content);
    return content;
}

std::vector<Row> headOf(const CardContent& content)
{
    const auto& wording = content.source.wording;
    return {{heading(u"№"_s, 1, 2), heading(worded(wording, u"Дисциплина"_s), 1, 2),
             heading(u"Текущие оценки"_s, 1, 2), heading(u"За месяц"_s, 1, 2),
             heading(u"Пропущено, час."_s, 2), heading(worded(wording, u"Преподаватель"_s), 1, 2)},
            {heading(u"всего"_s), heading(u"неуваж."_s)}};
}

template <class Value>
Value found(const std::map<Key, Value>& values, const Key& key)
{
    const auto at = values.find(key);
    return at == values.end() ? Value() : at->second;
}

Row disciplineRow(const CardContent& content, std::size_t student, std::size_t number)
{
    const auto& [discipline, name] = content.disciplines[number];
    const auto& row = content.table.sheet.students[student];
    const Key key{row.id, discipline};
    const journals::Absence missed = found(content.missed, key);
    const auto teacher = content.table.teachers.find(discipline);
    return {papers::number(static_cast<double>(number + 1)),
            text(name),
            text(found(content.current, key)),
            number < row.cells.size() ? gradeCell(row.cells[number].grade) : Cell(),
            hours(missed.total()),
            hours(missed.unexcused, Ink::Unexcused),
            text(teacher == content.table.teachers.end() ? QString() : teacher->second)};
}

Row totalRow(const CardContent& content, std::size_t student)
{
    journals::Absence missed;
    for (const auto& discipline : content.disciplines)
        missed +=
            found(content.missed, Key{content.table.sheet.students[student].id, discipline.first});
    return {totalLabel(u"Итого: средний балл за месяц, часы"_s, 3),
            bold(averageCell(content.table.countsOf(student).average())),
            bold(hours(missed.total())), bold(hours(missed.unexcused, Ink::Unexcused)),
            emptyCell()};
}

QStringList signatureLines(const CardContent& content)
{
    const QString curator = content.table.group.curator;
    return {
        QString(u' '),
        worded(content.source.wording, u"Куратор"_s) + u" ______________ /"_s
            + (curator.isEmpty() ? u"____________________"_s : curator) + u"/      "_s
            + u"Родители (законные представители) ______________    «___» __________ 20___ г."_s};
}

Paper card(const CardContent& content, std::size_t student)
{
    const auto& wording = content.source.wording;
    const GroupRow& group = content.table.group;
    Paper paper;
    paper.name = group.name;
    paper.person = journals::withInitials(content.table.sheet.students[student].name);
    paper.landscape = false;
    paper.half = content.disciplines.size() <= kMostOnHalf;
    paper.title = u"ТАБЕЛЬ УСПЕВАЕМОСТИ И ПОСЕЩАЕМОСТИ за "_s + journals::monthText(content.month);
    paper.subtitle = worded(wording, u"Студент"_s) + u": "_s
                     + content.table.sheet.students[student].name + u" · "_s
                     + worded(wording, u"Группа"_s).toLower() + u' ' + group.name;
    if (group.course > 0 && !wording.isSchool())
        paper.subtitle += u", курс %1"_s.arg(group.course);
    paper.widths.assign(std::begin(kWidths), std::end(kWidths));
    paper.head = headOf(content);
    for (std::size_t number = 0; number < content.disciplines.size(); ++number)
        paper.body.push_back(disciplineRow(content, student, number));
    paper.body.push_back(totalRow(content, student));
    data::SettingsRow settings = content.source.settings;
    settings.printHead = settings.printResponsible = false;
    addFrame(paper, settings);
    if (const QString speciality = specialityText(group); !speciality.isEmpty())
        paper.institution << worded(wording, u"Специальность"_s) + u": "_s + speciality;
    paper.notes = signatureLines(content);
    return paper;
}

} // namespace

std::vector<Paper> reportCards(const StatementSource& source, const ReportRequest& request,
                               journals::GroupId group)
{
    const CardContent content = readContent(source, request.month, group);
    const auto& students = content.table.sheet.students;
    std::vector<Paper> cards;
    for (std::size_t student = 0; student < students.size(); ++student)
        if (!request.student || students[student].id == *request.student)
            cards.push_back(card(content, student));
    return cards;
}

} // namespace reports
