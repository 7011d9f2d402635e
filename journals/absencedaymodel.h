#pragma once

#include "journals/absenceentry.h"
#include "shell/wording.h"

#include <QAbstractTableModel>

namespace journals {

// The lessons of one student's day with the hours missed, and the sums in a last row.
class AbsenceDayModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { LessonColumn, DisciplineColumn, SubgroupColumn, UnexcusedColumn, ExcusedColumn };
    static constexpr int kColumns = 5;

    explicit AbsenceDayModel(shell::Wording wording, QObject* parent = nullptr);

    void setDay(DayAbsences day, int lessonHours);
    const DayAbsences& day() const { return m_day; }
    bool modified() const { return m_modified; }

    // Whether the cell holds hours that can be entered.
    bool enterable(const QModelIndex& index) const;
    int hours(const QModelIndex& index) const; // 0 unless enterable()
    // Neither does anything unless enterable().
    void toggle(const QModelIndex& index);
    void setHours(const QModelIndex& index, int hours);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool isTotal(int row) const { return row == rowCount() - 1; }
    QString text(int row, int column) const;
    QString spoken(int row, int column) const;
    void announce(int row);

    shell::Wording m_wording;
    DayAbsences m_day;
    int m_lessonHours = 1;
    bool m_modified = false;
};

} // namespace journals
