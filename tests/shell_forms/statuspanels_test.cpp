#include "shell/forms/statuspanels.h"
#include "shell/session.h"

#include <gtest/gtest.h>

#include <QStatusBar>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

TEST(StatusPanels, KeepAnErrorUntilSomethingElseHappens)
{
    QStatusBar bar;
    shell::Session session;
    shell::StatusPanels panels(bar, session);
    panels.show(u"Ошибка: не выбрана группа."_s);
    // Menus and tool tips of other widgets pass through the bar's own temporary message.
    bar.showMessage(u"подсказка"_s);
    bar.clearMessage();
    EXPECT_EQ(panels.text(), u"Ошибка: не выбрана группа."_s);
    EXPECT_TRUE(panels.findChildren<QTimer*>().isEmpty()) << "a clock would take it away";
    panels.show(u"Готово."_s);
    EXPECT_EQ(panels.text(), u"Готово."_s);
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
