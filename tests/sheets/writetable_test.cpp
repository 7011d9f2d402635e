#include "jet/error.h"
#include "sheets/writetable.h"
#include "tests/support/workbook.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace sheets;

namespace {

class WriteTable : public testing::Test
{
protected:
    WriteTable()
    {
        table.title = u"Нагрузка: Иванов & Ко/2022 [весь учебный год]"_s;
        table.columns = {{u"Наименование"_s},
                         {u"Часы"_s, Kind::Number, Alignment::Right},
                         {u"Начало"_s, Kind::Date, Alignment::Centre}};
        table.rows = static_cast<int>(cells.size());
        table.text = [this](int row, int column) { return cells[row][column]; };
    }
    QString path(const QString& name) const { return folder.filePath(name); }
    QByteArray bytes(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir folder;
    Table table;
    const QList<QStringList> cells = {
        {u"Физика"_s, u"72"_s, u"01.09.2022"_s},
        {u"=1+1"_s, u"-1,5"_s, u"31.02.2022"_s}, // no formula; no such day
        {u"0012; \"а\"\nб <&>"_s, u"много"_s, u""_s},
        {u"\u0001 "_s, u""_s, u"30.12.1899"_s}, // before the days that the format knows
    };
};

TEST_F(WriteTable, WritesTextsNumbersAndDatesAsTheyAre)
{
    writeTable(path(u"книга.xlsx"_s), table);
    const Workbook book = Workbook::read(path(u"книга.xlsx"_s));
    const QList<QStringList> expected = {
        {u"Наименование"_s, u"Часы"_s, u"Начало"_s},
        {u"Физика"_s, u"=72"_s, u"=44805"_s},
        {u"=1+1"_s, u"=-1.5"_s, u"31.02.2022"_s},
        {u"0012; \"а\"\nб <&>"_s, u"много"_s},
        {u" "_s, u""_s, u"30.12.1899"_s},
    };
    ASSERT_EQ(book.rows.size(), expected.size());
    for (qsizetype row = 0; row < expected.size(); ++row)
        EXPECT_EQ(book.rows[row].join(u'|').toStdString(), expected[row].join(u'|').toStdString());
    EXPECT_FALSE(book.sheetXml.contains("<f>"));
    EXPECT_EQ(book.sheet, u"Нагрузка- Иванов & Ко-2022 -вес"_s);
    for (const char* part : {"<pane ySplit=\"1\"", "state=\"frozen\"",
                             "<autoFilter ref=\"A1:C5\"/>", "orientation=\"landscape\"",
                             "paperSize=\"9\"", "fitToHeight=\"0\"", "Иванов &amp;&amp; Ко"})
        EXPECT_TRUE(book.sheetXml.contains(part)) << part;
    EXPECT_TRUE(book.stylesXml.contains("dd.mm.yyyy"));
    EXPECT_EQ(files(), QStringList{u"книга.xlsx"_s}) << "no draft is left";
}

TEST_F(WriteTable, WritesTextsWithSemicolons)
{
    writeTable(path(u"список.CSV"_s), table);
    EXPECT_EQ(bytes(u"список.CSV"_s), u"\uFEFFНаименование;Часы;Начало\r\n"
                                      "Физика;72;01.09.2022\r\n"
                                      "=1+1;-1,5;31.02.2022\r\n"
                                      "\"0012; \"\"а\"\"\nб <&>\";много;\r\n"
                                      "\"\u0001 \";;30.12.1899\r\n"_s.toUtf8());
}

TEST_F(WriteTable, KeepsAnEarlierFileUnlessToldToReplaceIt)
{
    for (const QString& name : {u"a.xlsx"_s, u"a.csv"_s}) {
        QFile earlier(path(name));
        ASSERT_TRUE(earlier.open(QIODevice::WriteOnly));
        earlier.write("earlier");
        earlier.close();
        EXPECT_THROW(writeTable(path(name), table), jet::Error);
        EXPECT_EQ(bytes(name), "earlier");
        writeTable(path(name), table, Existing::Replace);
        EXPECT_GT(bytes(name).size(), 100);
    }
}

TEST_F(WriteTable, LeavesNothingBehindWhenItFails)
{
    QDir(folder.path()).mkdir(u"a.xlsx"_s);
    EXPECT_THROW(writeTable(path(u"a.xlsx"_s), table, Existing::Replace), jet::Error);
    EXPECT_THROW(writeTable(path(u"нет/a.xlsx"_s), table), jet::Error);
    table.text = [](int, int) -> QString { throw jet::Error(jet::Fault::Io, "нет строки"); };
    EXPECT_THROW(writeTable(path(u"b.xlsx"_s), table), jet::Error);
    EXPECT_THROW(writeTable(path(u"b.csv"_s), table), jet::Error);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(WriteTable, WritesATableWithoutRowsOrTitle)
{
    table.rows = 0;
    table.title.clear();
    writeTable(path(u"a.xlsx"_s), table);
    EXPECT_EQ(Workbook::read(path(u"a.xlsx"_s)).rows.size(), 1);
    EXPECT_EQ(Workbook::read(path(u"a.xlsx"_s)).sheet, u"Лист1"_s);
}

TEST(FileName, LeavesOutWhatFileSystemsRefuse)
{
    EXPECT_EQ(fileName(u" Группа: 1/2 \"ИС\" "_s), u"Группа- 1-2 -ИС-.xlsx"_s);
    EXPECT_EQ(fileName(u"..."_s), u"Таблица.xlsx"_s);
    EXPECT_LT(fileName(QString(500, u'я')).size(), 120);
}

} // namespace
