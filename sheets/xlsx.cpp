#include "data/convert.h"
#include "jet/error.h"
#include "sheets/formats.h"
#include "sheets/xlsxbook.h"

#include <QDate>

#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>

using namespace Qt::StringLiterals;

namespace sheets {
namespace {

constexpr int kMostRows = 1'048'575; // below the heads
constexpr int kMostColumns = 16'384;
constexpr int kLeastWidth = 6, kMostWidth = 60; // characters
const QDate kFirstDay(1900, 1, 1);              // earlier ones stay texts

// A number as the engine or the user's own country writes it.
std::optional<double> numberOf(QString text)
{
    bool isNumber = false;
    const double number = text.replace(u',', u'.').toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

class Sheet
{
public:
    Sheet(lxw_workbook& book, const Table& table)
        : m_book(book)
        , m_sheet(*workbook_add_worksheet(&book, sheetName(table.title).c_str()))
        , m_table(table)
    {}

    void write()
    {
        setUpPage();
        writeHeads();
        std::vector<std::array<lxw_format*, 2>> formats; // of texts and numbers, of dates
        for (const Column& column : m_table.columns)
            formats.push_back({cellFormat(column, false), cellFormat(column, true)});
        for (int row = 0; row < m_table.rows; ++row)
            for (std::size_t column = 0; column < m_table.columns.size(); ++column)
                writeCell(row, column, formats[column]);
    }

private:
    int columnCount() const { return static_cast<int>(m_table.columns.size()); }
    QString textAt(int row, std::size_t column) const
    {
        return m_table.text(row, static_cast<int>(column));
    }

    void setUpPage()
    {
        worksheet_set_landscape(&m_sheet);
        worksheet_set_paper(&m_sheet, kPaperA4);
        worksheet_fit_to_pages(&m_sheet, 1, 0);
        worksheet_freeze_panes(&m_sheet, 1, 0);
        check(worksheet_repeat_rows(&m_sheet, 0, 0));
        check(worksheet_set_header(&m_sheet, ("&C" + headerText(m_table.title)).c_str()));
        check(worksheet_set_footer(&m_sheet, "&C&P / &N"));
    }

    void writeHeads()
    {
        lxw_format* bold = workbook_add_format(&m_book);
        format_set_bold(bold);
        format_set_text_wrap(bold);
        format_set_align(bold, LXW_ALIGN_CENTER);
        format_set_align(bold, LXW_ALIGN_VERTICAL_CENTER);
        format_set_bottom(bold, LXW_BORDER_THIN);
        for (std::size_t column = 0; column < m_table.columns.size(); ++column) {
            const auto position = static_cast<lxw_col_t>(column);
            check(worksheet_set_column(&m_sheet, position, position, width(column), nullptr));
            check(worksheet_write_string(&m_sheet, 0, position,
                                         cellText(m_table.columns[column].head).c_str(), bold));
        }
        if (columnCount() > 0)
            check(worksheet_autofilter(&m_sheet, 0, 0, static_cast<lxw_row_t>(m_table.rows),
                                       static_cast<lxw_col_t>(columnCount() - 1)));
    }

    // Fits the longest text; the head wraps, but its filter button needs room.
    double width(std::size_t column) const
    {
        qsizetype longest = kLeastWidth;
        for (const QString& word : m_table.columns[column].head.split(u' '))
            longest = std::max(longest, word.size() + 3);
        for (int row = 0; row < m_table.rows; ++row)
            longest = std::max(longest, textAt(row, column).size() + 1);
        return static_cast<double>(std::min<qsizetype>(longest, kMostWidth));
    }

    lxw_format* cellFormat(const Column& column, bool isDate)
    {
        lxw_format* format = workbook_add_format(&m_book);
        if (isDate)
            format_set_num_format(format, "dd.mm.yyyy");
        if (column.alignment == Alignment::Centre)
            format_set_align(format, LXW_ALIGN_CENTER);
        else
            format_set_align(format, column.alignment == Alignment::Right ? LXW_ALIGN_RIGHT
                                                                          : LXW_ALIGN_LEFT);
        return format;
    }

    void writeCell(int row, std::size_t column, const std::array<lxw_format*, 2>& formats)
    {
        const QString text = textAt(row, column);
        if (text.isEmpty())
            return;
        const auto line = static_cast<lxw_row_t>(row + 1);
        const auto position = static_cast<lxw_col_t>(column);
        const Kind kind = m_table.columns[column].kind;
        const QDate day = kind == Kind::Date ? QDate::fromString(text, u"dd.MM.yyyy"_s) : QDate();
        const auto number = kind == Kind::Number ? numberOf(text) : std::nullopt;
        if (day >= kFirstDay) {
            lxw_datetime date{day.year(), day.month(), day.day(), 0, 0, 0};
            check(worksheet_write_datetime(&m_sheet, line, position, &date, formats[1]));
        } else if (number) {
            check(worksheet_write_number(&m_sheet, line, position, *number, formats[0]));
        } else {
            check(worksheet_write_string(&m_sheet, line, position, cellText(text).c_str(),
                                         formats[0]));
        }
    }

    lxw_workbook& m_book;
    lxw_worksheet& m_sheet;
    const Table& m_table;
};

} // namespace

void writeXlsx(const QString& path, const Table& table)
{
    if (table.rows > kMostRows || table.columns.size() > kMostColumns)
        throw jet::Error(jet::Fault::Limit,
                         "в листе книги бывает не больше 1 048 576 строк и 16 384 граф");
    writeBook(path, true, [&](lxw_workbook& book) { Sheet(book, table).write(); });
}

} // namespace sheets
