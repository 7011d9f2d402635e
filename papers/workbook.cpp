#include "papers/workbook.h"

#include "data/convert.h"
#include "papers/rowheights.h"
#include "papers/workbookformats.h"
#include "sheets/writetable.h"
#include "sheets/xlsxbook.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

using sheets::cellText;
using sheets::check;

constexpr double kMmPerInch = 25.4;
constexpr double kApprovalShare = 0.62;
constexpr double kTextPoints = 10, kTitlePoints = 12;

double inches(double mm)
{
    return mm / kMmPerInch;
}

// Writes one paper on a sheet from a row on.
class PaperSheet
{
public:
    PaperSheet(lxw_worksheet& sheet, WorkbookFormats& formats, const Paper& paper, int top)
        : m_sheet(sheet)
        , m_formats(formats)
        , m_paper(paper)
        , m_top(top)
    {}

    // Gives the row below the last.
    int write()
    {
        writeFrame();
        const int body = m_top + kFirstBodyRow - 1;
        writeRows(m_paper.head, headRow());
        setHeights();
        writeRows(m_paper.body, body);
        return writeNotes(body + static_cast<int>(m_paper.body.size()));
    }
    int headRow() const
    {
        return m_top + kFirstBodyRow - 1 - static_cast<int>(m_paper.head.size());
    }

private:
    static lxw_row_t row(int number) { return static_cast<lxw_row_t>(number); }
    static lxw_col_t column(int number) { return static_cast<lxw_col_t>(number); }
    int lastColumn() const { return static_cast<int>(m_paper.widths.size()) - 1; }

    void merge(int line, int from, int to, const QString& text, lxw_format* format)
    {
        if (from < to)
            check(worksheet_merge_range(&m_sheet, row(line), column(from), row(line), column(to),
                                        cellText(text).c_str(), format));
        else
            check(worksheet_write_string(&m_sheet, row(line), column(from), cellText(text).c_str(),
                                         format));
    }

    // The column that begins at this share of the width or behind it.
    int columnAt(double share) const
    {
        const double wanted = share * widthOf(m_paper, 0, lastColumn() + 1);
        int at = 0;
        while (at < lastColumn() && widthOf(m_paper, 0, at) < wanted)
            ++at;
        return at;
    }

    void writeFrame()
    {
        lxw_format* left = m_formats.line(kTextPoints, false, LXW_ALIGN_LEFT);
        const int split = m_paper.approval.isEmpty() ? lastColumn() + 1 : columnAt(kApprovalShare);
        int line = m_top;
        for (const QString& text : m_paper.institution)
            merge(line++, 0, std::max(0, split - 1), text, left);
        line = m_top;
        for (const QString& text : m_paper.approval)
            merge(line++, split, lastColumn(), text, left);
        const int title = headRow() - (m_paper.subtitle.isEmpty() ? 1 : 2);
        writeCentred(title, m_paper.title, kTitlePoints, true);
        if (!m_paper.subtitle.isEmpty())
            writeCentred(title + 1, m_paper.subtitle, kTextPoints, false);
    }

    void writeCentred(int line, const QString& text, double points, bool bold)
    {
        lxw_format* format = m_formats.line(points, bold, LXW_ALIGN_CENTER);
        format_set_text_wrap(format);
        merge(line, 0, lastColumn(), text, format);
        setHeight(line, textHeight(text, widthOf(m_paper, 0, lastColumn() + 1), points));
    }

    void writeRows(const std::vector<Row>& rows, int from)
    {
        for (const PlacedCell& place : placed(rows))
            writeCell(*place.cell, from + place.row, place.column);
    }

    void writeCell(const Cell& cell, int line, int at)
    {
        const auto* number = std::get_if<double>(&cell.value);
        const bool isEmpty = std::holds_alternative<std::monostate>(cell.value);
        lxw_format* format = m_formats.of(cell, isEmpty && !cell.formula.isEmpty());
        if (cell.columns > 1 || cell.rows > 1)
            check(worksheet_merge_range(&m_sheet, row(line), column(at), row(line + cell.rows - 1),
                                        column(at + cell.columns - 1), "", format));
        const auto* text = std::get_if<QString>(&cell.value);
        if (!cell.formula.isEmpty() && text)
            check(worksheet_write_formula_str(&m_sheet, row(line), column(at),
                                              data::toUtf8(u'=' + cell.formula).c_str(), format,
                                              cellText(*text).c_str()));
        else if (!cell.formula.isEmpty())
            check(worksheet_write_formula_num(&m_sheet, row(line), column(at),
                                              data::toUtf8(u'=' + cell.formula).c_str(), format,
                                              number ? *number : 0));
        else if (number)
            check(worksheet_write_number(&m_sheet, row(line), column(at), *number, format));
        else if (isEmpty)
            check(worksheet_write_blank(&m_sheet, row(line), column(at), format));
        else
            check(worksheet_write_string(&m_sheet, row(line), column(at),
                                         cellText(shownText(cell)).c_str(), format));
    }

    void setHeight(int line, double points)
    {
        check(worksheet_set_row(&m_sheet, row(line), points, nullptr));
    }

    void setHeights()
    {
        const RowHeights heights = rowHeights(m_paper);
        int line = headRow();
        for (const auto* rows : {&heights.head, &heights.body})
            for (const double height : *rows)
                setHeight(line++, height);
    }

    int writeNotes(int line)
    {
        for (const QString& note : m_paper.notes)
            writeWrapped(line++, 0, lastColumn(), note, kTablePoints);
        ++line;
        const int middle = std::max(1, columnAt(0.49));
        const auto& signatures = m_paper.signatures;
        for (std::size_t i = 0; i < signatures.size(); ++i) {
            const bool isLeft = i % 2 == 0, isAlone = isLeft && i + 1 == signatures.size();
            writeWrapped(line, isLeft ? 0 : middle, isLeft && !isAlone ? middle - 1 : lastColumn(),
                         signatureText(signatures[i]), kTextPoints, isLeft ? 0 : m_lineHeight);
            if (!isLeft)
                line += 2;
        }
        return line + static_cast<int>(signatures.size() % 2);
    }

    // A merged cell does not grow with its text. The line gets at least that height.
    void writeWrapped(int line, int from, int to, const QString& text, double points,
                      double least = 0)
    {
        merge(line, from, to, text, m_formats.wrappedLine(points));
        m_lineHeight = std::max(least, textHeight(text, widthOf(m_paper, from, to + 1), points));
        setHeight(line, m_lineHeight);
    }

    lxw_worksheet& m_sheet;
    WorkbookFormats& m_formats;
    const Paper& m_paper;
    int m_top;
    double m_lineHeight = 0; // of the line wrapped last
};

bool isALittleTooLong(const Paper& paper)
{
    constexpr double kPointsPerMm = 72 / kMmPerInch, kLittle = 1.2;
    const double room = (paper.landscape ? 210 - 24 : 297 - 24) * kPointsPerMm;
    const double height = sheetHeight(paper);
    return !paper.half && height > room && height < room * kLittle;
}

void setUpPage(lxw_worksheet& sheet, const Paper& paper)
{
    if (paper.landscape)
        worksheet_set_landscape(&sheet);
    worksheet_set_paper(&sheet, sheets::kPaperA4);
    // What is a little too long is set smaller, so that signatures do not stand alone.
    worksheet_fit_to_pages(&sheet, 1, isALittleTooLong(paper) ? 1 : 0);
    worksheet_set_margins(&sheet, inches(20), inches(10), inches(10), inches(14));
    check(worksheet_set_footer(&sheet, "&L&8Отпечатано &D&R&8Лист &P из &N"));
    for (std::size_t i = 0; i < paper.widths.size(); ++i) {
        const auto column = static_cast<lxw_col_t>(i);
        const double letters = std::max(1.5, paper.widths[i] * 0.54 - 0.7);
        check(worksheet_set_column(&sheet, column, column, letters, nullptr));
    }
}

// Excel takes two names that differ only in case for the same.
std::string freeName(const Paper& paper, std::set<QString>& used)
{
    QString name = QString::fromStdString(sheets::sheetName(paper.name));
    for (int copy = 2; !used.insert(name.toLower()).second; ++copy) {
        const QString suffix = u" (%1)"_s.arg(copy);
        name = name.left(31 - suffix.size()) + suffix;
    }
    return data::toUtf8(name);
}

class PaperBook
{
public:
    explicit PaperBook(lxw_workbook& book)
        : m_book(book)
        , m_formats(book)
    {}

    void add(const Paper& paper)
    {
        if (!m_below || !paper.half || paper.name != m_below->name)
            beginSheet(paper);
        else if (++m_onSheet % 2 == 0)
            m_breaks.push_back(static_cast<lxw_row_t>(m_line));
        else
            drawCutLine(paper);
        PaperSheet part(*m_sheet, m_formats, paper, m_line);
        m_line = part.write() + 1;
        if (!paper.half) {
            worksheet_freeze_panes(m_sheet, kFirstBodyRow - 1,
                                   static_cast<lxw_col_t>(paper.leadColumns));
            check(worksheet_repeat_rows(m_sheet, static_cast<lxw_row_t>(part.headRow()),
                                        kFirstBodyRow - 2));
        }
        m_below = &paper;
    }
    void finish()
    {
        if (m_breaks.empty())
            return;
        m_breaks.push_back(0); // ends the list
        check(worksheet_set_h_pagebreaks(m_sheet, m_breaks.data()));
        m_breaks.clear();
    }

private:
    void drawCutLine(const Paper& paper)
    {
        const auto last = static_cast<lxw_col_t>(paper.widths.size() - 1);
        for (lxw_col_t column = 0; column <= last; ++column)
            check(worksheet_write_blank(m_sheet, static_cast<lxw_row_t>(m_line), column,
                                        m_formats.cutLine()));
        m_line += 2;
    }
    void beginSheet(const Paper& paper)
    {
        finish();
        m_sheet = workbook_add_worksheet(&m_book, freeName(paper, m_names).c_str());
        setUpPage(*m_sheet, paper);
        m_line = 0;
        m_onSheet = 0;
    }

    lxw_workbook& m_book;
    WorkbookFormats m_formats;
    std::set<QString> m_names;
    lxw_worksheet* m_sheet = nullptr;
    const Paper* m_below = nullptr; // the one written last
    int m_line = 0;
    int m_onSheet = 0;
    std::vector<lxw_row_t> m_breaks;
};

} // namespace

QString fileName(const Document& document)
{
    return sheets::fileName(document.name);
}

void writeWorkbook(const Document& document, const QString& path, sheets::Existing existing)
{
    sheets::writeWhole(path, existing, [&](const QString& draft) {
        sheets::writeBook(draft, false, [&](lxw_workbook& book) {
            lxw_doc_properties properties{};
            const std::string title = cellText(document.name);
            properties.title = const_cast<char*>(title.c_str()); // the library copies it
            check(workbook_set_properties(&book, &properties));
            setOwnFont(book);
            PaperBook papers(book);
            for (const Paper& paper : document.papers)
                papers.add(paper);
            papers.finish();
        });
    });
}

} // namespace papers
