#include "tests/support/workbook.h"

#include <QFile>
#include <QXmlStreamReader>

#include <zip.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray entry(zip_t* archive, const char* name)
{
    const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(zip_fopen(archive, name, 0),
                                                                  &zip_fclose);
    constexpr unsigned kPart = 65536;
    QByteArray bytes, part(kPart, '\0');
    zip_int64_t count = 0;
    while (file && (count = zip_fread(file.get(), part.data(), kPart)) > 0)
        bytes.append(part.constData(), count);
    return bytes;
}

// The column of a place such as "AB12".
qsizetype columnOf(QStringView place)
{
    qsizetype column = 0;
    for (const QChar letter : place)
        if (letter.isLetter())
            column = column * 26 + (letter.unicode() - u'A' + 1);
    return column - 1;
}

QStringList sharedTexts(const QByteArray& xml)
{
    QStringList texts;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"si")
            texts << QString();
        else if (reader.name() == u"t" && !texts.empty())
            texts.last() += reader.readElementText();
    }
    return texts;
}

QList<QStringList> cells(const QByteArray& xml, const QStringList& shared)
{
    QList<QStringList> rows;
    QXmlStreamReader reader(xml);
    bool isText = false, isShared = false;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"row") {
            rows.resize(reader.attributes().value(u"r"_s).toInt());
        } else if (reader.name() == u"c") {
            isText = reader.attributes().value(u"t"_s) == u"inlineStr";
            isShared = reader.attributes().value(u"t"_s) == u"s";
            const qsizetype column = columnOf(reader.attributes().value(u"r"_s));
            while (rows.back().size() <= column)
                rows.back() << QString();
        } else if (reader.name() == (isText ? u"t" : u"v") && !rows.empty()) {
            const QString content = reader.readElementText();
            rows.back().last() = isShared ? shared.value(content.toInt())
                                 : isText ? content
                                          : u'=' + content;
        }
    }
    return rows;
}

} // namespace

Workbook Workbook::read(const QString& path, int sheet)
{
    Workbook book;
    const std::unique_ptr<zip_t, decltype(&zip_discard)> archive(
        zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, nullptr), &zip_discard);
    if (!archive)
        return book;
    book.sheetXml = entry(archive.get(),
                          ("xl/worksheets/sheet" + QByteArray::number(sheet) + ".xml").constData());
    book.stylesXml = entry(archive.get(), "xl/styles.xml");
    book.rows = cells(book.sheetXml, sharedTexts(entry(archive.get(), "xl/sharedStrings.xml")));
    QXmlStreamReader reader(entry(archive.get(), "xl/workbook.xml"));
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"sheet")
            book.sheets << reader.attributes().value(u"name"_s).toString();
    book.sheet = book.sheets.value(sheet - 1);
    return book;
}
