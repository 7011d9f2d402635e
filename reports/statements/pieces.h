#pragma once

#include "papers/paper.h"
#include "reports/statements.h"
#include "reports/statements/figures.h"
#include "reports/statements/grouprows.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <vector>

// What the papers of all statements are put together from.
namespace reports {

inline constexpr double kNumberWidth = 7, kNameWidth = 46; // mm
inline constexpr double kLandscapeWidth = 267;
inline constexpr int kNumberColumns = 2; // number and name

// "09.02.07 Информационные системы"; what the group has of it.
QString specialityText(const GroupRow& group);
// "Группа 21-ИС-1 · 09.02.07 Информационные системы · курс 2 · ноябрь 2025 г."
QString subtitle(const StatementSource& source, const GroupRow& group, const QString& period);
// "2025-2026 учебный год".
QString yearText(const journals::Period& year);

papers::Paper groupPaper(const StatementSource& source, const GroupRow& group, const QString& title,
                         const QString& period);
// "Куратор группы ____ /Иванова А. П./"
papers::Signature curatorSignature(const StatementSource& source, const GroupRow& group);

// Places in a workbook's formulas; rows and columns are those of the body, counted from 0.
QString place(int column, int row);
QString down(int column, int rows);               // "C8:C32"
QString across(int row, int column, int columns); // "C8:Q8"

// The table's head over number and name, two rows high.
papers::Row studentHeads(int rows = 2);
// "1", "Иванов И. И."
papers::Row studentCells(std::size_t number, const QString& name);
// The name of a row of totals, under number and name.
papers::Cell totalLabel(const QString& text, int columns = kNumberColumns);

papers::Cell headText(const QString& text, bool dayOff);
// A day's number and its weekday, one above the other.
void addDayHead(std::vector<papers::Row>& head, QDate date, bool dayOff);

// A grade as it stands in a table: a number that formulas count, or a text.
papers::Cell gradeCell(int grade, const QString& pass = QStringLiteral("Зач."));
// "96,0", or "—" where there is nothing to divide by.
papers::Cell rateCell(const Rate& rate, const QString& formula = {});
// "4,50", or nothing without marks.
papers::Cell averageCell(const Rate& average, const QString& formula = {});
papers::Cell countCell(int count, const QString& formula = {});
papers::Cell sumCell(int sum, int column, int rows);
papers::Cell emptyCell(int columns = 1, int rows = 1);
QString figureText(const Rate& figure); // "1,0", or "—"
QString rateText(const Rate& rate);     // "96,0 %", or "—"

// Formulas over a range of grades.
QString averageFormula(const QString& range);
QString qualityFormula(const QString& range);
QString passFormula(const QString& range);
QString countFormula(const QString& range, int grade);

// The lines of the summary and of the foot-note.
QStringList performanceLines(const StatementSource& source, const Performance& group);
QString performanceFormulas(const StatementSource& source);
QString gradeFormulasLine();
QString attendanceLine(const AttendanceFigures& figures);
QStringList attendanceFormulas(const StatementSource& source);

} // namespace reports
