#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace imports {

// How a workbook shows numbers: plainly, or as days and times.
class CellFormats
{
public:
    CellFormats() = default;
    // From the part xl/styles.xml. Throws jet::Error.
    explicit CellFormats(const QByteArray& styles);

    // Days count from 1904 instead of 1900.
    void countFrom1904() { m_from1904 = true; }

    // A cell's number in the style's format: "72", "1.5", "01.09.2026", "8:30",
    // "01.09.2026 8:30". A style that is not known shows plainly.
    QString text(double number, int style) const;

private:
    enum class Shown { Plain, Day, Time, Both };
    static Shown shownBy(int format);
    static Shown shownBy(const QString& format);
    QString dateText(double number, Shown shown) const;

    std::vector<Shown> m_styles; // by the number of the style
    bool m_from1904 = false;
};

} // namespace imports
