#include "papers/workbookformats.h"

#include "papers/rowheights.h"

#include <cstdint>
#include <string>

namespace papers {
namespace {

constexpr lxw_color_t kShade = 0xE4E4E4;
constexpr lxw_color_t kUnexcused = 0xB00000;
constexpr lxw_color_t kExcused = 0x0030A0;

} // namespace

lxw_format* WorkbookFormats::of(const Cell& cell, bool hidesZero)
{
    const Key key{static_cast<int>(cell.align),
                  static_cast<int>(cell.ink),
                  cell.decimals,
                  cell.bold,
                  cell.shaded,
                  cell.rotated,
                  hidesZero};
    lxw_format*& format = m_cells[key];
    if (!format)
        format = make(cell, hidesZero);
    return format;
}

lxw_format* WorkbookFormats::line(double points, bool bold, lxw_format_alignments align)
{
    lxw_format*& format = m_lines[{points, bold, static_cast<int>(align)}];
    if (!format) {
        format = plain(points);
        if (bold)
            format_set_bold(format);
        format_set_align(format, static_cast<std::uint8_t>(align));
    }
    return format;
}

lxw_format* WorkbookFormats::cutLine()
{
    if (!m_cut) {
        m_cut = plain(kTablePoints);
        format_set_bottom(m_cut, LXW_BORDER_DASHED);
    }
    return m_cut;
}

lxw_format* WorkbookFormats::wrappedLine(double points)
{
    lxw_format*& format = m_wrapped[points];
    if (!format) {
        format = plain(points);
        format_set_text_wrap(format);
        format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
    }
    return format;
}

lxw_format* WorkbookFormats::plain(double points)
{
    lxw_format* format = workbook_add_format(&m_book);
    format_set_font_name(format, "Times New Roman");
    format_set_font_size(format, points);
    return format;
}

lxw_format* WorkbookFormats::make(const Cell& cell, bool hidesZero)
{
    static constexpr lxw_format_alignments kAligns[] = {LXW_ALIGN_LEFT, LXW_ALIGN_CENTER,
                                                        LXW_ALIGN_RIGHT};
    lxw_format* format = plain(kTablePoints);
    format_set_border(format, LXW_BORDER_THIN);
    format_set_align(format, static_cast<std::uint8_t>(kAligns[static_cast<int>(cell.align)]));
    format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
    format_set_text_wrap(format);
    if (cell.bold || cell.ink == Ink::Unexcused)
        format_set_bold(format);
    if (cell.ink == Ink::Unexcused)
        format_set_font_color(format, kUnexcused);
    if (cell.ink == Ink::Excused) {
        format_set_font_color(format, kExcused);
        format_set_italic(format);
    }
    if (cell.shaded)
        format_set_bg_color(format, kShade);
    constexpr std::int16_t kUpwards = 90;
    if (cell.rotated)
        format_set_rotation(format, kUpwards);
    std::string digits = "0";
    if (cell.decimals > 0)
        digits += '.' + std::string(static_cast<std::size_t>(cell.decimals), '0');
    const std::string hidden = digits + ";-" + digits + ";;@";
    format_set_num_format(format, (hidesZero ? hidden : digits).c_str());
    return format;
}

void setOwnFont(lxw_workbook& book)
{
    lxw_format* own = STAILQ_FIRST(book.formats);
    format_set_font_name(own, "Arial");
    format_set_font_size(own, 10); // a digit is as wide as in Calibri 11
}

} // namespace papers
