#pragma once

#include <QByteArray>
#include <QObject>

#include <array>

class QTableView;

namespace journals {

// The column widths of the attendance grid by kind of column, so that a width the user chose
// holds in every month and for every group. All days share one width, and all lessons.
class AttendanceWidths final : public QObject
{
    Q_OBJECT

public:
    // Widths that fit the view's font until others are chosen.
    explicit AttendanceWidths(QTableView& view);

    // What save() gave in an earlier run; anything else is ignored.
    void restore(const QByteArray& saved);
    QByteArray save() const;

    // To be called after the grid was filled anew.
    void apply(bool lessons);

private:
    enum Kind { Number, Name, Start, Day, Lesson, Month, End, Unexcused, Kinds };

    void keep(int column, int width);
    Kind kindOf(int column) const;

    QTableView& m_view;
    std::array<int, Kinds> m_widths{};
    bool m_lessons = false;
    bool m_applying = false;
};

} // namespace journals
