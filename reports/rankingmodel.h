#pragma once

#include "reports/ranking.h"
#include "shell/wording.h"

#include <QAbstractTableModel>

namespace reports {

// A list of the ranking: a row for each speciality or group, a column for each item from
// RankingItem::Name on. One item is the one that the chart draws.
class RankingModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    RankingModel(RankingLevel level, const shell::Wording& wording, QObject* parent = nullptr);

    // The rows in a new order keep the sorting chosen.
    void setRows(std::vector<RankingRow> rows);
    const std::vector<RankingRow>& rows() const { return m_rows; }
    std::optional<int> rowOf(std::int64_t key) const;

    // The item that the chart draws; the names, which have no values, stand for the overall place.
    std::size_t drawn() const { return m_drawn; }
    void setDrawn(std::size_t item);
    QString head(std::size_t item) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    // Rows without a value stand last. A column of -1 gives back the first order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    void sortRows();

    RankingLevel m_level;
    shell::Wording m_wording;
    std::vector<RankingRow> m_rows;
    std::vector<RankingRow> m_unsorted;
    std::size_t m_drawn = RankingItem::OverallPlace;
    int m_sortColumn = -1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

constexpr std::size_t itemOfColumn(int column)
{
    return static_cast<std::size_t>(column) + RankingItem::Name;
}

} // namespace reports
