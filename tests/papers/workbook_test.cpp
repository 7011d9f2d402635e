#include "jet/error.h"
#include "papers/workbook.h"
#include "tests/support/workbook.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace papers;
using namespace Qt::StringLiterals;

TEST(PaperWorkbook, TheBodyBeginsInRowEightAndTotalsAreFormulas)
{
    Paper paper;
    paper.name = u"21-ИС-1: [журнал]"_s;
    paper.institution = {u"Колледж"_s};
    paper.title = u"ОТЧЕТ"_s;
    paper.subtitle = u"ноябрь"_s;
    paper.widths = {7, 40, 10, 10};
    paper.head = {{heading(u"№"_s, 1, 2), heading(u"Ф.И.О."_s, 1, 2), heading(u"Часы"_s, 2)},
                  {heading(u"ув."_s), rotatedHeading(u"неув."_s)}};
    paper.body = {{number(1), text(u"=1+1"_s), hours(4), hours(0)},
                  {number(2), text(u"Волков"_s), number(2.25, 2), hours(6, Ink::Unexcused)}};
    Cell total = bold(number(6.25, 2));
    total.formula = sumFormula(2, 2);
    paper.body.push_back({text({}), text(u"ИТОГО"_s), total, hours(6)});
    paper.notes = {u"Примечание"_s};
    paper.signatures = {{u"Куратор"_s, u"А. Б."_s}};
    const Document document{u"test"_s, u"Отчет"_s, {paper, paper}};
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Отчет.xlsx"_s);
    writeWorkbook(document, path);

    const Workbook book = Workbook::read(path);
    EXPECT_EQ(book.sheets, (QStringList{u"21-ИС-1- -журнал-"_s, u"21-ИС-1- -журнал- (2)"_s}));
    ASSERT_EQ(book.rows.size(), 13);
    EXPECT_EQ(book.rows[0][0], u"Колледж"_s);
    EXPECT_EQ(book.rows[3][0], u"ОТЧЕТ"_s);
    EXPECT_EQ(book.rows[4][0], u"ноябрь"_s);
    EXPECT_EQ(book.rows[5], (QStringList{u"№"_s, u"Ф.И.О."_s, u"Часы"_s, u""_s}));
    EXPECT_EQ(book.rows[6].mid(2), (QStringList{u"ув."_s, u"неув."_s}));
    EXPECT_EQ(book.rows[7], (QStringList{u"=1"_s, u"=1+1"_s, u"=4"_s, u""_s})); // no formula
    EXPECT_EQ(book.rows[8], (QStringList{u"=2"_s, u"Волков"_s, u"=2.25"_s, u"=6"_s}));
    EXPECT_TRUE(book.sheetXml.contains("<f>SUM(C8:C9)</f><v>6.25</v>"));
    EXPECT_TRUE(book.sheetXml.contains("orientation=\"landscape\""));
    EXPECT_TRUE(book.sheetXml.contains("fitToHeight=\"0\""));
    EXPECT_FALSE(book.sheetXml.contains("<f>1+1</f>"));
    EXPECT_THROW(writeWorkbook(document, path), jet::Error); // never over an existing file
}
