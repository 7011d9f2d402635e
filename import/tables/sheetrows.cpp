#include "import/tables/sheetrows.h"

#include "data/convert.h"
#include "import/tables/cellformats.h"
#include "import/tables/tablelimits.h"
#include "import/tables/xmlreading.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

[[noreturn]] void fail(const QString& cell)
{
    throw jet::Error(jet::Fault::Damaged,
                     data::toUtf8(u"книга .xlsx повреждена (ячейка %1)"_s.arg(cell)));
}

// Signs that XML cannot hold stand as "_x000D_".
QString unescaped(QString text)
{
    static const QRegularExpression kEscape(u"_x([0-9A-Fa-f]{4})_"_s);
    if (!text.contains(u"_x"_s))
        return text;
    QString plain;
    qsizetype at = 0;
    for (const QRegularExpressionMatch& match : kEscape.globalMatch(text)) {
        plain += QStringView(text).sliced(at, match.capturedStart() - at);
        plain += QChar(match.captured(1).toUShort(nullptr, 16));
        at = match.capturedEnd();
    }
    return plain + text.sliced(at);
}

// The text of an element <si> or <is>, whose pieces differ in their font; leaves the reader at its
// end. Readings of East Asian signs (rPh) are not part of it.
QString richText(QXmlStreamReader& xml)
{
    QString text;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"t")
            text += xml.readElementText();
        else if (xml.name() == u"r")
            text += richText(xml);
        else
            xml.skipCurrentElement();
    }
    return text;
}

// "AB12" has the column 27.
int columnOf(QStringView name)
{
    int column = 0;
    for (const QChar letter : name) {
        if (letter < u'A' || letter > u'Z')
            break;
        column = column * 26 + (letter.unicode() - u'A' + 1);
        checkColumn(column - 1);
    }
    return column - 1;
}

class SheetReader
{
public:
    SheetReader(const QByteArray& part, const QStringList& shared, const CellFormats& formats)
        : m_xml(part)
        , m_shared(shared)
        , m_formats(formats)
    {}

    std::vector<TextRow> read()
    {
        while (!m_xml.atEnd()) {
            m_xml.readNext();
            if (m_xml.isStartElement() && m_xml.name() == u"row")
                readRow();
        }
        requireSound(m_xml);
        return m_rows.take();
    }

private:
    void readRow()
    {
        bool isNumber = false;
        const int given = m_xml.attributes().value("r").toInt(&isNumber);
        m_row = isNumber ? given : m_row + 1;
        QStringList cells;
        qsizetype column = 0;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() != u"c") {
                m_xml.skipCurrentElement();
                continue;
            }
            const QString name = m_xml.attributes().value("r").toString();
            if (const int named = columnOf(name); named >= 0)
                column = named;
            const QString text = readCell(name);
            checkColumn(column);
            if (cells.size() <= column)
                cells.resize(column + 1);
            cells[column++] = text;
        }
        requireSound(m_xml);
        m_rows.add(m_row, std::move(cells));
    }

    QString readCell(const QString& name)
    {
        const QString type = m_xml.attributes().value("t").toString();
        const int style = m_xml.attributes().value("s").toInt();
        QString value;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == u"v")
                value = m_xml.readElementText();
            else if (m_xml.name() == u"is")
                value = richText(m_xml);
            else
                m_xml.skipCurrentElement();
        }
        return value.isEmpty() ? QString() : textOf(value, type, style, name);
    }

    QString textOf(const QString& value, const QString& type, int style, const QString& name) const
    {
        if (type == u"s") {
            bool isNumber = false;
            const int position = value.toInt(&isNumber);
            if (!isNumber || position < 0 || position >= m_shared.size())
                fail(name);
            return m_shared[position];
        }
        if (type == u"e")
            throw jet::Error(
                jet::Fault::Type,
                data::toUtf8(
                    u"в ячейке %1 ошибка %2: исправьте ее и сохраните книгу"_s.arg(name, value)));
        if (type == u"b")
            return value == u"1" ? u"Да"_s : u"Нет"_s;
        if (type == u"inlineStr" || type == u"str")
            return unescaped(value);
        if (type == u"d")
            return QDate::fromString(value.left(10), Qt::ISODate).toString(u"dd.MM.yyyy"_s);
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number))
            fail(name);
        return m_formats.text(number, style);
    }

    QXmlStreamReader m_xml;
    const QStringList& m_shared;
    const CellFormats& m_formats;
    RowCollector m_rows;
    int m_row = 0;
};

} // namespace

QStringList sharedTexts(const QByteArray& part)
{
    QStringList texts;
    QXmlStreamReader xml(part);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"si")
            texts << unescaped(richText(xml));
    }
    requireSound(xml);
    return texts;
}

std::vector<TextRow> sheetRows(const QByteArray& part, const QStringList& shared,
                               const CellFormats& formats)
{
    return SheetReader(part, shared, formats).read();
}

} // namespace imports
