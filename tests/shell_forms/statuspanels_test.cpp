#include "shell/forms/statuspanels.h"
#include "shell/session.h"

#include <gtest/gtest.h>

#include <QStatusBar>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

TEST(StatusPanels, KeepErrorsReadable)
{
    QStatusBar bar;
    shell::Session session;
    shell::StatusPanels panels(bar, session);
    auto* clock = panels.findChild<QTimer*>();
    panels.show(u"Ошибка: не выбрана группа."_s);
    EXPECT_GE(clock->interval(), 5000);
    panels.show(u"Идет заполнение таблицы посещаемости..."_s);
    panels.show(u"Готово."_s);
    EXPECT_EQ(panels.text(), u"Ошибка: не выбрана группа."_s);
    clock->start(1); // the time is up
    EXPECT_TRUE(QTest::qWaitFor([&] { return panels.text() == u"Готово."_s; }));
    panels.show(u"Дальше"_s);
    EXPECT_EQ(panels.text(), u"Дальше"_s);
}

TEST(StatusPanels, ANewErrorReplacesTheFormerOneAtOnce)
{
    QStatusBar bar;
    shell::Session session;
    shell::StatusPanels panels(bar, session);
    panels.show(u"Ошибка: не выбрана группа."_s);
    panels.show(u"Готово."_s);
    panels.show(u"Ошибка: не выбран месяц."_s);
    EXPECT_EQ(panels.text(), u"Ошибка: не выбран месяц."_s);
    auto* clock = panels.findChild<QTimer*>();
    clock->start(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !clock->isActive(); }));
    EXPECT_EQ(panels.text(), u"Ошибка: не выбран месяц."_s); // what waited was older
}

TEST(StatusPanels, ShowLongTextsWithoutWideningTheWindow)
{
    QStatusBar bar;
    shell::Session session;
    shell::StatusPanels panels(bar, session);
    const int before = bar.minimumSizeHint().width();
    panels.show(QString(1000, u'ж'));
    EXPECT_EQ(bar.minimumSizeHint().width(), before);
}
