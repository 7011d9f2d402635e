#include "tests/journals_forms/attendancewindow.h"

#include "journals/forms/frmhposstud.h"
#include "journals/forms/frmhposstudper.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;
using namespace journals;
using shell::JournalAction;

namespace {

// The window of the attendance tests; the 14th has maths 1, physics 2 for subgroup 1 and
// physics 2 for subgroup 2.
class AbsenceDialogs : public AttendanceWindow
{
protected:
    AbsenceDialogs()
    {
        file.lesson(groupKey, physicsKey, monday, 3, 1);
        file.lesson(groupKey, physicsKey, monday, 3, 2);
    }
    static constexpr int kMonday = kFirstDay + 13;

    // "discipline lesson subgroup uv/nuv" of one student and date.
    QStringList rows(int student, QDate date)
    {
        QStringList lines;
        auto found = session->database().query(
            "SELECT IDD, UR, IDDG, uv, nuv FROM POS WHERE ID=" + std::to_string(student)
            + " AND dat=" + date.toString(u"'#'MM/dd/yyyy'#'"_s).toStdString()
            + " ORDER BY UR, IDD;");
        while (found.next())
            lines << u"%1 %2 %3 %4/%5"_s.arg(
                found.integer(0) == mathsKey ? u"м"_s : u"ф"_s, QString::number(found.integer(1)),
                found.isNull(2) ? u"-"_s : QString::number(found.integer(2)),
                QString::number(found.integer(3)), QString::number(found.integer(4)));
        return lines;
    }
    static void type(QWidget* widget, const QString& keys)
    {
        for (const QChar key : keys) {
            QKeyEvent event(QEvent::KeyPress, key.toUpper().unicode(), Qt::NoModifier,
                            QString(key));
            QCoreApplication::sendEvent(widget, &event);
        }
    }
    static void click(QWidget& dialog, const QString& button)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
    }
    static QString shown(const QWidget& dialog, const QString& label)
    {
        return dialog.findChild<QLabel*>(label)->text();
    }

    const QDate monday = day.addDays(2);
};

TEST_F(AbsenceDialogs, CountsOfADisciplineAreTypedAndEnterSaves)
{
    openOn();
    press(Qt::Key_Space);
    inNextDialog<frmHPosStud>([this](frmHPosStud& dialog) {
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        EXPECT_EQ(shown(dialog, u"lblHint"_s), u"Установите нужное количество пропусков.");
        EXPECT_EQ(shown(dialog, u"lblStudentName"_s), u"Иванов Иван Иванович");
        EXPECT_EQ(shown(dialog, u"lblGroupName"_s), u"ИС-21");
        EXPECT_EQ(shown(dialog, u"lblDateText"_s), u"12.11.2022");
        EXPECT_EQ(shown(dialog, u"lblDisciplineName"_s), u"Математика");
        auto* unexcused = dialog.findChild<QLineEdit*>(u"txtNuv"_s);
        EXPECT_EQ(dialog.focusWidget(), unexcused);
        EXPECT_EQ(unexcused->text(), u"2");
        for (const QString& wrong : {u" "_s, u"-"_s, u"ж"_s, u","_s}) {
            prompt.expect(Box::Exclamation, digitsOnlyText());
            type(unexcused, wrong);
            EXPECT_EQ(unexcused->text(), u"2");
        }
        QTest::keyClick(unexcused, Qt::Key_1);
        QTest::keyClick(unexcused, Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_3);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(rows(ivanov, day), QStringList{u"м 3 0 3/1"_s});
    EXPECT_EQ(cell(0, kTwelfth), u"4");
    EXPECT_EQ(window->caption(JournalAction::Undo), u"Отменить: пропуск, Иванов И. И., 12.11");
    inNextDialog<frmHPosStud>([](frmHPosStud& dialog) {
        QTest::keyClick(dialog.findChild<QLineEdit*>(u"txtNuv"_s), Qt::Key_9);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    clickTool(u"keyEntry"_s);
    EXPECT_EQ(rows(ivanov, day), QStringList{u"м 3 0 3/1"_s}) << "Esc discards";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rows(ivanov, day), QStringList{u"м 3 - 0/2"_s});
    EXPECT_EQ(grid->currentIndex().column(), kTwelfth);
}

TEST_F(AbsenceDialogs, LessonsEnteredOneByOneSurviveAnEntryWithoutChanges)
{
    file.absence(ivanov, mathsKey, day, 3, 0, 2);
    file.absence(ivanov, mathsKey, day, 5, 2, 0);
    openOn();
    inNextDialog<frmHPosStud>([](frmHPosStud& dialog) {
        EXPECT_TRUE(shown(dialog, u"lblNotice"_s).contains(u"Записаны занятия № 3, 5."_s));
        click(dialog, u"Command1"_s);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(rows(ivanov, day), (QStringList{u"м 3 - 0/2"_s, u"м 5 - 2/0"_s}));
}

TEST_F(AbsenceDialogs, TheDayIsEnteredByKeysAndClicksAndIsOneStep)
{
    file.absence(petrov, physicsKey, monday, 3, 0, 1); // as quick marking leaves it
    openOn(u"Все дисциплины"_s);
    select(1, kMonday); // Петров, subgroup 1
    inNextDialog<frmHPosStud>([this](frmHPosStud& dialog) {
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        auto* table = dialog.findChild<QTableView*>(u"HF1"_s);
        const auto text = [table](int row, int column) {
            return table->model()->index(row, column).data().toString();
        };
        EXPECT_EQ(dialog.focusWidget(), table);
        EXPECT_EQ(table->model()->headerData(0, Qt::Horizontal).toString(), u"Пара");
        ASSERT_EQ(table->model()->rowCount(), 5);
        EXPECT_EQ(text(2, 3), u"1") << "the lesson's own absence";
        EXPECT_EQ(text(4, 1), u"ИТОГО:");
        QTest::keyClick(table, Qt::Key_Space);
        EXPECT_EQ(text(0, 3), u"2");
        QTest::keyClick(table, Qt::Key_Down);
        type(table, u"12"_s);
        EXPECT_EQ(text(1, 3), u"12");
        QTest::keyClick(table, Qt::Key_Right);
        type(table, u"1"_s);
        EXPECT_EQ(text(4, 3), u"15");
        EXPECT_EQ(text(4, 4), u"1");
        const auto at = [table](int row, int column) {
            return table->visualRect(table->model()->index(row, column)).center();
        };
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at(2, 4));
        EXPECT_EQ(text(2, 3) + u'/' + text(2, 4), u"/2");
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at(0, 3));
        EXPECT_EQ(text(0, 3), QString()) << "a second click takes the mark back";
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at(4, 3));
        prompt.expect(Box::Exclamation, digitsOnlyText());
        type(table, u"ж"_s);
        table->setCurrentIndex(table->model()->index(1, 3));
        type(table, u"у"_s);
        EXPECT_EQ(text(1, 4), QString()) << "the excused hours were there";
        QTest::keyClick(table, Qt::Key_Space);
        QTest::keyClick(table, Qt::Key_Return);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(rows(petrov, monday), (QStringList{u"ф 2 0 0/2"_s, u"ф 3 1 2/0"_s}));
    EXPECT_EQ(cell(1, kMonday), u"4");
    window->run(JournalAction::Undo);
    EXPECT_EQ(rows(petrov, monday), QStringList{u"ф 3 - 0/1"_s});
    window->run(JournalAction::Redo);
    EXPECT_EQ(cell(1, kMonday), u"4");
}

TEST_F(AbsenceDialogs, WhatSavingTheDayWouldLoseIsShownAndAsked)
{
    file.absence(ivanov, mathsKey, monday, 7, 0, 2);
    openOn();
    select(0, kMonday);
    const QString lost = u"№ 7 Математика, 2 часа, неуважительный"_s;
    const QString question =
        u"Будут удалены пропуски, которые не относятся ни к одному занятию:\n"_s + lost
        + u"\n\nСохранить?"_s;
    inNextDialog<frmHPosStud>([&](frmHPosStud& dialog) {
        QTest::keyClick(dialog.findChild<QLineEdit*>(u"txtUv"_s), Qt::Key_1);
        prompt.expect(Box::SaveQuestion, u"Часы изменены. Сохранить?"_s, shell::Answer::No);
        dialog.findChild<QCheckBox*>(u"chkDay"_s)->click();
        EXPECT_TRUE(shown(dialog, u"lblNotice"_s).contains(lost));
        prompt.expect(Box::Question, question, shell::Answer::No);
        click(dialog, u"Command1"_s);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(rows(ivanov, monday), QStringList{u"м 7 - 0/2"_s});
        QTest::keyClick(dialog.findChild<QTableView*>(u"HF1"_s), Qt::Key_Space);
        prompt.expect(Box::Question, question, shell::Answer::Yes);
        click(dialog, u"cmdApply"_s);
        EXPECT_EQ(rows(ivanov, monday), QStringList{u"м 1 0 0/2"_s});
        click(dialog, u"Command2"_s);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(cell(0, kMonday), u"2");
}

TEST_F(AbsenceDialogs, APeriodForTwoStudentsAsksForTheSubgroupAndIsOneStep)
{
    openOn();
    press(Qt::Key_Space);
    select(0, kTwelfth);
    press(Qt::Key_Down, Qt::ShiftModifier);
    for (int i = 0; i < 2; ++i)
        press(Qt::Key_Right, Qt::ShiftModifier);
    inNextDialog<frmHPosStudPer>([this](frmHPosStudPer& dialog) {
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        EXPECT_EQ(dialog.findChild<QDateEdit*>(u"DT1"_s)->date(), day);
        EXPECT_EQ(dialog.findChild<QDateEdit*>(u"DT2"_s)->date(), monday);
        auto* pupils = dialog.findChild<QListWidget*>(u"lstStudents"_s);
        EXPECT_EQ(pupils->item(0)->checkState(), Qt::Checked);
        EXPECT_EQ(pupils->item(1)->checkState(), Qt::Checked);
        dialog.findChild<QRadioButton*>(u"O1"_s)->click();
        QTest::keyClick(&dialog, Qt::Key_Return);
        auto* choices = dialog.findChild<QListWidget*>(u"pred1"_s);
        EXPECT_TRUE(choices->isVisible());
        EXPECT_EQ(dialog.focusWidget(), choices);
        ASSERT_EQ(choices->count(), 2);
        EXPECT_EQ(choices->item(1)->text(), u"Выберите подгруппу для 3 занятия Физика (2 п/г)");
        QTest::keyClick(choices, Qt::Key_Down);
        dialog.findChild<QCheckBox*>(u"Ch1"_s)->click();
        click(dialog, u"cmdOk"_s);
        EXPECT_EQ(shown(dialog, u"lblConflict"_s), u"Петров Пётр Петрович, 14.11.2022");
        EXPECT_EQ(choices->currentRow(), 0) << "of his own subgroup";
        EXPECT_EQ(recorded().size(), 1) << "nothing is written before the last answer";
        prompt.expect(Box::Information,
                      u"Записано пропусков: 8. Студентов: 2. Заменено прежних: 1."_s);
        QTest::keyClick(choices, Qt::Key_Return);
    });
    press(Qt::Key_F4);
    EXPECT_EQ(rows(ivanov, day), QStringList{u"м 3 0 2/0"_s});
    EXPECT_EQ(rows(ivanov, monday), (QStringList{u"м 1 0 2/0"_s, u"ф 2 0 2/0"_s, u"ф 3 2 2/0"_s}));
    EXPECT_EQ(rows(petrov, monday).last(), u"ф 3 1 2/0");
    EXPECT_EQ(cell(1, kMonday), u"2");
    window->run(JournalAction::Undo);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
    window->run(JournalAction::Undo);
    EXPECT_EQ(recorded(), QStringList());
    EXPECT_FALSE(window->available(JournalAction::Undo));
}

TEST_F(AbsenceDialogs, APeriodThatWritesNothingSaysSoAndCancelWritesNothing)
{
    openOn();
    inNextDialog<frmHPosStud>([this](frmHPosStud& entry) {
        inNextDialog<frmHPosStudPer>([this](frmHPosStudPer& dialog) {
            dialog.findChild<QDateEdit*>(u"DT2"_s)->setDate(day.addDays(-1));
            prompt.expect(Box::Exclamation,
                          u"Дата начала позже даты окончания. Пропуски не записаны."_s);
            click(dialog, u"cmdOk"_s);
            dialog.findChild<QDateEdit*>(u"DT2"_s)->setDate(monday);
            click(dialog, u"cmdOk"_s);
            EXPECT_TRUE(dialog.findChild<QListWidget*>(u"pred1"_s)->isVisible());
            click(dialog, u"cmdCancel"_s);
        });
        click(entry, u"cmdPeriod"_s);
        click(entry, u"Command2"_s);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(recorded(), QStringList());
    EXPECT_FALSE(window->available(JournalAction::Undo));
}

TEST_F(AbsenceDialogs, AColumnAndADayAreMarkedInOneGo)
{
    openOn();
    select(1, kTwelfth);
    press(Qt::Key_Space);
    const QString question =
        u"Поставить пропуск за 12.11.2022 всем, у кого его еще нет (студентов: 1)?"_s;
    prompt.expectDefault(Box::Question, question, shell::Answer::Yes, shell::Answer::Yes);
    QTimer::singleShot(0, qApp, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        menu->setActiveAction(menu->actions().front());
        QTest::keyClick(menu, Qt::Key_Return);
    });
    auto* header = grid->horizontalHeader();
    emit header->customContextMenuRequested(
        {header->sectionViewportPosition(kTwelfth) + 3, header->height() / 2});
    QTest::qWait(1);
    EXPECT_EQ(recorded(), (QStringList{line(ivanov, 3, u"0/2"_s), line(petrov, 3, u"0/2"_s)}));
    press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(status.last(), u"В этот день отмечать некого.");

    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(rows(petrov, monday), (QStringList{u"м 1 0 0/2"_s, u"ф 2 0 0/2"_s, u"ф 3 1 0/2"_s}));
    EXPECT_EQ(cell(1, kMonday), u"2");
    EXPECT_EQ(window->caption(JournalAction::Undo), u"Отменить: пропуск дня, Петров П. П., 14.11");
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(recorded(), QStringList());
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(recorded(), QStringList{line(petrov, 3, u"0/2"_s)});
}

TEST_F(AbsenceDialogs, AMonthOfAbsencesIsTypedAndTakenBack)
{
    for (int i = 1; i <= 30; ++i)
        file.lesson(groupKey, mathsKey, {2022, 11, i}, 1);
    openOn();
    for (int row = 0; row < 2; ++row) {
        select(row, kFirstDay);
        for (int i = 0; i < 30; ++i) {
            if (i % 3 == row)
                typeLetter(u'н');
            if (i % 6 == row)
                typeLetter(u'у');
            press(Qt::Key_Right);
        }
    }
    // 10 days each, every second of them excused
    EXPECT_EQ(recorded().size(), 20);
    EXPECT_EQ(recorded().filter(u" 2/0"_s).size(), 10);
    EXPECT_EQ(cell(0, kFirstDay + 30), u"20");
    EXPECT_EQ(cell(3, kFirstDay + 30), u"20") << "unexcused of all";
    int steps = 0;
    while (window->available(JournalAction::Undo)) {
        window->run(JournalAction::Undo);
        ++steps;
    }
    EXPECT_EQ(steps, 30);
    EXPECT_EQ(recorded(), QStringList());
    EXPECT_EQ(cell(0, kFirstDay + 30), u"0");
}

TEST_F(AbsenceDialogs, AStepWhoseRowsChangedElsewhereIsNotTakenBack)
{
    openOn();
    press(Qt::Key_Space);
    session->database().execute("UPDATE POS SET nuv = 7;");
    prompt.expect(Box::Exclamation,
                  u"Действие не отменено. Эти пропуски с тех пор изменены в другом месте, прежние "
                  "шаги забыты."_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(cell(0, kTwelfth), u"7") << "the grid shows what is in the file";
    EXPECT_FALSE(window->available(JournalAction::Undo));
}

} // namespace
