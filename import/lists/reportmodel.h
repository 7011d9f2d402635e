#pragma once

#include "import/lists/listreport.h"

#include <QAbstractTableModel>

namespace imports {

// What becomes of each row of the file.
class ReportModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Number, Outcome, Name, Reason, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    void show(ListReport report);
    const ListReport& report() const { return m_report; }
    bool isRefused(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    ListReport m_report;
};

} // namespace imports
