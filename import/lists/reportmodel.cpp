#include "import/lists/reportmodel.h"

using namespace Qt::StringLiterals;

namespace imports {

void ReportModel::show(ListReport report)
{
    beginResetModel();
    m_report = std::move(report);
    endResetModel();
}

bool ReportModel::isRefused(int row) const
{
    return m_report.rows[static_cast<std::size_t>(row)].outcome == RowOutcome::Refused;
}

int ReportModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_report.rows.size());
}

int ReportModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QVariant ReportModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const RowResult& row = m_report.rows[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Number:
        return row.number;
    case Outcome:
        return outcomeText(row.outcome);
    case Name:
        return row.name;
    default:
        return row.reason;
    }
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList heads = {u"Строка"_s, u"Итог"_s, u"Запись"_s, u"Примечание"_s};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return heads.value(section);
}

} // namespace imports
