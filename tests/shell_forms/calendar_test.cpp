#include "shell/forms/frmcalend.h"

#include "jet/database.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class Calendar : public MainWindow
{
protected:
    void openOn(QDate day)
    {
        trigger(u"mnuToolsDay"_s);
        form = window->findChild<shell::frmCalend*>();
        ASSERT_NE(form, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == form; }));
        calendar = form->findChild<QCalendarWidget*>(u"calendar"_s);
        list = form->findChild<QListWidget*>(u"lstHolidays"_s);
        form->showDate(day);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QString text(const QString& label) const { return form->findChild<QLabel*>(label)->text(); }

    shell::frmCalend* form = nullptr;
    QCalendarWidget* calendar = nullptr;
    QListWidget* list = nullptr;
};

} // namespace

TEST_F(Calendar, WorksWithoutAFileAndFromTheKeyboard)
{
    start();
    openOn({2026, 11, 21});
    EXPECT_EQ(calendar->firstDayOfWeek(), Qt::Monday);
    EXPECT_EQ(list->count(), 1);
    EXPECT_EQ(list->item(0)->text(), u"В этом месяце праздников нет"_s);
    EXPECT_EQ(text(u"lblYear"_s), u"Учебный год не задан."_s);
    const std::pair<std::pair<Qt::Key, Qt::KeyboardModifiers>, QDate> steps[] = {
        {{Qt::Key_Right, {}}, {2026, 11, 22}},
        {{Qt::Key_Down, {}}, {2026, 11, 29}},
        {{Qt::Key_PageDown, {}}, {2026, 12, 29}},
        {{Qt::Key_PageUp, {}}, {2026, 11, 29}},
        {{Qt::Key_PageUp, Qt::ControlModifier}, {2025, 11, 29}},
        {{Qt::Key_PageDown, Qt::ControlModifier}, {2026, 11, 29}},
        {{Qt::Key_Home, {}}, {2026, 11, 1}},
        {{Qt::Key_End, {}}, {2026, 11, 30}},
    };
    for (const auto& [keys, day] : steps) {
        press(keys.first, keys.second);
        EXPECT_EQ(calendar->selectedDate(), day)
            << calendar->selectedDate().toString(Qt::ISODate).toStdString();
    }
    EXPECT_EQ(text(u"lblDay"_s), u"Понедельник, 30.11.2026."_s);
    press(Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(Calendar, MarksHolidaysOfTheFileInEveryYear)
{
    start(newJournal(u"a.mdb"_s));
    session.database().execute(
        "INSERT INTO HOLI ([DAY], [MN], NAIM) VALUES (4, 11, \"День единства\");");
    data::SettingsRow row = session.settings();
    row.yearBegin = {2026, 9, 1};
    row.yearEnd = {2027, 6, 30};
    session.saveSettings(row);
    openOn({2026, 11, 5});
    for (const int year : {2026, 2031}) {
        form->showDate({year, 11, 5});
        const QTextCharFormat format = calendar->dateTextFormat({year, 11, 4});
        EXPECT_TRUE(format.fontUnderline());
        EXPECT_EQ(format.fontWeight(), QFont::Bold);
        EXPECT_EQ(format.toolTip(), u"День единства"_s);
        ASSERT_EQ(list->count(), 1);
        EXPECT_EQ(list->item(0)->text(), u"04.11.%1 – День единства"_s.arg(year));
    }
    EXPECT_FALSE(calendar->dateTextFormat({2031, 11, 5}).hasProperty(QTextFormat::BackgroundBrush));
    // A day of the month before that the page begins with.
    form->showDate({2026, 12, 1});
    EXPECT_TRUE(calendar->dateTextFormat({2026, 11, 30}).hasProperty(QTextFormat::BackgroundBrush));
    form->showDate({2026, 11, 5});
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(calendar->selectedDate(), QDate(2026, 11, 4));
    EXPECT_TRUE(text(u"lblDay"_s).contains(u"Праздник: День единства. Входит в учебный год."_s));

    trigger(u"mnuFileClose"_s); // the calendar stays, without the file's days
    EXPECT_EQ(text(u"lblDay"_s), u"Среда, 04.11.2026."_s);
    EXPECT_FALSE(calendar->dateTextFormat({2026, 11, 4}).fontUnderline());
}

TEST_F(Calendar, StaysOneAndShowsWhatTheBookHasByNow)
{
    start(newJournal(u"a.mdb"_s));
    openOn({2026, 5, 1});
    session.database().execute("INSERT INTO HOLI ([DAY], [MN], NAIM) VALUES (9, 5, \"Победа\");");
    trigger(u"mnuToolsDay"_s);
    EXPECT_EQ(window->findChildren<shell::frmCalend*>().size(), 1);
    EXPECT_EQ(list->item(0)->text(), u"09.05.2026 – Победа"_s);
    QTest::mouseClick(form->findChild<QPushButton*>(u"cmdToday"_s), Qt::LeftButton);
    EXPECT_EQ(calendar->selectedDate(), QDate::currentDate());
}

TEST_F(Calendar, NamesItsPartsToScreenReaders)
{
    start();
    openOn({2026, 5, 1});
    EXPECT_EQ(withoutAccessibleName(*form), "");
}
