#pragma once

#include "journals/keys.h"
#include "journals/month.h"
#include "journals/studyperiod.h"

#include <QString>

#include <optional>
#include <span>

namespace reports {

// The documents of the menu "Отчеты", but for the ranking, which has a window of its own.
enum class ReportKind {
    Attendance,    // ведомость посещаемости за месяц
    GradesMonth,   // ведомость успеваемости за месяц
    GradesSubject, // ведомость успеваемости по предметам
    Card,          // табель успеваемости за месяц
    Final,         // итоговый отчет
    Summary,       // сводный отчет
    TruancyTeachers, // отчет по прогулам: по преподавателям за месяц
    TruancyGroups, // по группам за месяц
    TruancyBoth,   // по преподавателям и группам за период
};

// Of ReportKind::GradesSubject.
enum class SubjectView {
    Current,  // "Текущая": one discipline, the days of a month
    Periodic, // "Периодическая": one discipline, the months of the study year
    Combined, // "Сводная": all disciplines of the group
};

inline constexpr int kMostMonths = 12;

// What a document can ask for.
enum class Input {
    Month,      // and its year
    Months,     // how many from that one on
    Period,     // two dates
    Group,      // one, or all
    Discipline, // one; for the attendance statement also all
    Student,    // one, or all of the group
    View,       // SubjectView
    Balances,   // whether hours since 1 September are wanted
};

struct ReportRequest
{
    ReportKind kind = ReportKind::Attendance;
    journals::Month month;
    int months = 1; // from that one on
    journals::Period period;
    std::optional<journals::GroupId> group;           // not given: all groups
    std::optional<journals::DisciplineId> discipline; // not given: all disciplines
    std::optional<journals::StudentId> student;       // not given: all students of the group
    SubjectView view = SubjectView::Current;
    bool balances = false;
};

// The days that the months of the request cover. Requires a valid month.
journals::Period monthsOf(const ReportRequest& request);

// "Ведомость посещаемости за месяц", as the options of the dialog say.
QString reportTitle(ReportKind kind);

// The inputs that the request's document takes; the others say nothing to it.
bool takes(const ReportRequest& request, Input input);

// Why the document cannot be made: a Russian sentence naming the first input that is missing or
// makes no sense, nothing when all is there.
std::optional<QString> requestProblem(const ReportRequest& request);

} // namespace reports
