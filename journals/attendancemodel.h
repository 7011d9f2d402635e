#pragma once

#include "journals/attendance.h"
#include "journals/gridroles.h"
#include "shell/wording.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace journals {

// The sheet of the attendance journal as its grid shows it: a row per student and two rows
// of totals below; the lead columns, a column per day or lesson, then the balances.
class AttendanceModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    AttendanceModel(Attendance& attendance, shell::Wording wording, QObject* parent = nullptr);

    // Shows another sheet; an incomplete selection leaves the grid empty (false). If reading
    // throws jet::Error the present sheet stays.
    bool load(const AttendanceSelection& selection);
    void clear();
    // The sheet shown, or null.
    const AttendanceSheet* sheet() const { return m_sheet ? &*m_sheet : nullptr; }

    // See Attendance::apply() and offers().
    int apply(AbsenceAction action, const QModelIndexList& indexes);
    bool offers(AbsenceAction action, const QModelIndex& index) const;

    // Where the days or lessons begin and end; the same when there are none.
    int firstCellColumn() const { return kLeadColumns; }
    int endCellColumn() const { return columnCount() - kTrailColumns; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void announce(const std::vector<GridCell>& cells);
    bool isTotalRow(int row) const;
    QString text(int row, int column) const;
    QString totalText(int row, int column) const;
    QString spokenText(int row, int column) const;
    AbsenceState state(int row, int column) const;
    QString headerText(int column) const;
    QString spokenHeader(int column) const;
    // The day or lesson of a grid column, or null.
    const AttendanceColumn* dayColumn(int column) const;

    Attendance& m_attendance;
    shell::Wording m_wording;
    std::optional<AttendanceSheet> m_sheet;
};

} // namespace journals
