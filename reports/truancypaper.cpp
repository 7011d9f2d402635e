#include "reports/truancypaper.h"

#include "data/settingsrow.h"
#include "papers/frame.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using namespace papers;

const QString kExcusedHead = u"ув."_s;
const QString kUnexcusedHead = u"неув."_s;
constexpr int kNameColumns = 1;
constexpr double kRowNameWidth = 46, kHoursWidth = 8.5; // mm
constexpr int kPair = 2;                                // excused and unexcused

QString title(TruancyKind kind, const shell::Wording& wording)
{
    struct Titles
    {
        QString college, school;
    };
    static const std::array<Titles, 3> kTitles{{
        {u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО ПРЕПОДАВАТЕЛЯМ"_s,
         u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО УЧИТЕЛЯМ"_s},
        {u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО ГРУППАМ"_s, u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО КЛАССАМ"_s},
        {u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО ПРЕПОДАВАТЕЛЯМ/ГРУППАМ"_s,
         u"ОТЧЕТ ПО ПРОГУЛАМ УЧАЩИХСЯ ПО УЧИТЕЛЯМ/КЛАССАМ"_s},
    }};
    const Titles& titles = kTitles[static_cast<std::size_t>(kind)];
    return wording.isSchool() ? titles.school : titles.college;
}

QString periodText(const journals::Period& period)
{
    const QString pattern = u"dd.MM.yyyy"_s;
    return u"с %1 по %2"_s.arg(period.from.toString(pattern), period.to.toString(pattern));
}

QString subtitle(const TruancyReport& report, const shell::Wording& wording)
{
    QString text = periodText(report.period);
    if (report.kind != TruancyKind::GroupsByDay)
        text +=
            report.rule == TruancyRule::Lessons
                ? wording.isSchool() ? u", по проведенным урокам"_s : u", по проведенным занятиям"_s
                : u", по учебной нагрузке"_s;
    return text;
}

void addPair(std::vector<Row>& head, const QString& text)
{
    head[0].push_back(heading(text, kPair));
    head[1].push_back(heading(kExcusedHead));
    head[1].push_back(heading(kUnexcusedHead));
}

std::vector<Row> headOf(const TruancyReport& report, const shell::Wording& wording)
{
    const bool byGroup = report.kind == TruancyKind::TeachersByGroup;
    const QString name = report.kind == TruancyKind::GroupsByDay ? u"Группа"_s : u"Преподаватель"_s;
    std::vector<Row> head(2);
    head[0].push_back(heading(byGroup ? wording.translate(u"Группа:"_s) : u"Дата:"_s));
    head[0].back().align = Align::Right;
    head[1].push_back(heading(wording.translate(name)));
    for (const QString& column : report.columns)
        addPair(head, column);
    addPair(head, u"Всего"_s);
    return head;
}

// The sum over the columns of one kind in a body row.
QString rowFormula(const TruancyReport& report, std::size_t row, const QString& kind)
{
    const int last = kNameColumns + kPair * static_cast<int>(report.columns.size()) - 1;
    const QString from = columnLetters(kNameColumns), to = columnLetters(last);
    const QString line = QString::number(kFirstBodyRow + static_cast<int>(row));
    return u"SUMIF($%1$%2:$%3$%2,\"%4\",%1%5:%3%5)"_s.arg(from, QString::number(kFirstBodyRow - 1),
                                                          to, kind, line);
}

Row bodyRow(const TruancyReport& report, std::size_t row)
{
    Row cells{text(report.rows[row])};
    for (std::size_t column = 0; column < report.columns.size(); ++column) {
        const journals::Absence& cell = report.cell(row, column);
        cells.push_back(hours(cell.excused, Ink::Excused));
        cells.push_back(hours(cell.unexcused, Ink::Unexcused));
    }
    const journals::Absence total = report.rowTotal(row);
    cells.push_back(hours(total.excused, Ink::Excused));
    cells.push_back(hours(total.unexcused, Ink::Unexcused));
    if (!report.columns.empty()) {
        cells[cells.size() - 2].formula = rowFormula(report, row, kExcusedHead);
        cells[cells.size() - 1].formula = rowFormula(report, row, kUnexcusedHead);
    }
    return cells;
}

Row totalRow(const TruancyReport& report)
{
    Row cells{bold(text(u"ИТОГО"_s))};
    const int rows = static_cast<int>(report.rows.size());
    const auto add = [&](int value) {
        Cell cell = bold(number(value));
        if (rows > 0)
            cell.formula = sumFormula(static_cast<int>(cells.size()), rows);
        cells.push_back(cell);
    };
    for (std::size_t column = 0; column < report.columns.size(); ++column) {
        add(report.columnTotal(column).excused);
        add(report.columnTotal(column).unexcused);
    }
    add(report.total().excused);
    add(report.total().unexcused);
    return cells;
}

QStringList notes(const TruancyReport& report, const shell::Wording& wording)
{
    QStringList lines{u"Пропущено часов: ув. - по уважительным причинам, неув. - по "
                      "неуважительным."_s};
    if (report.kind != TruancyKind::GroupsByDay)
        lines << (report.rule == TruancyRule::Lessons
                      ? wording.isSchool()
                            ? u"Пропуск отнесен к учителю, который в этот день вел урок "
                              "предмета в классе и подгруппе учащегося."_s
                            : u"Пропуск отнесен к преподавателю, который в этот день вел занятие "
                              "дисциплины в группе и подгруппе студента."_s
                  : wording.isSchool()
                      ? u"Пропуск отнесен к учителю, у которого есть нагрузка по предмету "
                        "в классе и подгруппе учащегося."_s
                      : u"Пропуск отнесен к преподавателю, у которого есть нагрузка по "
                        "дисциплине в группе и подгруппе студента."_s);
    return lines;
}

} // namespace

papers::Document truancyDocument(const TruancyReport& report, const data::SettingsRow& settings,
                                 const shell::Wording& wording)
{
    Paper paper;
    paper.name = u"Прогулы"_s;
    paper.title = title(report.kind, wording);
    paper.subtitle = subtitle(report, wording);
    paper.leadColumns = kNameColumns;
    paper.widths = {kRowNameWidth};
    paper.widths.insert(paper.widths.end(), kPair * (report.columns.size() + 1), kHoursWidth);
    paper.head = headOf(report, wording);
    for (std::size_t row = 0; row < report.rows.size(); ++row)
        paper.body.push_back(bodyRow(report, row));
    paper.body.push_back(totalRow(report));
    paper.notes = notes(report, wording);
    addFrame(paper, settings);
    const QString name = u"Отчет по прогулам "_s + report.period.from.toString(u"yyyy-MM-dd"_s)
                         + u'_' + report.period.to.toString(u"yyyy-MM-dd"_s);
    return {u"truancy"_s, name, {std::move(paper)}};
}

} // namespace reports
