#include "journals/journalpaper.h"

#include "data/settingsrow.h"
#include "journals/attendancesheet.h"
#include "journals/gradesheet.h"
#include "journals/gridroles.h"
#include "journals/students.h"
#include "journals/worded.h"
#include "papers/frame.h"

#include <QAbstractItemModel>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

constexpr int kNumberColumn = 0, kNameColumn = 1;
// Millimetres. The table of a month with 31 days fills an A4 page on its side.
constexpr double kNumberWidth = 7, kNameWidth = 46, kDayWidth = 5.2, kSumWidth = 11;
constexpr double kWidestCell = 14, kPageWidth = 267;
constexpr qsizetype kLongestLine = 13;        // of a heading that reads upwards
constexpr qsizetype kLongestLevelHeading = 3; // letters of a line; longer ones read upwards

QString heading(const QAbstractItemModel& model, int column)
{
    return model.headerData(column, Qt::Horizontal).toString();
}

bool isSum(const QAbstractItemModel& model, int row, int column)
{
    return model.index(row, column).data(TotalRole).toBool();
}

// A row of sums stands below the students: all of its columns are sums.
bool isSumRow(const QAbstractItemModel& model, int row)
{
    return isSum(model, row, kNameColumn);
}

papers::Ink inkOf(const QModelIndex& index)
{
    const QVariant state = index.data(StateRole);
    if (!state.isValid())
        return papers::Ink::Plain;
    switch (static_cast<AbsenceState>(state.toInt())) {
    case AbsenceState::Unexcused:
        return papers::Ink::Unexcused;
    case AbsenceState::Excused:
        return papers::Ink::Excused;
    default:
        return papers::Ink::Plain;
    }
}

// Broken where the lines are about alike, so that the head stays low.
QString inTwoLines(QString text)
{
    qsizetype best = -1;
    const auto unlike = [&](qsizetype at) { return std::abs(2 * at + 1 - text.size()); };
    for (qsizetype at = text.indexOf(u' '); at >= 0; at = text.indexOf(u' ', at + 1))
        if (best < 0 || unlike(at) < unlike(best))
            best = at;
    if (best >= 0 && !text.contains(u'\n') && text.size() > kLongestLine)
        text[best] = u'\n';
    return text;
}

papers::Cell headCell(const QAbstractItemModel& model, int column)
{
    // The word in full would make the head higher than the names below it need.
    QString text = heading(model, column).replace(u"неуважительных"_s, u"неуваж."_s);
    const QStringList lines = text.split(u'\n');
    const bool level = std::ranges::all_of(
        lines, [](const QString& line) { return line.size() <= kLongestLevelHeading; });
    papers::Cell cell = column == kNameColumn || level ? papers::heading(text)
                                                       : papers::rotatedHeading(inTwoLines(text));
    cell.shaded = model.headerData(column, Qt::Horizontal, DayOffRole).toBool();
    return cell;
}

papers::Cell bodyCell(const QAbstractItemModel& model, int row, int column)
{
    const QModelIndex index = model.index(row, column);
    const bool sums = isSumRow(model, row);
    QString text = index.data().toString();
    if (column == kNameColumn && !sums)
        text = withInitials(text);
    else if (text == gradeText(kPassGrade))
        text = kPassSign.toString();
    papers::Cell cell =
        papers::text(text, column == kNameColumn ? papers::Align::Left : papers::Align::Centre);
    cell.ink = inkOf(index);
    cell.bold = sums;
    cell.shaded = index.data(DayOffRole).toBool();
    return cell;
}

std::vector<double> widths(const QAbstractItemModel& model)
{
    const int columns = model.columnCount();
    std::vector<double> result(static_cast<std::size_t>(columns), kSumWidth);
    double taken = kNumberWidth + kNameWidth;
    int cells = 0;
    for (int column = kNameColumn + 1; column < columns; ++column)
        isSum(model, 0, column) ? taken += kSumWidth : ++cells;
    const double cellWidth =
        cells == 0 ? kDayWidth : std::clamp((kPageWidth - taken) / cells, kDayWidth, kWidestCell);
    for (int column = kNameColumn + 1; column < columns; ++column)
        if (!isSum(model, 0, column))
            result[static_cast<std::size_t>(column)] = cellWidth;
    result[kNumberColumn] = kNumberWidth;
    result[kNameColumn] = kNameWidth;
    return result;
}

QStringList whose(const JournalNames& names, std::optional<int> subgroup,
                  const shell::Wording& wording)
{
    QStringList about{worded(wording, u"Группа"_s) + u' ' + names.group};
    if (subgroup)
        about << QString::number(*subgroup) + u" п/г"_s;
    return about << names.discipline;
}

} // namespace

JournalHeading attendanceHeading(const AttendanceSelection& shown, const JournalNames& names,
                                 const shell::Wording& wording)
{
    const bool days = shown.mode == AttendanceMode::Days;
    return {worded(wording, days ? u"Журнал посещаемости"_s : u"Журнал занятий"_s),
            whose(names, shown.studentSubgroup(), wording) << monthText(shown.month),
            {worded(wording, u"Часы пропусков: прямой жирный - неуважительные, курсив - "
                             "уважительные, обычный - смешанные; X - нет занятия."_s)}};
}

JournalHeading gradesHeading(const GradeSelection& shown, const JournalNames& names,
                             const shell::Wording& wording)
{
    const QString year =
        u"%1 - %2 учебный год"_s.arg(shown.year.from.year()).arg(shown.year.to.year());
    return {u"Журнал успеваемости"_s,
            whose(names, shown.studentSubgroup(), wording)
                << (shown.byMonth() ? monthText(shown.month) : year),
            {worded(wording, u"з - зачет; X - нет занятия."_s)}};
}

papers::Paper journalPaper(const QAbstractItemModel& model, const JournalHeading& about,
                           const data::SettingsRow& settings)
{
    papers::Paper paper;
    paper.name = about.about.value(0);
    paper.title = about.title.toUpper();
    paper.subtitle = about.about.join(u" · "_s);
    paper.notes = about.notes;
    paper.widths = widths(model);
    paper.head.emplace_back();
    for (int column = 0; column < model.columnCount(); ++column)
        paper.head.front().push_back(headCell(model, column));
    for (int row = 0; row < model.rowCount(); ++row) {
        papers::Row& cells = paper.body.emplace_back();
        for (int column = 0; column < model.columnCount(); ++column) {
            papers::Cell& cell = cells.emplace_back(bodyCell(model, row, column));
            cell.rotated = paper.widths[static_cast<std::size_t>(column)] < kSumWidth
                           && shownText(cell).size() > kLongestLevelHeading;
        }
    }
    papers::addFrame(paper, settings);
    return paper;
}

} // namespace journals
