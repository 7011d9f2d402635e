#include "papers/forms/paperlayout.h"

#include <gtest/gtest.h>

#include <QPdfWriter>
#include <QTemporaryDir>

using namespace papers;
using namespace Qt::StringLiterals;

namespace {

Paper table(int rows, int columns, double columnMm)
{
    Paper paper;
    paper.title = u"ВЕДОМОСТЬ"_s;
    paper.widths = {7, 46};
    Row heads{heading(u"№"_s), heading(u"Фамилия И.О."_s)};
    for (int column = 0; column < columns; ++column) {
        paper.widths.push_back(columnMm);
        heads.push_back(rotatedHeading(u"Дисциплина %1"_s.arg(column + 1)));
    }
    paper.head = {heads};
    for (int row = 0; row < rows; ++row) {
        Row cells{number(row + 1), text(u"Абрамова Е. С."_s)};
        cells.resize(static_cast<std::size_t>(columns) + 2, number(5));
        paper.body.push_back(cells);
    }
    paper.signatures = {{u"Куратор"_s, u"Иванова А. П."_s}};
    return paper;
}

class PaperLayoutTest : public testing::Test
{
protected:
    PaperLayoutTest()
    {
        writer.setResolution(300);
        frame.device = &writer;
        frame.perMm = 300 / 25.4;
        frame.area = QRectF(0, 0, 267 * frame.perMm, 190 * frame.perMm);
    }
    QTemporaryDir folder;
    QPdfWriter writer{folder.filePath(u"a.pdf"_s)};
    PageFrame frame;
};

} // namespace

TEST(Paper, PlacesCellsAroundThoseThatSpanRows)
{
    const std::vector<Row> rows{{heading(u"№"_s, 1, 2), heading(u"А"_s, 2), heading(u"Б"_s, 1, 2)},
                                {heading(u"ув."_s), heading(u"неув."_s)}};
    QStringList places;
    for (const PlacedCell& place : placed(rows))
        places << u"%1 %2 %3"_s.arg(shownText(*place.cell)).arg(place.row).arg(place.column);
    EXPECT_EQ(places,
              (QStringList{u"№ 0 0"_s, u"А 0 1"_s, u"Б 0 3"_s, u"ув. 1 1"_s, u"неув. 1 2"_s}));
    EXPECT_EQ(shownText(number(4.456, 2)), u"4,46"_s);
    EXPECT_EQ(shownText(number(12345)), u"12345"_s);
    EXPECT_EQ(shownText(hours(0)), QString());
    EXPECT_EQ(columnLetters(0) + columnLetters(25) + columnLetters(26) + columnLetters(701)
                  + columnLetters(702),
              u"AZAAZZAAA"_s);
    EXPECT_EQ(sumFormula(2, 25), u"SUM(C8:C32)"_s);
    EXPECT_EQ(sumFormula(27, 3, 4), u"SUM(AB12:AB14)"_s);
}

TEST_F(PaperLayoutTest, EveryRowStandsOnOnePageAndEveryPageFits)
{
    for (const int rows : {0, 1, 25, 32, 33, 34, 35, 36, 120}) {
        const Paper paper = table(rows, 10, 10);
        const PaperLayout layout(paper, frame);
        int next = 0;
        for (const PageShare& share : layout.pages()) {
            EXPECT_EQ(share.firstRow, next) << rows;
            EXPECT_EQ(share.top, next == 0) << rows;
            EXPECT_EQ(share.notes, next + share.rowCount == rows) << rows;
            EXPECT_LE(layout.height(share), frame.area.height()) << rows;
            next += share.rowCount;
        }
        EXPECT_EQ(next, rows);
    }
}

TEST_F(PaperLayoutTest, ALittleTooLongIsSqueezedOntoOnePage)
{
    QStringList squeezed;
    for (int rows = 25; rows < 60; ++rows) {
        const Paper paper = table(rows, 21, 10);
        const double by = PaperLayout(paper, frame).squeezeToOnePage();
        if (by == 1)
            continue;
        const PageFrame larger = frame.squeezed(by);
        const PaperLayout layout(paper, larger);
        ASSERT_EQ(layout.pages().size(), 1U) << rows;
        EXPECT_LE(layout.height(layout.pages().front()) * by, frame.area.height());
        double across = 0;
        for (const int column : layout.columns(layout.pages().front()))
            across += layout.width(column);
        EXPECT_NEAR(across * by, 263 * frame.perMm, 1) << "the table stays as wide";
        squeezed << QString::number(rows);
    }
    EXPECT_GT(squeezed.size(), 3);
    EXPECT_LT(squeezed.size(), 12) << "what is much too long goes on";
}

TEST_F(PaperLayoutTest, ALongSignatureWraps)
{
    Paper paper = table(5, 10, 10);
    paper.signatures = {{u"Директор"_s, {}},
                        {u"Заместитель директора по учебной работе "_s.repeated(4), {}}};
    const PaperLayout layout(paper, frame);
    EXPECT_GT(layout.signatureHeight(0), 2 * layout.lineHeight(10));
}

TEST_F(PaperLayoutTest, AWideTableIsSetSmallerAndThenSpreadOverPages)
{
    const Paper fits = table(5, 21, 10); // 263 mm
    EXPECT_DOUBLE_EQ(PaperLayout(fits, frame).tableFont(Cell()).pointSizeF(), 9);
    const Paper smaller = table(5, 28, 10); // 333 mm
    const PaperLayout small(smaller, frame);
    EXPECT_EQ(small.pages().size(), 1U);
    EXPECT_LT(small.tableFont(Cell()).pointSizeF(), 7.5);
    EXPECT_GE(small.tableFont(Cell()).pointSizeF(), 6.5);

    const Paper wide = table(5, 60, 10);
    const PaperLayout spread(wide, frame);
    std::vector<int> seen;
    for (const PageShare& share : spread.pages()) {
        double across = 0;
        for (const int column : spread.columns(share))
            across += spread.width(column);
        EXPECT_LE(across, frame.area.width() + 1);
        EXPECT_EQ(spread.columns(share)[0], 0);
        EXPECT_EQ(spread.columns(share)[1], 1);
        seen.insert(seen.end(), spread.columns(share).begin() + 2, spread.columns(share).end());
        EXPECT_EQ(share.rowCount, 5);
    }
    ASSERT_EQ(seen.size(), 60U);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_EQ(spread.pages().size(), 2U);
    EXPECT_TRUE(spread.pages().back().notes);
    EXPECT_FALSE(spread.pages().front().notes);
}
