#pragma once

#include "refbooks/workloadhours.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace shell {
class Wording;
}

namespace refbooks {

// The analysis of workload as a table: a row for each workload row, then the sums.
class AnalysisModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Teacher, Group, Subgroup, Discipline, Planned, Held, Left, ColumnCount };
    enum Role {
        TotalRole = Qt::UserRole, // true in the row of sums
        OverRole,                 // true where more was held than planned
    };

    explicit AnalysisModel(const shell::Wording& wording, QObject* parent = nullptr);

    void show(std::vector<WorkloadHours> rows);
    // "Итого: план 68, проведено 64, осталось 4."; after show().
    QString totalText() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QString text(const WorkloadHours& row, int column) const;
    bool isTotal(int row) const { return row == static_cast<int>(m_rows.size()) - 1; }

    QStringList m_captions;
    std::vector<WorkloadHours> m_rows; // the sums last; empty before show()
};

} // namespace refbooks
