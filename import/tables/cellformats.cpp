#include "import/tables/cellformats.h"

#include "import/tables/xmlreading.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QTime>

#include <cmath>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

constexpr double kLastDay = 2'958'465; // 31.12.9999
constexpr int kSecondsPerDay = 86'400;
// The format counts the 29th of February 1900, which was no day, as day 60.
constexpr int kDayThatWasNot = 60;

bool isBetween(int value, int first, int last)
{
    return value >= first && value <= last;
}

} // namespace

CellFormats::CellFormats(const QByteArray& styles)
{
    QHash<int, Shown> own; // formats that the workbook brings
    bool inCells = false;
    readXml(styles, [&](const QXmlStreamReader& xml) {
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == u"numFmt")
            own.insert(attributes.value("numFmtId").toInt(),
                       shownBy(attributes.value("formatCode").toString()));
        else if (xml.name() == u"cellXfs" || xml.name() == u"cellStyleXfs")
            inCells = xml.name() == u"cellXfs";
        else if (xml.name() == u"xf" && inCells) {
            const int format = attributes.value("numFmtId").toInt();
            m_styles.push_back(own.contains(format) ? own.value(format) : shownBy(format));
        } else if (xml.name() == u"cellStyles" || xml.name() == u"dxfs") {
            inCells = false;
        }
    });
}

// The formats that every spreadsheet program knows by number; 27 to 58 are days in the languages
// of East Asia.
CellFormats::Shown CellFormats::shownBy(int format)
{
    if (isBetween(format, 14, 17) || isBetween(format, 27, 31) || format == 36
        || isBetween(format, 50, 54) || isBetween(format, 57, 58))
        return Shown::Day;
    if (isBetween(format, 18, 21) || isBetween(format, 32, 35) || isBetween(format, 45, 47)
        || isBetween(format, 55, 56))
        return Shown::Time;
    return format == 22 ? Shown::Both : Shown::Plain;
}

CellFormats::Shown CellFormats::shownBy(const QString& format)
{
    // Texts in quotes, signs after a backslash, widths, colours and countries say nothing.
    static const QRegularExpression kSilent(
        u"\"[^\"]*\"|\\\\.|_.|\\*.|\\[(?!h+\\]|m+\\]|s+\\])[^\\]]*\\]"_s,
        QRegularExpression::CaseInsensitiveOption);
    QString code = format.section(u';', 0, 0).toLower();
    code.remove(kSilent);
    if (code.contains(u"general"_s))
        return Shown::Plain;
    const bool hasTime = code.contains(u'h') || code.contains(u's');
    const bool hasDay =
        code.contains(u'd') || code.contains(u'y') || (code.contains(u'm') && !hasTime);
    if (hasDay)
        return hasTime ? Shown::Both : Shown::Day;
    return hasTime ? Shown::Time : Shown::Plain;
}

QString CellFormats::text(double number, int style) const
{
    const auto at = static_cast<std::size_t>(style);
    const Shown shown = style >= 0 && at < m_styles.size() ? m_styles[at] : Shown::Plain;
    if (shown != Shown::Plain && number >= 0 && number <= kLastDay)
        return dateText(number, shown);
    constexpr int kDigits = 15;            // that a double holds
    constexpr double kLargestWhole = 1e15; // written without an exponent
    if (number == std::floor(number) && std::abs(number) < kLargestWhole)
        return QString::number(static_cast<qint64>(number));
    return QString::number(number, 'g', kDigits);
}

QString CellFormats::dateText(double number, Shown shown) const
{
    const auto seconds = static_cast<qint64>(std::llround(number * kSecondsPerDay));
    auto day = seconds / kSecondsPerDay;
    const QTime time = QTime(0, 0).addSecs(static_cast<int>(seconds % kSecondsPerDay));
    QString timeText = time.toString(time.second() == 0 ? u"H:mm"_s : u"H:mm:ss"_s);
    if (shown == Shown::Time || (day == 0 && time > QTime(0, 0)))
        return timeText;
    if (!m_from1904 && day < kDayThatWasNot)
        ++day;
    const QDate first = m_from1904 ? QDate(1904, 1, 1) : QDate(1899, 12, 30);
    const QString dayText = first.addDays(day).toString(u"dd.MM.yyyy"_s);
    return time == QTime(0, 0) || shown == Shown::Day ? dayText : dayText + u' ' + timeText;
}

} // namespace imports
