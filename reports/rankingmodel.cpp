#include "reports/rankingmodel.h"

#include "journals/gridroles.h"
#include "reports/rankingtexts.h"
#include "reports/worded.h"

#include <algorithm>
#include <utility>

namespace reports {

RankingModel::RankingModel(RankingLevel level, const shell::Wording& wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_level(level)
    , m_wording(wording)
{}

void RankingModel::setRows(std::vector<RankingRow> rows)
{
    beginResetModel();
    m_unsorted = std::move(rows);
    sortRows();
    endResetModel();
}

std::optional<int> RankingModel::rowOf(std::int64_t key) const
{
    const auto found = std::ranges::find(m_rows, key, &RankingRow::key);
    return found == m_rows.end() ? std::nullopt
                                 : std::optional(static_cast<int>(found - m_rows.begin()));
}

void RankingModel::setDrawn(std::size_t item)
{
    m_drawn =
        item == RankingItem::Name ? static_cast<std::size_t>(RankingItem::OverallPlace) : item;
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    if (!m_rows.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

QString RankingModel::head(std::size_t item) const
{
    return worded(m_wording,
                  rankingHeads(m_level).at(static_cast<qsizetype>(item - RankingItem::Name)));
}

int RankingModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RankingModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(RankingItem::Count - RankingItem::Name);
}

QVariant RankingModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const std::size_t item = itemOfColumn(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return m_rows[static_cast<std::size_t>(index.row())].text(item);
    case Qt::TextAlignmentRole:
        return static_cast<int>((item == RankingItem::Name ? Qt::AlignLeft : Qt::AlignHCenter)
                                | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return item == RankingItem::Name ? data(index, Qt::DisplayRole) : QVariant();
    case journals::DayOffRole: // shaded
        return item == m_drawn;
    default:
        return {};
    }
}

QVariant RankingModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const std::size_t item = itemOfColumn(section);
    switch (role) {
    case Qt::DisplayRole:
        return head(item);
    case Qt::ToolTipRole:
        return worded(m_wording, rankingRule(item));
    case journals::DayOffRole:
        return item == m_drawn;
    default:
        return {};
    }
}

void RankingModel::sort(int column, Qt::SortOrder order)
{
    m_sortColumn = column;
    m_order = order;
    beginResetModel();
    sortRows();
    endResetModel();
}

void RankingModel::sortRows()
{
    m_rows = m_unsorted;
    if (m_sortColumn < 0)
        return;
    const std::size_t item = itemOfColumn(m_sortColumn);
    const auto before = [item](const RankingRow& a, const RankingRow& b) {
        return item == RankingItem::Name ? a.name.localeAwareCompare(b.name) < 0
                                         : *a.values[item] < *b.values[item];
    };
    std::ranges::stable_sort(m_rows, [&](const RankingRow& a, const RankingRow& b) {
        if (item != RankingItem::Name && (!a.values[item] || !b.values[item]))
            return a.values[item].has_value() && !b.values[item].has_value();
        return m_order == Qt::AscendingOrder ? before(a, b) : before(b, a);
    });
}

} // namespace reports
