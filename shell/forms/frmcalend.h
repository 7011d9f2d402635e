#pragma once

#include "shell/service/studycalendar.h"

#include <QDialog>

#include <memory>

class QCalendarWidget;

namespace shell {

namespace Ui {
class frmCalend;
}

// The calendar: holidays and Sundays marked, the study year on a ground of its own, and in
// words below it the chosen day and the holidays of the month. It stands beside the work; the
// window that opened it keeps it current with setDays().
class frmCalend final : public QDialog
{
    Q_OBJECT

public:
    explicit frmCalend(QWidget* parent = nullptr);
    ~frmCalend() override;

    void setDays(const StudyCalendar& days);
    void showDate(QDate day);

protected:
    void changeEvent(QEvent* event) override;

private:
    void addShortcuts();
    void describe();
    void paintMonth();
    void fillHolidayList();

    std::unique_ptr<Ui::frmCalend> ui;
    StudyCalendar m_days;
};

} // namespace shell
