#include "import/tables/readtable.h"

#include "data/convert.h"
#include "import/tables/cellformats.h"
#include "jet/database.h"
#include "jet/error.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <zip.h>

using namespace Qt::StringLiterals;
using namespace imports;

namespace {

QByteArray cp1251(const QString& text)
{
    QByteArray bytes;
    for (const QChar sign : text)
        bytes += static_cast<char>(sign < u'\x80' ? sign.unicode() : sign.unicode() - 0x410 + 0xC0);
    return bytes;
}

class ReadTable : public testing::Test
{
protected:
    QString file(const QByteArray& bytes) const
    {
        QFile out(folder.filePath(u"таблица"_s));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
        return out.fileName();
    }
    // A workbook of these parts beside the relations that each has.
    QString workbook(const QByteArray& sheet, const QByteArray& shared, const QByteArray& styles,
                     const QByteArray& properties = {}) const
    {
        const QByteArray kind = "http://schemas.openxmlformats.org/officeDocument/2006/"
                                "relationships/";
        const auto relation = [&](const QByteArray& id, const QByteArray& type,
                                  const QByteArray& target) {
            return "<Relationship Id=\"" + id + "\" Type=\"" + kind + type + "\" Target=\"" + target
                   + "\"/>";
        };
        const QList<std::pair<const char*, QByteArray>> parts = {
            {"_rels/.rels", "<Relationships>" + relation("r1", "officeDocument", "/book/main.xml")
                                + "</Relationships>"},
            {"book/_rels/main.xml.rels",
             "<Relationships>" + relation("a", "worksheet", "pages/one.xml")
                 + relation("b", "worksheet", "pages/two.xml")
                 + relation("c", "sharedStrings", "texts.xml")
                 + relation("d", "styles", "../styles.xml") + "</Relationships>"},
            {"book/main.xml", "<workbook xmlns:r=\"x\">" + properties
                                  + "<sheets><sheet name=\"Empty\" sheetId=\"1\" r:id=\"a\"/>"
                                    "<sheet name=\"Data\" sheetId=\"2\" r:id=\"b\"/></sheets>"
                                    "</workbook>"},
            {"book/pages/one.xml", "<worksheet><sheetData/></worksheet>"},
            {"book/pages/two.xml", "<worksheet><sheetData>" + sheet + "</sheetData></worksheet>"},
            {"book/texts.xml", "<sst>" + shared + "</sst>"},
            {"styles.xml", "<styleSheet>" + styles + "</styleSheet>"},
        };
        const QString path = folder.filePath(u"книга.xlsx"_s);
        zip_t* zip =
            zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
        for (const auto& [name, bytes] : parts)
            zip_file_add(zip, name,
                         zip_source_buffer(zip, bytes.constData(),
                                           static_cast<zip_uint64_t>(bytes.size()), 0),
                         0);
        EXPECT_EQ(zip_close(zip), 0);
        return path;
    }
    // "3: a|b" for each row.
    static QStringList lines(const TextTable& table)
    {
        QStringList all;
        for (const TextRow& row : table.rows)
            all << QString::number(row.number) + u": "_s + row.cells.join(u'|');
        return all;
    }

    QTemporaryDir folder;
};

TEST_F(ReadTable, TellsEncodingsAndSeparatorsApart)
{
    const QString semicolons = u"Имя;Адрес\r\nИванов;г. Москва, ул. Мира, 1\r\n"_s;
    const QStringList two = {u"1: Имя|Адрес"_s, u"2: Иванов|г. Москва, ул. Мира, 1"_s};
    QByteArray utf16("\xFF\xFE", 2);
    utf16.append(reinterpret_cast<const char*>(semicolons.utf16()), 2 * semicolons.size());
    const struct
    {
        QByteArray bytes;
        QStringList rows;
    } cases[] = {
        {semicolons.toUtf8(), two},
        {"\xEF\xBB\xBF" + semicolons.toUtf8(), two},
        {cp1251(semicolons), two},
        {utf16, two},
        {cp1251(u"Имя,Адрес\rИванов,\"г. Москва, ул. Мира, 1\""_s), two},
        {u"Имя\tАдрес\nИванов\tг. Москва, ул. Мира, 1"_s.toUtf8(), two},
        {u"sep=|\nИмя|Адрес"_s.toUtf8(), {u"2: Имя|Адрес"_s}},
        {u"Список;\n\n;;\nа;б\n\"в\"\"\";\"г\r\n;д\"е\n"_s.toUtf8(),
         {u"1: Список"_s, u"4: а|б"_s, u"5: в\"|г\r\n;де"_s}},
        {u"Название\nФизика, химия\nБиология\n"_s.toUtf8(), // one column
         {u"1: Название"_s, u"2: Физика, химия"_s, u"3: Биология"_s}},
        {"", {}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(lines(readTable(file(each.bytes))).join(u'\n').toStdString(),
                  each.rows.join(u'\n').toStdString());
}

TEST_F(ReadTable, ReadsEveryKindOfCell)
{
    const QByteArray styles = "<numFmts><numFmt numFmtId=\"170\" formatCode=\"[$-419]d mmmm "
                              "yyyy\\ &quot;h&quot;;@\"/><numFmt numFmtId=\"171\" "
                              "formatCode=\"#,##0.00&quot;d&quot;[Red]\"/></numFmts>"
                              "<cellStyleXfs><xf numFmtId=\"14\"/></cellStyleXfs>"
                              "<cellXfs><xf numFmtId=\"0\"/><xf numFmtId=\"14\"/>"
                              "<xf numFmtId=\"20\"/><xf numFmtId=\"22\"/><xf numFmtId=\"170\"/>"
                              "<xf numFmtId=\"171\"/></cellXfs>";
    const QByteArray sheet =
        "<row r=\"3\"><c r=\"A3\" t=\"s\"><v>1</v></c><c r=\"C3\"><v>72</v></c>"
        "<c><v>1.5</v></c><c t=\"inlineStr\"><is><t>_x0041_</t></is></c></row>"
        "<row><c s=\"1\"><v>44805</v></c><c s=\"2\"><v>0.354166666666667</v></c>"
        "<c s=\"3\"><v>44805.354166666664</v></c><c s=\"4\"><v>1</v></c>"
        "<c s=\"5\"><v>44805</v></c><c t=\"b\"><v>1</v></c><c "
        "t=\"str\"><f>A1</f><v>x</v></c></row>";
    const QByteArray shared = "<si><t>no</t></si><si><r><t>a&amp;</t></r><r><t> b</t></r>"
                              "<rPh><t>reading</t></rPh></si>";
    const QString path = workbook(sheet, shared, styles);
    EXPECT_TRUE(readTable(path).rows.empty());
    const TextTable table = readTable(path, u"data"_s);
    EXPECT_EQ(table.sheets, (QStringList{u"Empty"_s, u"Data"_s}));
    EXPECT_EQ(lines(table).join(u'\n').toStdString(),
              u"3: a& b||72|1.5|A\n"
              "4: 01.09.2022|8:30|01.09.2022 8:30|01.01.1900|44805|Да|x"_s.toStdString());
    const QString old =
        workbook("<row><c s=\"1\"><v>0</v></c></row>", {}, styles, "<workbookPr date1904=\"1\"/>");
    EXPECT_EQ(lines(readTable(old, u"Data"_s)), QStringList{u"1: 01.01.1904"_s});
}

TEST_F(ReadTable, ReadsATableOfADatabase)
{
    const QString path = folder.filePath(u"a.mdb"_s);
    {
        const auto database = jet::Database::create(data::toPath(path));
        database->execute("CREATE TABLE A (X LONG);");
        database->execute("CREATE TABLE [Б] (Имя TEXT(20), D DATETIME, N DOUBLE, F BIT);");
        database->execute("INSERT INTO [Б] VALUES (\"Мир\", #09/01/2022#, 1.5, True);");
    }
    const TextTable table = readTable(path, u"б"_s);
    EXPECT_EQ(table.sheets, (QStringList{u"A"_s, u"Б"_s}));
    EXPECT_EQ(lines(table), (QStringList{u"1: Имя|D|N|F"_s, u"2: Мир|01.09.2022|1.5|-1"_s}));
    EXPECT_THROW(readTable(path, u"В"_s), jet::Error);
}

TEST_F(ReadTable, RefusesWhatIsNoTable)
{
    const QByteArray refused[] = {
        QByteArray("PK\x03\x04 no archive"),
        QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + QByteArray(600, '\0'),
        QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16),
        "a;b\n\"c;d\n",                       // a quote that is not closed
        QByteArray("a;").repeated(300) + "a", // too many columns
    };
    for (const QByteArray& bytes : refused)
        EXPECT_THROW(readTable(file(bytes)), jet::Error) << bytes.left(20).toStdString();
    EXPECT_THROW(readTable(folder.filePath(u"нет"_s)), jet::Error);
    for (const QByteArray& sheet :
         {QByteArray("<row><c t=\"s\"><v>7</v></c></row>"),
          QByteArray("<row><c t=\"e\"><v>#N/A</v></c></row>"),
          QByteArray("<row><c r=\"ZZZZZZ1\"><v>1</v></c></row>"),
          QByteArray("<row><c><v>one</v></c></row>"), QByteArray("<row><c><v>1</v></row>")})
        EXPECT_THROW(readTable(workbook(sheet, {}, {}), u"Data"_s), jet::Error)
            << sheet.toStdString();
    EXPECT_THROW(readTable(workbook({}, {}, {}), u"Нет"_s), jet::Error);
}

// A file cut or spoilt at any place is read or refused, and never ends the program.
TEST_F(ReadTable, SurvivesDamage)
{
    const QString path = workbook("<row><c t=\"s\"><v>0</v></c></row>", "<si><t>a</t></si>",
                                  "<cellXfs><xf numFmtId=\"0\"/></cellXfs>");
    QFile in(path);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    const QByteArray whole = in.readAll();
    int refused = 0;
    for (qsizetype at = 4; at < whole.size(); at += 7) {
        QByteArray spoilt = whole;
        spoilt[at] = static_cast<char>(spoilt[at] ^ 0x55);
        for (const QByteArray& bytes : {spoilt, whole.left(at)}) {
            try {
                readTable(file(bytes), u"Data"_s);
            } catch (const jet::Error&) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, whole.size() / 7);
}

// Half a megabyte that unpacks to what memory should not hold.
TEST_F(ReadTable, RefusesAZipBomb)
{
    const QString path = workbook(QByteArray(257 << 20, ' '), {}, {});
    ASSERT_LT(QFile(path).size(), 1 << 20);
    try {
        readTable(path, u"Data"_s);
        FAIL();
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.fault(), jet::Fault::Limit);
    }
}

} // namespace
