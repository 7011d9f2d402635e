#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <variant>
#include <vector>

// Papers as the institution signs them: statements, reports, a journal's month. One
// description serves the workbook, the printer and the PDF file.
namespace papers {

enum class Align { Left, Centre, Right };

// What a number of hours stands for; shown by the shape of the letters as well as by colour,
// so that a grey printer keeps it.
enum class Ink { Plain, Unexcused, Excused };

struct Cell
{
    // Nothing, a text, or a number shown with `decimals` digits.
    std::variant<std::monostate, QString, double> value = {};
    int decimals = 0;
    // What the number is computed from in a workbook, with English function names and without
    // "=": "SUM(C8:C32)". `value` is its result.
    QString formula = {};
    int columns = 1; // that the cell covers to the right
    int rows = 1;    // and downwards
    Align align = Align::Centre;
    Ink ink = Ink::Plain;
    bool bold = false;
    bool shaded = false;  // a day off
    bool rotated = false; // reads upwards
};

using Row = std::vector<Cell>; // from the left, without cells that are covered from above

struct Signature
{
    QString post;
    QString name;
};
// Its place on the paper: "Куратор ______________ /Иванова А. П./".
QString signatureText(const Signature& signature);

// A4, one table. In a workbook the body begins in row 8 whatever the paper is.
struct Paper
{
    QString name;            // of the sheet
    QString person;          // whom it is about, when it is about one
    bool landscape = true;   // all papers of a document alike
    bool half = false;       // two of them stand on a page
    QStringList institution; // top left
    QStringList approval;    // top right; empty when it is not wanted
    QString title;
    QString subtitle;           // group, period
    std::vector<double> widths; // of the columns, mm
    int leadColumns = 2;        // repeated where the table is wider than the page
    std::vector<Row> head;      // one or two rows, repeated on each page
    std::vector<Row> body;
    QStringList notes; // below the table: summary, legend, formulas
    std::vector<Signature> signatures;
};

struct Document
{
    QString kind; // "attendance": the page setup is kept for each
    QString name; // of the file, without ".xlsx"; the title of the print
    std::vector<Paper> papers;
};

inline constexpr int kFirstBodyRow = 8; // of a workbook's sheet, counted from 1

// A cell at its place among rows that begin at 0.
struct PlacedCell
{
    int row = 0;
    int column = 0;
    const Cell* cell = nullptr;
};

// Where the cells stand, what rows above cover left free. Points into `rows`.
std::vector<PlacedCell> placed(std::span<const Row> rows);

// The cell's value as it is read: "4,50", with a decimal comma.
QString shownText(const Cell& cell);

// "A", "Z", "AA"; the column is counted from 0.
QString columnLetters(int column);
// "SUM(C8:C32)" over `rows` body rows from `from` on, both counted from 0.
QString sumFormula(int column, int rows, int from = 0);

Cell text(const QString& value, Align align = Align::Left);
Cell number(double value, int decimals = 0);
// As number(), nothing when it is 0.
Cell hours(int value, Ink ink = Ink::Plain);
Cell bold(Cell cell);
// A heading over so many columns and rows.
Cell heading(const QString& value, int columns = 1, int rows = 1);
Cell rotatedHeading(const QString& value, int rows = 1);

} // namespace papers
