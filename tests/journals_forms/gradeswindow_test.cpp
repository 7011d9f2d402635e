#include "journals/forms/frmavtor.h"
#include "journals/forms/frmhusp.h"
#include "journals/forms/gridcells.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace journals;
using shell::JournalAction;
using shell::Setting;

namespace {

constexpr int kFirst = GradeModel::kLeadColumns;

// Three students; mathematics all year, by workload; November 2022.
class GradesWindow : public testing::Test
{
protected:
    GradesWindow()
        : settings(folder.filePath(u"settings.ini"_s))
    {
        group = file.group("ИС-21");
        maths = file.discipline("Математика");
        for (const char* name : {"Иванов", "Петров", "Сидоров"})
            file.student(group, name, "Иван", "Иванович");
        file.workload(group, maths, {2022, 11, 7}, {2023, 5, 30});
        settings.setNumber(Setting::GradeMonth, 11);
        settings.setNumber(Setting::GradeYear, 2022);
    }
    void open(bool autoSave)
    {
        file.database().execute("UPDATE RASP SET DATN = #09/01/2022#, DATK = #06/30/2023#, "
                                "AvtSave = "
                                + std::string(autoSave ? "True;" : "False;"));
        session = std::make_unique<shell::Session>();
        session->openJournal(file.release());
        show();
        pick(u"cboGroup"_s, u"ИС-21"_s);
        pick(u"cboDiscipline"_s, u"Математика"_s);
    }
    void show()
    {
        window = std::make_unique<frmHUsp>(JournalParts{*session, settings, prompt, status});
        window->resize(1100, 600);
        window->show();
        grid = window->findChild<QTableView*>(u"HF1"_s);
    }
    template <class Widget>
    Widget* named(const QString& name) const
    {
        return window->findChild<Widget*>(name);
    }
    void pick(const QString& box, const QString& entry)
    {
        auto* combo = named<QComboBox>(box);
        ASSERT_GE(combo->findText(entry), 0) << entry.toStdString();
        combo->setCurrentIndex(combo->findText(entry));
    }
    void select(int row, int day)
    {
        selectCell(*grid, grid->model()->index(row, kFirst + day - 1));
    }
    QString cell(int row, int column) const
    {
        return grid->model()->index(row, kFirst + column - 1).data().toString();
    }
    // Letters and digits as the keyboard sends them.
    void type(const QString& keys)
    {
        for (const QChar key : keys) {
            QKeyEvent event(QEvent::KeyPress, key.toUpper().unicode(), Qt::NoModifier,
                            QString(key));
            QCoreApplication::sendEvent(grid, &event);
        }
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(grid, key, modifiers);
    }
    // "student day.month grade" of the current grades.
    QStringList stored()
    {
        auto rows = session->database().query(
            "SELECT ID, day(DAT), month(DAT), OC FROM USP WHERE TEK = True ORDER BY DAT, ID;");
        QStringList lines;
        while (rows.next())
            lines << u"%1 %2.%3 %4"_s.arg(rows.integer(0))
                         .arg(rows.integer(1))
                         .arg(rows.integer(2))
                         .arg(rows.integer(3));
        return lines;
    }

    QTemporaryDir folder;
    SmallJournal file;
    shell::Settings settings;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    std::unique_ptr<shell::Session> session;
    std::unique_ptr<frmHUsp> window;
    QTableView* grid = nullptr;
    int group = 0, maths = 0;
};

TEST_F(GradesWindow, AMonthIsTypedDownTheColumns)
{
    open(true);
    EXPECT_EQ(withoutAccessibleName(*window), "");
    EXPECT_LE(window->minimumSizeHint().width(), 900) << "fits a small screen";
    EXPECT_EQ(grid->currentIndex().column(), kFirst + 6) << "the first open day";
    for (int day = 7; day <= 30; ++day) {
        select(0, day);
        type(day % 2 == 0 ? u"54з"_s : u"23p"_s);
        EXPECT_EQ(grid->currentIndex().row(), 2) << "stays on the last student";
    }
    QStringList expected;
    for (int day = 7; day <= 30; ++day)
        expected << u"1 %1.11 %2"_s.arg(day).arg(day % 2 == 0 ? 5 : 2)
                 << u"2 %1.11 %2"_s.arg(day).arg(day % 2 == 0 ? 4 : 3) << u"3 %1.11 1"_s.arg(day);
    EXPECT_EQ(stored(), expected);
    EXPECT_EQ(cell(0, 31), u"3,50");
    EXPECT_EQ(cell(2, 12), u"Зачет");
    EXPECT_EQ(cell(3, 12), u"4,50");

    select(0, 12);
    press(Qt::Key_Delete);
    press(Qt::Key_0); // a pass
    EXPECT_EQ(cell(0, 12), QString());
    EXPECT_EQ(cell(1, 12), u"Зачет");
    EXPECT_EQ(window->caption(JournalAction::Undo), u"Отменить: зачет, Петров И. И., 12.11");
    window->run(JournalAction::Undo);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(stored(), expected);
    EXPECT_EQ(window->caption(JournalAction::Redo),
              u"Повторить: удаление оценки, Иванов И. И., 12.11");
    EXPECT_TRUE(window->available(JournalAction::Redo));

    prompt.expect(Box::Exclamation, u"Данные в этой ячейке невозможно изменить."_s);
    select(0, 1);
    type(u"5"_s);
    EXPECT_EQ(stored(), expected);
}

TEST_F(GradesWindow, ABlockIsSetAndTakenBackAtOnce)
{
    open(true);
    select(0, 11);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    type(u"4"_s);
    EXPECT_EQ(stored(),
              (QStringList{u"1 11.11 4"_s, u"2 11.11 4"_s, u"1 12.11 4"_s, u"2 12.11 4"_s}));
    window->run(JournalAction::Undo);
    EXPECT_EQ(stored(), QStringList());
    EXPECT_FALSE(window->available(JournalAction::Undo));
}

TEST_F(GradesWindow, ABlockBeginsWhereTypingLeftTheCursor)
{
    open(true);
    select(0, 13);
    press(Qt::Key_Right);
    type(u"5"_s);
    press(Qt::Key_Down, Qt::ShiftModifier);
    type(u"4"_s);
    EXPECT_EQ(stored(), (QStringList{u"1 14.11 5"_s, u"2 14.11 4"_s, u"3 14.11 4"_s}));
}

TEST_F(GradesWindow, AGradeIsChosenFromAListByKeyOrDoubleClick)
{
    open(true);
    select(1, 14);
    press(Qt::Key_F2);
    auto* list = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(list);
    QStringList names;
    for (const QAction* entry : list->actions())
        names << entry->text().remove(u'&');
    EXPECT_EQ(names, (QStringList{u"5 (отлично)"_s, u"4 (хорошо)"_s, u"3 (удовлетворительно)"_s,
                                  u"2 (неудовлетворительно)"_s, u"Зачет"_s, QString(),
                                  u"Удалить оценку"_s}));
    QTest::keyClick(list, Qt::Key_4);
    EXPECT_EQ(stored(), QStringList{u"2 14.11 4"_s});

    press(Qt::Key_F2); // on the grade that stands there
    list = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->activeAction(), nullptr) << "an empty cell: the cursor has moved down";
    QTest::keyClick(list, Qt::Key_Escape);
    select(0, 14);
    const QPoint at = grid->visualRect(grid->currentIndex()).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
    list = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(list);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(stored(), (QStringList{u"1 14.11 5"_s, u"2 14.11 4"_s}));
}

TEST_F(GradesWindow, ChoosingForABlockThatEndsOnAClosedDayDeletesNothing)
{
    open(true);
    select(0, 8);
    type(u"5"_s);
    select(0, 8);
    press(Qt::Key_Left, Qt::ShiftModifier);
    press(Qt::Key_Left, Qt::ShiftModifier);
    ASSERT_EQ(grid->currentIndex().data().toString(), u"X");
    press(Qt::Key_F2);
    EXPECT_EQ(stored(), QStringList{u"1 8.11 5"_s});
    auto* list = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(list) << "for the open days of the block";
    QTest::keyClick(list, Qt::Key_3);
    EXPECT_EQ(stored(), (QStringList{u"1 7.11 3"_s, u"1 8.11 3"_s}));
}

TEST_F(GradesWindow, AfterAGradeTheCursorGoesDownOrRight)
{
    file.database().execute("UPDATE RASP SET Uroki = True;");
    for (const int day : {8, 10, 29})
        file.lesson(group, maths, {2022, 11, day}, 1);
    open(true);
    for (QAction* entry : grid->actions())
        if (entry->isCheckable())
            entry->trigger();
    select(0, 8);
    type(u"453"_s);
    EXPECT_EQ(stored(), (QStringList{u"1 8.11 4"_s, u"1 10.11 5"_s, u"1 29.11 3"_s}));
    type(u"2"_s); // the last lesson: the cursor stays
    EXPECT_EQ(cell(0, 29), u"2");
    ASSERT_TRUE(window->close());
    show();
    pick(u"cboDiscipline"_s, u"Математика"_s);
    select(1, 8);
    type(u"44"_s);
    EXPECT_EQ(cell(1, 10), u"4") << "remembered";
}

TEST_F(GradesWindow, UnsavedGradesAreMarkedAndAskedAbout)
{
    open(false);
    select(0, 14);
    type(u"53"_s);
    EXPECT_EQ(stored(), QStringList());
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(named<QLabel>(u"lblUnsaved"_s)->text(), u"Не сохранено: 2 оценки.");

    const QString question =
        u"В журнале успеваемости есть несохраненные изменения: 2 оценки. Сохранить?"_s;
    prompt.expect(Box::SaveQuestion, question, shell::Answer::Cancel);
    EXPECT_FALSE(window->close());
    prompt.expect(Box::SaveQuestion, question, shell::Answer::Cancel);
    pick(u"cboMonth"_s, u"Декабрь"_s);
    EXPECT_EQ(named<QComboBox>(u"cboMonth"_s)->currentText(), u"Ноябрь");
    prompt.expect(Box::SaveQuestion, question, shell::Answer::Cancel);
    pick(u"cboMode"_s, u"итоговые"_s);
    EXPECT_EQ(named<QComboBox>(u"cboMode"_s)->currentText(), u"текущие");
    EXPECT_EQ(cell(1, 14), u"3");

    QAction* save = named<QAction>(u"keySave"_s);
    EXPECT_TRUE(save->isEnabled());
    press(Qt::Key_S, Qt::ControlModifier);
    const QStringList saved{u"1 14.11 5"_s, u"2 14.11 3"_s};
    EXPECT_EQ(stored(), saved);
    EXPECT_FALSE(save->isEnabled());
    EXPECT_FALSE(window->isWindowModified());

    select(0, 15);
    type(u"2"_s);
    prompt.expectMatching(Box::SaveQuestion, u".*1 оценка.*"_s, shell::Answer::No);
    pick(u"cboMonth"_s, u"Декабрь"_s);
    EXPECT_EQ(stored(), saved);
    select(0, 15);
    type(u"2"_s);
    prompt.expectMatching(Box::SaveQuestion, u".*1 оценка.*"_s, shell::Answer::Yes);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(stored(), saved + QStringList{u"1 15.12 2"_s});
}

TEST_F(GradesWindow, AutomaticFinalsFillTheGridAndSayWhatWasWritten)
{
    open(true);
    select(0, 14);
    type(u"4"_s);
    inNextDialog<FrmAvtoR>([](FrmAvtoR& dialog) {
        dialog.findChild<QPushButton*>(u"cmdCount"_s)->click();
        dialog.findChild<QPushButton*>(u"cmdWrite"_s)->click();
    });
    named<QAction>(u"keyAvtoR"_s)->trigger();
    EXPECT_EQ(named<QLabel>(u"lblNotice"_s)->text(), u"Итоговые оценки выставлены(30.06.2023)");
    EXPECT_EQ(status.last(),
              u"Автоматический расчет итогов: новых 1, изменено 0, без изменений 0, удалено 0.");
}

TEST_F(GradesWindow, ModesShowTheirSelectorsAndAreRemembered)
{
    open(true);
    pick(u"cboMode"_s, u"по месяцам"_s);
    EXPECT_EQ(named<QComboBox>(u"cboDiscipline"_s)->currentText(), u"Математика");
    EXPECT_FALSE(named<QComboBox>(u"cboMonth"_s)->isVisible());
    EXPECT_EQ(named<QComboBox>(u"cboPeriod"_s)->currentText(), u"2022 - 2023");
    grid->setCurrentIndex(grid->model()->index(0, kFirst + 10)); // after ten months
    type(u"5"_s);
    pick(u"cboPeriod"_s, u"2021 - 2022"_s);
    EXPECT_EQ(named<QComboBox>(u"cboDiscipline"_s)->currentIndex(), -1) << "not taught then";
    EXPECT_EQ(status.last(), u"Выберите дисциплину.");
    pick(u"cboPeriod"_s, u"2022 - 2023"_s);
    pick(u"cboMode"_s, u"итоговые"_s);
    pick(u"cboDiscipline"_s, u"Математика"_s);
    EXPECT_EQ(cell(0, 1), u"5");
    EXPECT_EQ(named<QLabel>(u"lblNotice"_s)->text(), u"Итоговые оценки выставлены(30.06.2023)");
    pick(u"cboDiscipline"_s, u"ВСЕ ПРЕДМЕТЫ"_s);
    EXPECT_EQ(cell(0, 1), u"5");
    type(u"4"_s);
    EXPECT_EQ(status.last(), u"Выберите дисциплину.");
    EXPECT_FALSE(window->available(JournalAction::SetGrade));
    pick(u"cboMode"_s, u"текущие"_s);
    EXPECT_EQ(named<QComboBox>(u"cboMode"_s)->currentText(), u"по месяцам");
    EXPECT_TRUE(named<QComboBox>(u"cboMonth"_s)->isVisible());
    pick(u"cboDiscipline"_s, u"Математика"_s);
    EXPECT_EQ(named<QComboBox>(u"cboMode"_s)->currentText(), u"текущие");

    pick(u"cboMode"_s, u"итоговые"_s);
    ASSERT_TRUE(window->close());
    EXPECT_EQ(settings.number(Setting::GradeMode), 2);
    EXPECT_EQ(settings.number(Setting::GradeGroup), group);
    EXPECT_EQ(settings.text(Setting::GradePeriod), u"2022 - 2023");
    show();
    EXPECT_EQ(named<QComboBox>(u"cboGroup"_s)->currentText(), u"ИС-21");
    EXPECT_EQ(named<QComboBox>(u"cboMode"_s)->currentText(), u"итоговые");
}

TEST_F(GradesWindow, AFileForReadingIsNotChanged)
{
    const QString path = file.path();
    file.release().reset();
    session = std::make_unique<shell::Session>();
    session->openJournal(data::Journal::openReadOnly(path, prompt));
    show();
    pick(u"cboGroup"_s, u"ИС-21"_s);
    pick(u"cboDiscipline"_s, u"Математика"_s);
    EXPECT_EQ(named<QLabel>(u"lblNotice"_s)->text(), u"Файл открыт только для чтения.");
    EXPECT_FALSE(window->available(JournalAction::SetGrade));
    EXPECT_FALSE(named<QAction>(u"keyAvtoR"_s)->isEnabled());
    prompt.expect(Box::Exclamation, u"Файл открыт только для чтения: изменить оценки нельзя."_s);
    select(0, 14);
    type(u"5"_s);
    EXPECT_EQ(cell(0, 14), QString());
}

} // namespace
