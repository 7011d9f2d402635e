#include "tests/journals_forms/attendancewindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QSpinBox>

using namespace Qt::StringLiterals;
using namespace journals;
using shell::JournalAction;
using shell::Setting;

namespace {

TEST_F(AttendanceWindow, BeginsWithPromptsInEmptySelectors)
{
    settings.setNumber(Setting::JournalMonth, 0);
    open();
    for (const auto& [box, text] : {std::pair(u"cboGroup"_s, u"Выберите группу"_s),
                                    std::pair(u"cboSubgroup"_s, u"Выберите подгруппу"_s),
                                    std::pair(u"cboMonth"_s, u"Выберите месяц"_s)}) {
        EXPECT_EQ(named<QComboBox>(box)->currentIndex(), -1);
        EXPECT_EQ(named<QComboBox>(box)->placeholderText(), text);
    }
    EXPECT_EQ(grid->model()->rowCount(), 0);
    pick(u"cboGroup"_s, u"ИС-21"_s);
    EXPECT_EQ(status.last(), u"Ошибка: не выбран месяц.");
    pick(u"cboMonth"_s, u"Ноябрь"_s);
    EXPECT_EQ(status.last(), u"Готово.");
    EXPECT_EQ(grid->model()->rowCount(), 4);
}

TEST_F(AttendanceWindow, EverySelectorRefillsTheGrid)
{
    openOn();
    const auto days = [this] {
        return grid->model()->columnCount() - kLeadColumns - kTrailColumns;
    };
    EXPECT_EQ(days(), 30);
    pick(u"cboSubgroup"_s, u"1 п/г"_s);
    EXPECT_EQ(grid->model()->rowCount(), 3);
    EXPECT_EQ(cell(0, 1), u"Петров Пётр Петрович");
    pick(u"cboSubgroup"_s, u"(группа полностью)"_s);
    EXPECT_EQ(grid->model()->rowCount(), 4);
    pick(u"cboMonth"_s, u"Февраль"_s);
    EXPECT_EQ(days(), 28);
    named<QSpinBox>(u"spinYear"_s)->setValue(2024);
    EXPECT_EQ(days(), 29);
    EXPECT_EQ(named<QComboBox>(u"cboDiscipline"_s)->currentText(), u"Все дисциплины");
}

TEST_F(AttendanceWindow, KeysMarkAndCountDown)
{
    openOn();
    press(Qt::Key_Space);
    EXPECT_EQ(cell(0, kTwelfth), u"2");
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
    EXPECT_EQ(status.last(), u"Готово.");
    typeLetter(u'н');
    EXPECT_EQ(cell(0, kTwelfth), u"1");
    EXPECT_EQ(status.last(), u"Количество неуважительных пропусков: 1");
    typeLetter(u'y');
    EXPECT_EQ(cell(0, kTwelfth), QString());
    EXPECT_EQ(status.last(), u"Количество пропусков: 0");
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/0"_s)});
    EXPECT_EQ(cell(2, kTwelfth), QString()) << "the total of the day";
}

TEST_F(AttendanceWindow, AKeyHeldDownMarksOnce)
{
    openOn();
    press(Qt::Key_Space);
    for (int i = 0; i < 5; ++i) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
        QCoreApplication::sendEvent(grid, &again);
    }
    EXPECT_EQ(cell(0, kTwelfth), u"2");
}

TEST_F(AttendanceWindow, DoubleClickMarksTheCellBeneath)
{
    openOn();
    grid->scrollTo(grid->model()->index(1, kTwelfth));
    const QPoint at = grid->visualRect(grid->model()->index(1, kTwelfth)).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(recorded(), QStringList{line(petrov, 3, u"0/2"_s)});
    EXPECT_EQ(cell(1, kTwelfth), u"2");
}

TEST_F(AttendanceWindow, LettersChangeTheKindInBothLayouts)
{
    openOn();
    press(Qt::Key_Space);
    for (const auto& [excused, unexcused] : {std::pair(u'у', u'н'), std::pair(u'e', u'y')}) {
        typeLetter(excused);
        EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"2/0"_s)});
        EXPECT_TRUE(window->available(JournalAction::MakeUnexcused));
        EXPECT_FALSE(window->available(JournalAction::MakeExcused));
        typeLetter(excused); // nothing more to do
        EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"2/0"_s)});
        typeLetter(unexcused);
        EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
        EXPECT_TRUE(window->available(JournalAction::MakeExcused));
    }
    press(Qt::Key_Delete);
    EXPECT_EQ(recorded(), QStringList());
    EXPECT_EQ(cell(0, kTwelfth), QString());
    EXPECT_FALSE(window->available(JournalAction::MakeExcused));
}

TEST_F(AttendanceWindow, ToolbarAndMenuDoTheSame)
{
    openOn();
    clickTool(u"keyIns"_s);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
    clickTool(u"uv"_s);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"2/0"_s)});
    clickTool(u"nuv"_s);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
    clickTool(u"keyDel"_s);
    EXPECT_EQ(recorded(), QStringList());
    window->run(JournalAction::Mark);
    window->run(JournalAction::MakeExcused);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"2/0"_s)});
    window->run(JournalAction::Delete);
    EXPECT_EQ(recorded(), QStringList());
}

TEST_F(AttendanceWindow, WritesWhatTheTerminalWrites)
{
    openOn();
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    const QStringList fromWindow = recorded();
    session->database().execute("DELETE * FROM POS;");
    Attendance terminal(session->database(), shell::Wording(), prompt, status);
    terminal.mark(StudentId{ivanov}, DisciplineId{mathsKey}, day, 3);
    terminal.mark(StudentId{ivanov}, DisciplineId{mathsKey}, day, 3);
    EXPECT_EQ(recorded(), fromWindow);
}

TEST_F(AttendanceWindow, ABlockIsMarkedInOneGo)
{
    openOn();
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier); // the 13th is closed
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Space);
    EXPECT_EQ(recorded().size(), 4);
    EXPECT_EQ(cell(2, kTwelfth), u"4");
    typeLetter(u'у');
    EXPECT_EQ(cell(3, kTwelfth), u"0") << "no unexcused hours left that day";
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"2\tX\t2\n2\tX\t2\n");
}

TEST_F(AttendanceWindow, RefusesWhatCannotBeChanged)
{
    openOn();
    const QString refused = u"Данные в этой ячейке невозможно изменить."_s;
    const int last = grid->model()->columnCount() - 1;
    const std::pair<int, int> cells[] = {{0, kFirstDay}, {0, 0},        {0, 1},       {0, 2},
                                         {0, last},      {2, kTwelfth}, {3, kTwelfth}};
    for (const auto& [row, column] : cells) {
        select(row, column);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Delete}) {
            prompt.expect(Box::Exclamation, refused);
            press(key);
            EXPECT_TRUE(prompt.done()) << row << ":" << column;
            EXPECT_EQ(status.last(), refused);
        }
    }
    pick(u"cboDiscipline"_s, u"Все дисциплины"_s);
    select(0, kTwelfth);
    prompt.expect(Box::Information, u"Для установки пропуска выберите дисциплину из списка."_s);
    press(Qt::Key_Space);
    EXPECT_EQ(recorded(), QStringList());
}

TEST_F(AttendanceWindow, SwitchesToLessonsAndBack)
{
    openOn();
    clickTool(u"keyCal"_s);
    EXPECT_EQ(status.last(), u"Журнал занятий - каждая графа соответствует одному занятию.");
    EXPECT_EQ(grid->model()->columnCount(), 3 + 2 + 3);
    EXPECT_EQ(grid->model()->headerData(kFirstDay, Qt::Horizontal).toString(),
              u"12.11.2022\n№ 3 пары");
    EXPECT_FALSE(named<QAction>(u"keyDay"_s)->isChecked());
    select(0, kFirstDay);
    press(Qt::Key_Space);
    EXPECT_EQ(recorded(), QStringList{line(ivanov, 3, u"0/2"_s)});
    clickTool(u"keyDay"_s);
    EXPECT_EQ(status.last(), u"Пропуски по дням месяца.");
    EXPECT_EQ(cell(0, kTwelfth), u"2");
}

TEST_F(AttendanceWindow, RefusesLessonsOfAllDisciplinesAndWithoutTheTimetable)
{
    openOn(u"Все дисциплины"_s);
    prompt.expect(Box::Information,
                  u"Вывод посещаемости по ВСЕМ дисциплинам возможен только при отображении ВСЕХ "
                  "дней месяца. При выборе любой дисциплины из списка дисциплин данный режим "
                  "станет доступен, нажатием этой кнопки Вы сможете отобразить Журнал занятий по "
                  "дисциплине."_s);
    clickTool(u"keyCal"_s);
    EXPECT_TRUE(named<QAction>(u"keyDay"_s)->isChecked());
    EXPECT_FALSE(named<QAction>(u"keyCal"_s)->isChecked());

    data::SettingsRow row = session->settings();
    row.useTimetable = false;
    session->saveSettings(row);
    session->database().execute("INSERT INTO SPNAGR (IDG, IDD, DATNN, DATKK, IDGG) VALUES ("
                                + std::to_string(groupKey) + ", " + std::to_string(mathsKey)
                                + ", #09/01/2022#, #06/30/2023#, 0);");
    named<QSpinBox>(u"spinYear"_s)->setValue(2023);
    named<QSpinBox>(u"spinYear"_s)->setValue(2022);
    pick(u"cboDiscipline"_s, u"Математика"_s);
    prompt.expect(Box::Information,
                  u"Данная функция будет доступна, если Вы включите в параметрах программы "
                  "\"Использовать расписание занятий\"."_s);
    clickTool(u"keyCal"_s);
    EXPECT_EQ(grid->model()->columnCount(), 36);
    EXPECT_TRUE(named<QAction>(u"keyDay"_s)->isChecked());
}

TEST_F(AttendanceWindow, RemembersMonthYearModeAndWidths)
{
    openOn();
    clickTool(u"keyCal"_s);
    pick(u"cboMonth"_s, u"Октябрь"_s); // falls back on days: nothing is taught there
    pick(u"cboMonth"_s, u"Ноябрь"_s);
    pick(u"cboDiscipline"_s, u"Математика"_s);
    clickTool(u"keyCal"_s);
    grid->setColumnWidth(1, 177);
    grid->setColumnWidth(kFirstDay, 91);
    EXPECT_EQ(grid->columnWidth(kFirstDay + 1), 91) << "all lessons share a width";
    window->close();
    EXPECT_EQ(settings.number(Setting::JournalMonth), 11);
    EXPECT_EQ(settings.number(Setting::JournalYear), 2022);
    EXPECT_FALSE(settings.flag(Setting::DayMode));
    EXPECT_TRUE(settings.flag(Setting::LessonMode));

    open();
    EXPECT_EQ(named<QComboBox>(u"cboMonth"_s)->currentText(), u"Ноябрь");
    EXPECT_TRUE(named<QAction>(u"keyCal"_s)->isChecked());
    pick(u"cboGroup"_s, u"ИС-21"_s);
    EXPECT_EQ(named<QComboBox>(u"cboDiscipline"_s)->currentText(), u"Математика")
        << "lessons need a discipline";
    EXPECT_EQ(grid->columnWidth(1), 177);
    EXPECT_EQ(grid->columnWidth(kFirstDay), 91);
}

TEST_F(AttendanceWindow, AFullDiskLeavesTheCellAsItWasAndSaysSo)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    openOn();
    press(Qt::Key_Space);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Delete}) {
        const int before = static_cast<int>(recorded().size());
        prompt.expectMatching(Box::Critical, u"^Пропуск не записан. Ошибка: ."_s);
        {
            const FailingWrites full;
            press(key);
        }
        EXPECT_TRUE(prompt.done());
        EXPECT_EQ(cell(0, kTwelfth), u"2");
        EXPECT_EQ(static_cast<int>(recorded().size()), before);
    }
    press(Qt::Key_Delete);
    EXPECT_EQ(recorded(), QStringList());
}

TEST_F(AttendanceWindow, ShowsAbsencesThatHaveNoPlace)
{
    file.absence(ivanov, mathsKey, day, 5, 0, 2);
    openOn();
    EXPECT_TRUE(named<QLabel>(u"lblNotice"_s)->isHidden());
    clickTool(u"keyCal"_s);
    EXPECT_EQ(named<QLabel>(u"lblNotice"_s)->text(), u"Невозможно отобразить пропуск: 12.11.2022.");
    EXPECT_FALSE(named<QLabel>(u"lblNotice"_s)->isHidden());
}

TEST_F(AttendanceWindow, WritesTheGridToAFile)
{
    openOn();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    grid->setFocus();
    press(Qt::Key_Space);
    press(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(exportedTitle, u"Журнал посещаемости Группа ИС-21 Математика ноябрь 2022 г."_s);
    ASSERT_EQ(exported.size(), 4U);
    EXPECT_EQ(exported[0][1], u"Иванов Иван Иванович"_s);
    EXPECT_EQ(exported[0][kTwelfth], u"2"_s);
    EXPECT_EQ(exported[1][kTwelfth], QString());
    EXPECT_EQ(exported[2][kTwelfth], u"2"_s);
}

TEST_F(AttendanceWindow, RefreshShowsWhatWasChangedElsewhere)
{
    openOn();
    for (const Qt::Key key : {Qt::Key_F3, Qt::Key_F5}) {
        session->database().execute("DELETE * FROM POS;");
        press(Qt::Key_F3);
        ASSERT_EQ(cell(0, kTwelfth), QString());
        Attendance(session->database(), shell::Wording(), prompt, status)
            .mark(StudentId{ivanov}, DisciplineId{mathsKey}, day, 3);
        press(key);
        EXPECT_EQ(cell(0, kTwelfth), u"2");
        EXPECT_EQ(grid->currentIndex().column(), kTwelfth) << "the cursor stays";
    }
}

TEST_F(AttendanceWindow, EveryControlHasANameAndNoCaptionSharesAKey)
{
    for (const auto institution : {shell::Institution::College, shell::Institution::School}) {
        window.reset();
        session.reset();
        file.reopen();
        open(shell::Wording(institution));
        QString keys;
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            const qsizetype sign = label->text().indexOf(u'&');
            if (sign < 0)
                continue;
            const QChar key = label->text()[sign + 1].toLower();
            EXPECT_FALSE(keys.contains(key)) << label->text().toStdString();
            keys += key;
            EXPECT_TRUE(label->buddy()) << label->text().toStdString();
        }
        EXPECT_EQ(keys.size(), 5);
        for (const QAction* command : named<QToolBar>(u"Toolbar1"_s)->actions())
            EXPECT_TRUE(command->isSeparator() || !command->text().isEmpty());
        EXPECT_FALSE(grid->accessibleName().isEmpty());
    }
}

} // namespace
