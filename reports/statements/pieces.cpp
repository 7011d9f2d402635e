#include "reports/statements/pieces.h"

#include "journals/students.h"
#include "reports/worded.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

const QString kNothing = u"—"_s;
const QString kPassText = u"Зач."_s;

Cell centred(Cell cell)
{
    cell.align = Align::Centre;
    return cell;
}

Cell valueCell(const Rate& rate, int decimals, const QString& formula)
{
    Cell cell = rate ? number(*rate, decimals) : Cell();
    cell.decimals = decimals;
    cell.formula = formula;
    return cell;
}

} // namespace

QString specialityText(const GroupRow& group)
{
    return QString(group.specialityCode + u' ' + group.speciality).simplified();
}

QString subtitle(const StatementSource& source, const GroupRow& group, const QString& period)
{
    QStringList parts{worded(source.wording, u"Группа"_s) + u' ' + group.name};
    if (const QString speciality = specialityText(group); !speciality.isEmpty())
        parts << speciality;
    if (group.course > 0 && !source.wording.isSchool())
        parts << u"курс %1"_s.arg(group.course);
    parts << period;
    return parts.join(u" · "_s);
}

QString yearText(const journals::Period& year)
{
    return u"%1-%2 учебный год"_s.arg(year.from.year()).arg(year.to.year());
}

Paper groupPaper(const StatementSource& source, const GroupRow& group, const QString& title,
                 const QString& period)
{
    Paper paper;
    paper.name = group.name;
    paper.title = title;
    paper.subtitle = subtitle(source, group, period);
    paper.widths = {kNumberWidth, kNameWidth};
    return paper;
}

Signature curatorSignature(const StatementSource& source, const GroupRow& group)
{
    return {worded(source.wording, u"Куратор группы"_s), group.curator};
}

QString place(int column, int row)
{
    return columnLetters(column) + QString::number(kFirstBodyRow + row);
}

QString down(int column, int rows)
{
    return place(column, 0) + u':' + place(column, rows - 1);
}

QString across(int row, int column, int columns)
{
    return place(column, row) + u':' + place(column + columns - 1, row);
}

Row studentHeads(int rows)
{
    return {heading(u"№"_s, 1, rows), heading(u"Фамилия И. О."_s, 1, rows)};
}

Row studentCells(std::size_t number, const QString& name)
{
    return {papers::number(static_cast<double>(number)), text(journals::withInitials(name))};
}

Cell totalLabel(const QString& value, int columns)
{
    Cell cell = bold(text(value));
    cell.columns = columns;
    return cell;
}

Cell headText(const QString& value, bool dayOff)
{
    Cell cell = heading(value);
    cell.shaded = dayOff;
    return cell;
}

void addDayHead(std::vector<Row>& head, QDate date, bool dayOff)
{
    head[0].push_back(headText(QString::number(date.day()), dayOff));
    head[1].push_back(headText(journals::weekdayLetters(date), dayOff));
}

Cell gradeCell(int grade, const QString& pass)
{
    if (grade == journals::kNoGrade)
        return {};
    if (grade == journals::kPassGrade)
        return centred(text(pass));
    constexpr int kLeast = 2, kBest = 5;
    return grade < kLeast || grade > kBest ? centred(text(journals::gradeText(grade)))
                                           : number(grade);
}

Cell rateCell(const Rate& rate, const QString& formula)
{
    Cell cell = valueCell(rate, kRateDecimals, formula);
    if (!rate)
        cell.value = kNothing;
    return cell;
}

Cell averageCell(const Rate& average, const QString& formula)
{
    return valueCell(average, kAverageDecimals, formula);
}

Cell countCell(int count, const QString& formula)
{
    Cell cell = number(count);
    cell.formula = formula;
    return cell;
}

Cell sumCell(int sum, int column, int rows)
{
    return bold(countCell(sum, rows == 0 ? QString() : sumFormula(column, rows)));
}

Cell emptyCell(int columns, int rows)
{
    Cell cell;
    cell.columns = columns;
    cell.rows = rows;
    return cell;
}

QString figureText(const Rate& figure)
{
    return figure ? shownText(number(*figure, kRateDecimals)) : kNothing;
}

QString rateText(const Rate& rate)
{
    return rate ? figureText(rate) + u" %"_s : kNothing;
}

QString averageFormula(const QString& range)
{
    return u"IF(COUNT(%1)=0,\"\",AVERAGE(%1))"_s.arg(range);
}

QString qualityFormula(const QString& range)
{
    return u"IF(COUNT(%1)=0,\"—\",(COUNTIF(%1,5)+COUNTIF(%1,4))/COUNT(%1)*100)"_s.arg(range);
}

QString passFormula(const QString& range)
{
    return u"IF(COUNT(%1)=0,\"—\",(COUNT(%1)-COUNTIF(%1,2))/COUNT(%1)*100)"_s.arg(range);
}

QString countFormula(const QString& range, int grade)
{
    const QString wanted =
        grade == journals::kPassGrade ? u'"' + kPassText + u'"' : QString::number(grade);
    return u"COUNTIF(%1,%2)"_s.arg(range, wanted);
}

QStringList performanceLines(const StatementSource& source, const Performance& group)
{
    const QString counts =
        u"Всего %1 %2: на «5» - %3; на «4» и «5» - %4; с «3» - %5, из них с одной «3» - %6; имеют "
        "«2» - %7; без оценок - %8."_s.arg(worded(source.wording, u"студентов"_s))
            .arg(group.all())
            .arg(group.of(Standing::Fives))
            .arg(group.of(Standing::Fours))
            .arg(group.of(Standing::Threes))
            .arg(group.oneThree)
            .arg(group.of(Standing::Failed))
            .arg(group.of(Standing::NoMarks));
    return {counts, u"%1: качественная успеваемость %2, общая успеваемость %3."_s.arg(
                        worded(source.wording, u"Группа"_s), rateText(group.quality()),
                        rateText(group.passRate()))};
}

QString performanceFormulas(const StatementSource& source)
{
    return worded(source.wording, u"По группе: качественная = студенты только с «4» и «5» / состав "
                                  "× 100; общая = студенты с оценками без «2» / состав × 100."_s);
}

QString gradeFormulasLine()
{
    return u"По графе: качественная = («5» + «4») / оценки 5, 4, 3, 2 × 100; общая = («5» + «4» + "
           "«3») / те же оценки × 100. Зачет в средний балл и проценты не входит."_s;
}

QString attendanceLine(const AttendanceFigures& figures)
{
    return u"Посещаемость %1; с учетом уважительных причин %2"_s.arg(rateText(figures.attendance()),
                                                                     rateText(figures.forgiving()));
}

QStringList attendanceFormulas(const StatementSource& source)
{
    return {
        u"Посещаемость = (чел.-часы - пропущено) / чел.-часы × 100; с учетом уважительных "
        "причин = (чел.-часы - неуважительные) / чел.-часы × 100; чел.-часы = выдано × состав. "_s
        + worded(source.wording,
                 u"Выдано учебных часов = занятия всей группы и первой подгруппы × часы "
                 "занятия."_s)};
}

} // namespace reports
