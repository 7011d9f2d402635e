#include "shell/forms/datetyping.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDateEdit>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

TEST(DateTyping, WhatIsTypedReplacesThePartThatWasGoneTo)
{
    shell::easeDateTyping(*qApp);
    QDateEdit box(QDate(2026, 6, 14));
    box.setDisplayFormat(u"dd.MM.yyyy"_s);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    QTest::keyClick(&box, Qt::Key_End);
    QTest::keyClick(&box, Qt::Key_Home);
    QTest::keyClicks(&box, u"01.05.2025"_s);
    EXPECT_EQ(box.date(), QDate(2025, 5, 1));
    for (const auto& [typed, date] :
         {std::pair(u"7.3.2024"_s, QDate(2024, 3, 7)),
          std::pair(u"30.06.2024"_s, QDate(2024, 6, 30)),
          std::pair(u"31,05,2025"_s, QDate(2025, 5, 31)), // no day of June, which it still shows
          std::pair(u"01062025"_s, QDate(2025, 6, 1)),
          std::pair(u"29.02.2024"_s, QDate(2024, 2, 29))}) {
        QTest::keyClick(&box, Qt::Key_Home);
        QTest::keyClicks(&box, typed);
        EXPECT_EQ(box.date(), date) << typed.toStdString();
    }

    box.setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClicks(&box, u"01.2023"_s);
    EXPECT_EQ(box.date(), QDate(2023, 1, 29));

    auto* line = box.findChild<QLineEdit*>();
    for (const int position : {1, 4, 8}) {
        line->setCursorPosition(position);
        QTest::mouseClick(line, Qt::LeftButton, {},
                          line->inputMethodQuery(Qt::ImCursorRectangle).toRect().center());
        QCoreApplication::processEvents();
        QTest::keyClicks(&box, position == 1 ? u"23"_s : position == 4 ? u"11"_s : u"2024"_s);
    }
    EXPECT_EQ(box.date(), QDate(2024, 11, 23));
}
