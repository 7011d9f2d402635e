#include "journals/attendancemodel.h"

#include "journals/hours.h"
#include "journals/worded.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

std::size_t position(int number)
{
    return static_cast<std::size_t>(number);
}

} // namespace

AttendanceModel::AttendanceModel(Attendance& attendance, shell::Wording wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_attendance(attendance)
    , m_wording(wording)
{}

bool AttendanceModel::load(const AttendanceSelection& selection)
{
    auto sheet = m_attendance.load(selection);
    beginResetModel();
    m_sheet = std::move(sheet);
    endResetModel();
    return m_sheet.has_value();
}

void AttendanceModel::clear()
{
    beginResetModel();
    m_sheet.reset();
    endResetModel();
}

int AttendanceModel::apply(AbsenceAction action, const QModelIndexList& indexes)
{
    if (!m_sheet || indexes.isEmpty())
        return 0;
    std::vector<GridCell> cells;
    for (const QModelIndex& index : indexes)
        cells.push_back({index.row(), index.column()});
    const int changed = m_attendance.apply(action, *m_sheet, cells);
    if (changed > 0)
        announce(cells);
    return changed;
}

bool AttendanceModel::offers(AbsenceAction action, const QModelIndex& index) const
{
    return m_sheet && index.isValid()
           && Attendance::offers(action, *m_sheet, {index.row(), index.column()});
}

// What the cells are part of: their rows' balances, their columns' sums, the sums of both.
// Of lessons held for several subgroups at once another column may show the change.
void AttendanceModel::announce(const std::vector<GridCell>& cells)
{
    int top = rowCount(), bottom = 0, left = columnCount(), right = 0;
    for (const GridCell cell : cells) {
        top = std::min(top, cell.row);
        bottom = std::max(bottom, cell.row);
        left = std::min(left, cell.column);
        right = std::max(right, cell.column);
    }
    if (m_sheet->selection.mode == AttendanceMode::Lessons) {
        left = firstCellColumn();
        right = endCellColumn() - 1;
    }
    const int sums = rowCount() - kTotalRows, last = columnCount() - 1;
    emit dataChanged(index(top, left), index(bottom, right));
    emit dataChanged(index(top, endCellColumn()), index(bottom, last));
    emit dataChanged(index(sums, left), index(sums + kTotalRows - 1, right));
    emit dataChanged(index(sums, endCellColumn()), index(sums + kTotalRows - 1, last));
}

int AttendanceModel::rowCount(const QModelIndex& parent) const
{
    return !m_sheet || parent.isValid() ? 0
                                        : static_cast<int>(m_sheet->students.size()) + kTotalRows;
}

int AttendanceModel::columnCount(const QModelIndex& parent) const
{
    return !m_sheet || parent.isValid()
               ? 0
               : static_cast<int>(m_sheet->columns.size()) + kLeadColumns + kTrailColumns;
}

bool AttendanceModel::isTotalRow(int row) const
{
    return row >= rowCount() - kTotalRows;
}

const AttendanceColumn* AttendanceModel::dayColumn(int column) const
{
    return column >= firstCellColumn() && column < endCellColumn()
               ? &m_sheet->columns[position(column - kLeadColumns)]
               : nullptr;
}

QVariant AttendanceModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = index.row(), column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::TextAlignmentRole:
        return static_cast<int>(column == 1 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return spokenText(row, column);
    case StateRole:
        return static_cast<int>(state(row, column));
    case DayOffRole:
        return dayColumn(column) && dayColumn(column)->dayOff;
    case TotalRole:
        return isTotalRow(row) || column >= endCellColumn() || column == kLeadColumns - 1;
    default:
        return {};
    }
}

QString AttendanceModel::text(int row, int column) const
{
    if (isTotalRow(row))
        return totalText(row, column);
    const AttendanceStudent& student = m_sheet->students[position(row)];
    if (dayColumn(column))
        return m_sheet->cellText(position(row), position(column - kLeadColumns));
    if (column == 0)
        return QString::number(row + 1);
    if (column == 1)
        return student.name;
    if (column == 2)
        return QString::number(student.start.total());
    const int trail = column - endCellColumn();
    return QString::number(trail == 0   ? student.month.total()
                           : trail == 1 ? student.end().total()
                                        : student.end().unexcused);
}

QString AttendanceModel::totalText(int row, int column) const
{
    const bool unexcusedOnly = row == rowCount() - 1;
    const auto number = [unexcusedOnly](const Absence& sum) {
        return QString::number(unexcusedOnly ? sum.unexcused : sum.total());
    };
    if (dayColumn(column)) {
        const Absence& sum = m_sheet->columnTotals[position(column - kLeadColumns)];
        return sum.total() == 0 ? QString() : number(sum);
    }
    if (column == 0)
        return {};
    if (column == 1)
        return unexcusedOnly ? u"в т.ч. неуважительных, час."_s : u"Итого за день, час."_s;
    if (column == 2)
        return number(m_sheet->startTotal());
    const int trail = column - endCellColumn();
    if (trail == 0)
        return number(m_sheet->monthTotal());
    return trail == 1 ? number(m_sheet->endTotal())
                      : QString::number(m_sheet->endTotal().unexcused);
}

AbsenceState AttendanceModel::state(int row, int column) const
{
    const bool unexcusedColumn = column == columnCount() - 1;
    if (isTotalRow(row)) {
        const bool unexcused = row == rowCount() - 1 || unexcusedColumn;
        return unexcused && totalText(row, column) != u"0" ? AbsenceState::Unexcused
                                                           : AbsenceState::None;
    }
    if (dayColumn(column))
        return m_sheet->state(position(row), position(column - kLeadColumns));
    const bool owes = m_sheet->students[position(row)].end().unexcused > 0;
    return unexcusedColumn && owes ? AbsenceState::Unexcused : AbsenceState::None;
}

QString AttendanceModel::spokenText(int row, int column) const
{
    QString shown = text(row, column);
    if (column < kLeadColumns - 1)
        return shown;
    const QString who = text(row, 1);
    const QString where = who + u", "_s + spokenHeader(column) + u", "_s;
    if (isTotalRow(row) || !dayColumn(column))
        return where + hoursText(shown.toInt());
    const std::size_t student = position(row), day = position(column - kLeadColumns);
    return where + spokenAbsence(m_sheet->cell(student, day), m_sheet->state(student, day));
}

QString AttendanceModel::headerText(int column) const
{
    if (const AttendanceColumn* day = dayColumn(column)) {
        const QString& title = day->title;
        if (m_sheet->selection.mode == AttendanceMode::Lessons) {
            const QString subgroup = u' ' + QString::number(day->subgroup) + u" п/г"_s;
            return QString(title)
                .replace(u" № "_s, u"\n№ "_s)
                .replace(subgroup, u'\n' + subgroup.trimmed());
        }
        return title + u'\n' + weekdayLetters(day->date);
    }
    static const QString lead[] = {u"№ п.п"_s, u"ФИО студента"_s, u"На начало месяца, час."_s};
    static const QString trail[] = {u"ИТОГО за месяц, час."_s, u"На конец месяца, час."_s,
                                    u"в т.ч. неуважительных, час."_s};
    return worded(m_wording,
                  column < kLeadColumns ? lead[column] : trail[column - endCellColumn()]);
}

QString AttendanceModel::spokenHeader(int column) const
{
    const AttendanceColumn* day = dayColumn(column);
    if (!day)
        return headerText(column);
    if (m_sheet->selection.mode == AttendanceMode::Days)
        return spokenDay(day->date);
    return spokenDay(day->date) + u", № "_s + QString::number(day->lesson);
}

QVariant AttendanceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return headerText(section);
    case Qt::ToolTipRole:
        return dayColumn(section) ? dayColumn(section)->date.toString(u"dd.MM.yyyy"_s)
                                  : headerText(section);
    case Qt::AccessibleTextRole:
        return spokenHeader(section);
    case StateRole:
        return static_cast<int>(section == columnCount() - 1 ? AbsenceState::Unexcused
                                                             : AbsenceState::None);
    case DayOffRole:
        return dayColumn(section) && dayColumn(section)->dayOff;
    default:
        return {};
    }
}

} // namespace journals
