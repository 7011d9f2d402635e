#include "refbooks/analysismodel.h"

#include "refbooks/worded.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {

AnalysisModel::AnalysisModel(const shell::Wording& wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_captions{u"Преподаватель"_s, u"Группа"_s,    u"П/г"_s,     u"Дисциплина"_s,
                 u"План"_s,          u"Проведено"_s, u"Осталось"_s}
{
    for (QString& caption : m_captions)
        caption = worded(wording, caption);
}

void AnalysisModel::show(std::vector<WorkloadHours> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_rows.push_back(totalHours(m_rows));
    m_rows.back().teacher = u"Итого"_s;
    endResetModel();
}

QString AnalysisModel::totalText() const
{
    const WorkloadHours& total = m_rows.back();
    return u"Итого: план %1, проведено %2, осталось %3."_s.arg(
        QString::number(total.planned), QString::number(total.held), QString::number(total.left()));
}

int AnalysisModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int AnalysisModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString AnalysisModel::text(const WorkloadHours& row, int column) const
{
    switch (column) {
    case Teacher:
        return row.teacher;
    case Group:
        return row.group;
    case Subgroup:
        return row.subgroup == 0 ? QString() : QString::number(row.subgroup);
    case Discipline:
        return row.discipline;
    case Planned:
        return QString::number(row.planned);
    case Held:
        return QString::number(row.held);
    case Left:
        return QString::number(row.left());
    default:
        return {};
    }
}

QVariant AnalysisModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const WorkloadHours& row = m_rows[static_cast<std::size_t>(index.row())];
    const bool isOver = index.column() == Left && row.left() < 0;
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((index.column() >= Planned ? Qt::AlignRight : Qt::AlignLeft)
                                   | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return isOver ? u"Проведено больше, чем запланировано"_s : QVariant();
    case TotalRole:
        return isTotal(index.row());
    case OverRole:
        return isOver;
    default:
        return {};
    }
}

QVariant AnalysisModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < ColumnCount)
        return m_captions[section];
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace refbooks
