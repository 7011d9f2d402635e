#include "shell/forms/workprogress.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

TEST(WorkProgress, AppearsWhenTheWorkLastsAndCancelsIt)
{
    QWidget window;
    window.setWindowTitle(u"Импорт"_s);
    window.show();
    {
        shell::WorkProgress progress(u"work"_s, u"Идет импорт..."_s, &window);
        EXPECT_TRUE(QGuiApplication::overrideCursor());
        auto* box = window.findChild<QProgressDialog*>(u"work"_s);
        ASSERT_TRUE(box);
        EXPECT_TRUE(progress(0));
        EXPECT_FALSE(box->isVisible()) << "short work shows no box";
        QTest::qWait(600);
        EXPECT_TRUE(progress(10));
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(box->windowTitle(), u"Импорт"_s);
        QTest::mouseClick(box->findChild<QPushButton*>(), Qt::LeftButton);
        EXPECT_FALSE(progress(20));
        EXPECT_FALSE(progress(30)) << "it stays cancelled";
    }
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}
