#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <QStandardPaths>

// Windows run without a display, in Russian, with settings of their own.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "UTC");
    QStandardPaths::setTestModeEnabled(true);
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
