#include "papers/paper.h"

#include <QLocale>

#include <cstddef>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;

namespace papers {

std::vector<PlacedCell> placed(std::span<const Row> rows)
{
    std::vector<PlacedCell> cells;
    std::set<std::pair<int, int>> covered; // row, column
    for (int row = 0; std::cmp_less(row, rows.size()); ++row) {
        int column = 0;
        for (const Cell& cell : rows[static_cast<std::size_t>(row)]) {
            while (covered.contains({row, column}))
                ++column;
            cells.push_back({row, column, &cell});
            for (int down = 1; down < cell.rows; ++down)
                for (int right = 0; right < cell.columns; ++right)
                    covered.insert({row + down, column + right});
            column += cell.columns;
        }
    }
    return cells;
}

QString shownText(const Cell& cell)
{
    if (const auto* text = std::get_if<QString>(&cell.value))
        return *text;
    if (const auto* number = std::get_if<double>(&cell.value)) {
        QLocale russian(QLocale::Russian);
        russian.setNumberOptions(QLocale::OmitGroupSeparator);
        return russian.toString(*number, 'f', cell.decimals);
    }
    return {};
}

QString signatureText(const Signature& signature)
{
    const QString name = signature.name.isEmpty() ? u"__________________"_s : signature.name;
    return u"%1 ______________ /%2/"_s.arg(signature.post, name);
}

QString columnLetters(int column)
{
    constexpr int kLetters = 26;
    QString letters;
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / kLetters)
        letters.prepend(QChar(u'A' + (rest - 1) % kLetters));
    return letters;
}

QString sumFormula(int column, int rows, int from)
{
    const QString letters = columnLetters(column);
    return u"SUM(%1%2:%1%3)"_s.arg(letters, QString::number(kFirstBodyRow + from),
                                   QString::number(kFirstBodyRow + from + rows - 1));
}

Cell text(const QString& value, Align align)
{
    Cell cell;
    cell.value = value;
    cell.align = align;
    return cell;
}

Cell number(double value, int decimals)
{
    Cell cell;
    cell.value = value;
    cell.decimals = decimals;
    return cell;
}

Cell hours(int value, Ink ink)
{
    Cell cell;
    if (value != 0)
        cell.value = static_cast<double>(value);
    cell.ink = ink;
    return cell;
}

Cell bold(Cell cell)
{
    cell.bold = true;
    return cell;
}

Cell heading(const QString& value, int columns, int rows)
{
    Cell cell = bold(text(value, Align::Centre));
    cell.columns = columns;
    cell.rows = rows;
    return cell;
}

Cell rotatedHeading(const QString& value, int rows)
{
    Cell cell = heading(value, 1, rows);
    cell.rotated = true;
    return cell;
}

} // namespace papers
