#include "shell/forms/hintcolor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

TEST(HintColor, FollowsThePaletteOfTheDesktop)
{
    const QPalette before = QApplication::palette();
    shell::keepHintsReadable(*qApp);
    for (const bool dark : {true, false}) {
        QPalette desktop = before;
        desktop.setColor(QPalette::Base, dark ? Qt::black : Qt::white);
        desktop.setColor(QPalette::Text, dark ? Qt::white : Qt::black);
        desktop.setColor(QPalette::PlaceholderText, QColor(20, 20, 20)); // as it was left
        QApplication::setPalette(desktop);
        QCoreApplication::sendPostedEvents();
        QColor hint = QApplication::palette().color(QPalette::PlaceholderText);
        EXPECT_LT(hint.alpha(), 255);
        hint.setAlpha(255);
        EXPECT_EQ(hint, dark ? QColor(Qt::white) : QColor(Qt::black));
    }
    QApplication::setPalette(before);
}
