#include "journals/forms/frozentable.h"

#include "journals/forms/tableclip.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTest>

#include <algorithm>

using namespace journals;

namespace {

// 40 rows, 40 columns; the first 3 are frozen, cells are columns 3 to 36 of rows 0 to 37.
class FrozenTableTest : public testing::Test
{
protected:
    FrozenTableTest()
        : model(40, 40)
    {
        for (int row = 0; row < 40; ++row)
            for (int column = 0; column < 40; ++column)
                model.setItem(row, column,
                              new QStandardItem(QStringLiteral("%1:%2").arg(row).arg(column)));
        table.setFrozenColumns(3);
        table.setModel(&model);
        table.setDataArea(3, 37, 38);
        table.resize(500, 300);
        table.show();
        frozen = table.findChild<QTableView*>(QStringLiteral("frozenColumns"));
        table.setCurrentIndex(model.index(5, 10));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&table, key, modifiers);
    }
    std::pair<int, int> place() const
    {
        return {table.currentIndex().row(), table.currentIndex().column()};
    }

    QStandardItemModel model;
    FrozenTable table;
    QTableView* frozen;
};

TEST_F(FrozenTableTest, MovesAsASpreadsheet)
{
    const struct
    {
        const char* what;
        std::pair<int, int> from;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        std::pair<int, int> to;
    } cases[] = {
        {"Enter goes down", {5, 10}, Qt::Key_Return, {}, {6, 10}},
        {"as does that of the number pad", {5, 10}, Qt::Key_Enter, Qt::KeypadModifier, {6, 10}},
        {"Shift and Enter up", {5, 10}, Qt::Key_Return, Qt::ShiftModifier, {4, 10}},
        {"Tab right", {5, 10}, Qt::Key_Tab, {}, {5, 11}},
        {"and on to the next row", {5, 36}, Qt::Key_Tab, {}, {6, 3}},
        {"not beyond the last", {37, 36}, Qt::Key_Tab, {}, {37, 36}},
        {"Shift and Tab left", {5, 10}, Qt::Key_Backtab, Qt::ShiftModifier, {5, 9}},
        {"and back to the row before", {5, 3}, Qt::Key_Backtab, Qt::ShiftModifier, {4, 36}},
        {"not before the first", {0, 3}, Qt::Key_Backtab, Qt::ShiftModifier, {0, 3}},
        {"Home", {5, 10}, Qt::Key_Home, {}, {5, 3}},
        {"End", {5, 10}, Qt::Key_End, {}, {5, 36}},
        {"Ctrl Home", {5, 10}, Qt::Key_Home, Qt::ControlModifier, {0, 3}},
        {"Ctrl End", {5, 10}, Qt::Key_End, Qt::ControlModifier, {37, 36}},
        {"Ctrl Left", {5, 10}, Qt::Key_Left, Qt::ControlModifier, {5, 3}},
        {"Ctrl Right", {5, 10}, Qt::Key_Right, Qt::ControlModifier, {5, 36}},
        {"Ctrl Up", {5, 10}, Qt::Key_Up, Qt::ControlModifier, {0, 10}},
        {"Ctrl Down", {5, 10}, Qt::Key_Down, Qt::ControlModifier, {37, 10}},
        {"an arrow enters the frozen columns", {5, 3}, Qt::Key_Left, {}, {5, 2}},
    };
    for (const auto& row : cases) {
        table.setCurrentIndex(model.index(row.from.first, row.from.second));
        press(row.key, row.modifiers);
        EXPECT_EQ(place(), row.to) << row.what;
        EXPECT_EQ(table.selectionModel()->selectedIndexes().size(), 1) << row.what;
    }
    table.setCurrentIndex(model.index(5, 10));
    press(Qt::Key_PageDown);
    EXPECT_GT(place().first, 8);
    press(Qt::Key_PageUp);
    EXPECT_EQ(place().second, 10);
}

TEST_F(FrozenTableTest, ShiftSelectsABlock)
{
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(table.selectionModel()->selectedIndexes().size(), 6);
    EXPECT_EQ(tableText(table.selectionModel()->selectedIndexes()),
              QStringLiteral("5:10\t5:11\n6:10\t6:11\n7:10\t7:11\n"));
    press(Qt::Key_Right);
    EXPECT_EQ(table.selectionModel()->selectedIndexes().size(), 1);
}

TEST_F(FrozenTableTest, CurrentCellIsNeverBeneathTheFrozenColumns)
{
    for (const Qt::Key way : {Qt::Key_Right, Qt::Key_Left}) {
        for (int step = 0; step < 40; ++step) {
            press(way);
            if (place().second < 3)
                continue;
            const QRect cell = table.visualRect(table.currentIndex());
            EXPECT_GE(cell.left(), frozen->width()) << place().second;
            EXPECT_LE(cell.right(), table.viewport()->width()) << place().second;
        }
    }
}

TEST_F(FrozenTableTest, BothViewsKeepInStep)
{
    EXPECT_EQ(frozen->selectionModel(), table.selectionModel());
    table.verticalScrollBar()->setValue(123);
    EXPECT_EQ(frozen->verticalScrollBar()->value(), 123);
    frozen->verticalScrollBar()->setValue(45);
    EXPECT_EQ(table.verticalScrollBar()->value(), 45);
    for (const int row : {3, 8}) {
        const QModelIndex name = model.index(row, 1);
        EXPECT_EQ(frozen->visualRect(name).top(), table.visualRect(name).top());
        EXPECT_EQ(frozen->rowHeight(row), table.rowHeight(row));
    }
    table.setColumnWidth(1, 111);
    EXPECT_EQ(frozen->columnWidth(1), 111);
    frozen->horizontalHeader()->resizeSection(1, 77);
    EXPECT_EQ(table.columnWidth(1), 77);
    EXPECT_EQ(frozen->horizontalHeader()->height(), table.horizontalHeader()->height());
    EXPECT_TRUE(frozen->isColumnHidden(3));
    for (const int y : {5, table.horizontalHeader()->height() + 20})
        EXPECT_TRUE(frozen->isAncestorOf(table.childAt(20, y))) << "header and rows lie on top";
    model.insertColumns(20, 1); // as after a change of the month
    model.removeColumns(20, 1);
    EXPECT_FALSE(frozen->isColumnHidden(2));
}

TEST_F(FrozenTableTest, ClickOnAFrozenCellMakesItCurrent)
{
    table.horizontalScrollBar()->setValue(200);
    QTest::mouseClick(frozen->viewport(), Qt::LeftButton, {},
                      frozen->visualRect(model.index(2, 1)).center());
    EXPECT_EQ(place(), std::pair(2, 1));
    EXPECT_EQ(table.horizontalScrollBar()->value(), 200) << "and moves nothing sideways";
}

TEST_F(FrozenTableTest, HeaderGrowsSoThatNoCaptionIsCut)
{
    model.setHorizontalHeaderLabels({QStringLiteral("№ п.п"), QStringLiteral("ФИО студента"),
                                     QStringLiteral("На начало месяца, час.")});
    for (const int width : {200, 60}) {
        table.setColumnWidth(2, width);
        const QHeaderView* header = table.horizontalHeader();
        const QRect needed = header->fontMetrics().boundingRect(
            QRect(0, 0, width, 1000), Qt::TextWordWrap, QStringLiteral("На начало месяца, час."));
        EXPECT_TRUE(QTest::qWaitFor([&] { return header->height() >= needed.height(); })) << width;
        EXPECT_EQ(frozen->horizontalHeader()->height(), header->height());
    }
}

} // namespace
