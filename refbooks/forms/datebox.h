#pragma once

#include <QDate>
#include <QLineEdit>

namespace refbooks {

// A line for a date, typed or picked from a calendar (Alt+Down); it may stay empty.
class DateBox final : public QLineEdit
{
    Q_OBJECT

public:
    // The calendar of an empty line opens at `today`.
    explicit DateBox(QDate today, QWidget* parent = nullptr);

signals:
    void picked(); // from the calendar

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openCalendar();

    QDate m_today;
};

} // namespace refbooks
