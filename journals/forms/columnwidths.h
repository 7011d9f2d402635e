#pragma once

#include <QByteArray>
#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

class QTableView;

namespace journals {

class AttendanceModel;
class GradeModel;

// The column widths of a journal grid by kind of column, so that a width the user chose holds
// in every month and for every group. Columns of one kind, such as days, share one width.
class ColumnWidths final : public QObject
{
    Q_OBJECT

public:
    using KindOf = std::function<int(int column)>;

    // One kind for each sample; the sample sets the width until another is chosen.
    ColumnWidths(QTableView& view, const QStringList& samples, KindOf kindOf);

    // What save() gave in an earlier run; anything else is ignored.
    void restore(const QByteArray& saved);
    QByteArray save() const;

    // To be called after the grid was filled anew.
    void apply();

private:
    void keep(int column, int width);
    int& widthOf(int column) { return m_widths[static_cast<std::size_t>(m_kindOf(column))]; }

    QTableView& m_view;
    KindOf m_kindOf;
    std::vector<int> m_widths;
    bool m_applying = false;
};

// For the grids of the two journals; a child of the view.
ColumnWidths* attendanceWidths(QTableView& view, const AttendanceModel& model);
ColumnWidths* gradeWidths(QTableView& view, const GradeModel& model);

} // namespace journals
