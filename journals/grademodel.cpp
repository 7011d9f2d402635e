#include "journals/grademodel.h"

#include "journals/attendancesheet.h"
#include "journals/worded.h"

#include <QScopeGuard>

#include <vector>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

std::size_t position(int number)
{
    return static_cast<std::size_t>(number);
}

GradePlace placeOf(const QModelIndex& index)
{
    return {index.row(), index.column() - GradeModel::kLeadColumns};
}

const QString kAverage = u"Средний балл"_s;

} // namespace

GradeModel::GradeModel(GradeBook& book, shell::Wording wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_book(book)
    , m_wording(wording)
{}

bool GradeModel::load(const GradeSelection& selection)
{
    beginResetModel();
    const auto end = qScopeGuard([this] { endResetModel(); });
    return m_book.load(selection);
}

void GradeModel::clear()
{
    beginResetModel();
    m_book.clear();
    endResetModel();
}

int GradeModel::set(int grade, const QModelIndexList& indexes)
{
    std::vector<GradePlace> places;
    for (const QModelIndex& index : indexes)
        places.push_back(placeOf(index));
    const auto end = qScopeGuard([this] { announceAll(); });
    return m_book.set(grade, places);
}

bool GradeModel::offers(const QModelIndex& index) const
{
    return index.isValid() && m_book.offers(placeOf(index));
}

void GradeModel::save()
{
    m_book.save();
    announceAll();
}

bool GradeModel::mayLeave()
{
    const bool may = m_book.mayLeave();
    announceAll();
    return may;
}

void GradeModel::undo()
{
    beginResetModel();
    const auto end = qScopeGuard([this] { endResetModel(); });
    m_book.undo();
}

void GradeModel::redo()
{
    beginResetModel();
    const auto end = qScopeGuard([this] { endResetModel(); });
    m_book.redo();
}

// A grade changes the averages of its row and column too.
void GradeModel::announceAll()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int GradeModel::endCellColumn() const
{
    return sheet() ? kLeadColumns + static_cast<int>(sheet()->columns.size()) : kLeadColumns;
}

int GradeModel::rowCount(const QModelIndex& parent) const
{
    return !sheet() || parent.isValid() ? 0 : static_cast<int>(sheet()->students.size()) + 1;
}

int GradeModel::columnCount(const QModelIndex& parent) const
{
    return !sheet() || parent.isValid() ? 0 : endCellColumn() + (sheet()->hasAverages() ? 1 : 0);
}

bool GradeModel::isAverageRow(int row) const
{
    return row == rowCount() - 1;
}

const GradeColumn* GradeModel::gradeColumn(int column) const
{
    return column >= firstCellColumn() && column < endCellColumn()
               ? &sheet()->columns[position(column - kLeadColumns)]
               : nullptr;
}

QVariant GradeModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = index.row(), column = index.column();
    const GradePlace place = placeOf(index);
    const bool cell = sheet()->holds(place);
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::TextAlignmentRole:
        return static_cast<int>(column == 1 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return spokenText(row, column);
    case StateRole:
        return static_cast<int>(cell && !sheet()->open(place) ? AbsenceState::NotInForce
                                                              : AbsenceState::None);
    case DayOffRole:
        return gradeColumn(column) && gradeColumn(column)->dayOff;
    case TotalRole:
        return isAverageRow(row) || column >= endCellColumn();
    case UnsavedRole:
        return cell && sheet()->cell(place).unsaved();
    default:
        return {};
    }
}

QString GradeModel::text(int row, int column) const
{
    if (isAverageRow(row)) {
        if (column == 1)
            return kAverage;
        return gradeColumn(column) ? sheet()->columnAverage(position(column - kLeadColumns)).text()
                                   : QString();
    }
    const GradeStudent& student = sheet()->students[position(row)];
    if (column == 0)
        return QString::number(row + 1);
    if (column == 1)
        return student.name;
    return gradeColumn(column) ? sheet()->cellText({row, column - kLeadColumns})
                               : sheet()->average(student).text();
}

// "Иванов И. И., 12 ноября, оценка 5, не сохранено".
QString GradeModel::spokenText(int row, int column) const
{
    QString shown = text(row, column);
    if (column < kLeadColumns)
        return shown;
    const QString where = text(row, 1) + u", "_s + spokenHeader(column) + u", "_s;
    const GradePlace place{row, column - kLeadColumns};
    if (!sheet()->holds(place))
        return where + (shown.isEmpty() ? u"нет"_s : shown);
    if (!sheet()->open(place))
        return where + u"нет занятия"_s;
    const GradeCell& cell = sheet()->cell(place);
    return where + spokenGrade(cell.grade) + (cell.unsaved() ? u", не сохранено"_s : QString());
}

QString GradeModel::headerText(int column) const
{
    if (const GradeColumn* grade = gradeColumn(column)) {
        if (grade->kind == GradeKind::Current)
            return grade->title + u'\n' + weekdayLetters(grade->date);
        const bool month = grade->kind == GradeKind::Monthly && !sheet()->selection.allDisciplines;
        return month ? QString(grade->title).replace(u' ', u'\n') : grade->title;
    }
    return column == 0 ? u"№ п.п"_s : column == 1 ? worded(m_wording, u"ФИО студента"_s) : kAverage;
}

QString GradeModel::spokenHeader(int column) const
{
    const GradeColumn* grade = gradeColumn(column);
    if (!grade)
        return headerText(column);
    return grade->kind == GradeKind::Current ? spokenDay(grade->date) : grade->title;
}

QVariant GradeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const GradeColumn* grade = gradeColumn(section);
    switch (role) {
    case Qt::DisplayRole:
        return headerText(section);
    case Qt::ToolTipRole:
        return grade && grade->kind == GradeKind::Current ? grade->date.toString(u"dd.MM.yyyy"_s)
                                                          : spokenHeader(section);
    case Qt::AccessibleTextRole:
        return spokenHeader(section);
    case StateRole:
        return static_cast<int>(AbsenceState::None);
    case DayOffRole:
        return grade && grade->dayOff;
    default:
        return {};
    }
}

} // namespace journals
