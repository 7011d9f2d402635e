#include "journals/absencedaymodel.h"

#include "journals/gridroles.h"
#include "journals/hours.h"
#include "journals/worded.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

AbsenceKind kindOf(int column)
{
    return column == AbsenceDayModel::ExcusedColumn ? AbsenceKind::Excused : AbsenceKind::Unexcused;
}

int count(const Absence& hours, int column)
{
    return kindOf(column) == AbsenceKind::Excused ? hours.excused : hours.unexcused;
}

} // namespace

AbsenceDayModel::AbsenceDayModel(shell::Wording wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_wording(wording)
{}

void AbsenceDayModel::setDay(DayAbsences day, int lessonHours)
{
    beginResetModel();
    m_day = std::move(day);
    m_lessonHours = lessonHours;
    m_modified = false;
    endResetModel();
}

int AbsenceDayModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_day.lessons.size()) + 1;
}

int AbsenceDayModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

bool AbsenceDayModel::enterable(const QModelIndex& index) const
{
    return index.isValid() && !isTotal(index.row()) && index.column() >= UnexcusedColumn;
}

int AbsenceDayModel::hours(const QModelIndex& index) const
{
    return enterable(index)
               ? count(m_day.lessons[static_cast<std::size_t>(index.row())].hours, index.column())
               : 0;
}

void AbsenceDayModel::toggle(const QModelIndex& index)
{
    if (!enterable(index))
        return;
    m_day.toggle(static_cast<std::size_t>(index.row()), kindOf(index.column()), m_lessonHours);
    announce(index.row());
}

void AbsenceDayModel::setHours(const QModelIndex& index, int hours)
{
    if (!enterable(index) || hours == this->hours(index))
        return;
    Absence& lesson = m_day.lessons[static_cast<std::size_t>(index.row())].hours;
    (index.column() == ExcusedColumn ? lesson.excused : lesson.unexcused) = hours;
    announce(index.row());
}

void AbsenceDayModel::announce(int row)
{
    m_modified = true;
    emit dataChanged(index(row, UnexcusedColumn), index(row, ExcusedColumn));
    emit dataChanged(index(rowCount() - 1, UnexcusedColumn), index(rowCount() - 1, ExcusedColumn));
}

QVariant AbsenceDayModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return static_cast<int>(index.column() == DisciplineColumn
                                    ? Qt::AlignLeft | Qt::AlignVCenter
                                    : Qt::AlignCenter);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return spoken(index.row(), index.column());
    case StateRole: {
        const bool missed = index.column() >= UnexcusedColumn
                            && !text(index.row(), index.column()).isEmpty()
                            && text(index.row(), index.column()) != u"0";
        const AbsenceState kind =
            index.column() == ExcusedColumn ? AbsenceState::Excused : AbsenceState::Unexcused;
        return static_cast<int>(missed ? kind : AbsenceState::None);
    }
    case TotalRole:
        return isTotal(index.row());
    default:
        return {};
    }
}

QString AbsenceDayModel::text(int row, int column) const
{
    if (isTotal(row)) {
        if (column == DisciplineColumn)
            return u"ИТОГО:"_s;
        return column >= UnexcusedColumn ? QString::number(count(m_day.total(), column))
                                         : QString();
    }
    const LessonAbsence& each = m_day.lessons[static_cast<std::size_t>(row)];
    switch (column) {
    case LessonColumn:
        return QString::number(each.lesson.number);
    case DisciplineColumn:
        return each.lesson.disciplineName;
    case SubgroupColumn:
        return QString::number(each.lesson.subgroup);
    default:
        break;
    }
    const int hours = count(each.hours, column);
    return hours == 0 ? QString() : QString::number(hours);
}

QString AbsenceDayModel::spoken(int row, int column) const
{
    if (column < UnexcusedColumn)
        return text(row, column);
    const QString where =
        isTotal(row) ? u"Итого"_s : text(row, LessonColumn) + u", "_s + text(row, DisciplineColumn);
    return where + u", "_s
           + headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toLower() + u", "_s
           + hoursText(text(row, column).toInt());
}

QVariant AbsenceDayModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
        || section >= kColumns)
        return {};
    const QString headers[] = {m_lessonHours == 1 ? u"Час"_s : u"Пара"_s, u"Дисциплина"_s, u"П/г"_s,
                               u"Неуважительные"_s, u"Уважительные"_s};
    return worded(m_wording, headers[section]);
}

} // namespace journals
