// The import of lessons from choosing the file to the rows in the journal, by keys and clicks.

#include "import/forms/importtimetable.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/import/timetablefile.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/scriptedchooser.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <QAbstractItemView>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class ImportWindow : public testing::Test
{
protected:
    ImportWindow()
    {
        data::SettingsRow row = journal.journal().settings();
        row.workingDate = QDate(2024, 10, 15);
        data::writeSettingsRow(journal.database(), row);
        session.openJournal(journal.release());
        session.setMassActionGuard([this](const QString& action) {
            guarded << action;
            return guardAgrees;
        });
    }

    bool open(std::function<void(QDialog&)> steps)
    {
        inNextDialog<QDialog>([steps = std::move(steps)](QDialog& dialog) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
            steps(dialog);
        });
        return imports::importTimetable({session, settings, prompt, status, chooser}, nullptr);
    }
    static QStringList cells(QDialog& dialog, const QString& view)
    {
        const auto* model = dialog.findChild<QAbstractItemView*>(view)->model();
        QStringList lines;
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < model->columnCount(); ++column)
                texts << model->index(row, column).data().toString();
            lines << texts.join(u'|');
        }
        return lines;
    }
    static QString text(QDialog& dialog, const QString& label)
    {
        return dialog.findChild<QLabel*>(label)->text();
    }
    static void typeDate(QDialog& dialog, const QString& box, const QString& date)
    {
        auto* edit = dialog.findChild<QDateEdit*>(box);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, date);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    std::int64_t lessons() { return session.database().rowCount("UROKI"); }

    SmallJournal journal;
    shell::Session session;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    ScriptedChooser chooser;
    QTemporaryDir folder;
    shell::Settings settings{folder.filePath(u"settings.ini"_s)};
    QStringList guarded;
    bool guardAgrees = true;
};

} // namespace

TEST_F(ImportWindow, LessonsComeInByKeys)
{
    TimetableFile source;
    const auto place = source.place();
    source.lesson(place, {2024, 10, 7}, 1);
    source.lesson(place, {2024, 11, 5}, 2);
    source.lesson({9, place.group, place.discipline, place.workload}, {2024, 11, 6}, 3);
    chooser.answer = source.path();
    EXPECT_TRUE(open([this](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Импорт занятий"_s);
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        EXPECT_EQ(dialog.focusWidget()->objectName(), u"DTPicker1"_s);
        EXPECT_EQ(cells(dialog, u"HF1"_s), QStringList{u"07.10.2024|Белов А.А.|ИС-21||Физика"_s});
        typeDate(dialog, u"DTPicker1"_s, u"01.11.2024"_s);
        EXPECT_EQ(text(dialog, u"lblStatus"_s), u"Дата начала позже даты окончания."_s);
        EXPECT_FALSE(dialog.findChild<QPushButton*>(u"cmdOK"_s)->isEnabled());
        prompt.expect(Box::Exclamation, u"Период не должен быть больше 31 дня."_s);
        typeDate(dialog, u"DTPicker2"_s, u"02.12.2024"_s);
        EXPECT_TRUE(prompt.done());
        EXPECT_EQ(cells(dialog, u"HF1"_s), QStringList());
        typeDate(dialog, u"DTPicker2"_s, u"30.11.2024"_s);
        EXPECT_EQ(text(dialog, u"lblStatus"_s), u"Готово."_s);
        EXPECT_EQ(cells(dialog, u"HF1"_s), (QStringList{u"05.11.2024|Белов А.А.|ИС-21||Физика"_s,
                                                        u"06.11.2024||ИС-21||Физика"_s}));
        EXPECT_EQ(cells(dialog, u"tblSummary"_s).last(), u"Занятия|1|0|0"_s);
        EXPECT_EQ(text(dialog, u"lblNote"_s), u"Пропущено занятий: 1 (нет преподавателя — 1)."_s);
        EXPECT_EQ(lessons(), 0) << "nothing is written before OK";
        guardAgrees = false;
        auto* ok = dialog.findChild<QPushButton*>(u"cmdOK"_s);
        QTest::mouseClick(ok, Qt::LeftButton);
        EXPECT_EQ(lessons(), 0) << "no copy, no import";
        guardAgrees = true;
        ok->setFocus();
        prompt.expect(Box::Information, u"Импорт успешно завершен."_s);
        QTest::keyClick(ok, Qt::Key_Return);
        EXPECT_EQ(text(dialog, u"lblStatus"_s),
                  u"Импорт успешно завершен. Импортировано: 1 занятий."_s);
        EXPECT_EQ(cells(dialog, u"tblSummary"_s).mid(1, 2),
                  (QStringList{u"Преподаватели|1|0|0"_s, u"Типы занятий|0|0|0"_s}));
        // Doubled lessons are asked about.
        prompt.expectDefault(Box::Question,
                             u"В журнале за эти дни уже были занятия: 1. Импорт добавит занятия "
                             "еще раз. Продолжить?"_s,
                             shell::Answer::No, shell::Answer::No);
        QTest::keyClick(ok, Qt::Key_Return);
        EXPECT_TRUE(prompt.done());
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }));
    EXPECT_EQ(guarded, (QStringList{u"импортом занятий"_s, u"импортом занятий"_s}));
    EXPECT_EQ(status.last(), u"Импорт успешно завершен. Импортировано: 1 занятий."_s);
    EXPECT_EQ(settings.text(shell::Setting::ImportFile), chooser.answer);
    session.closeJournal();
    journal.reopen();
    EXPECT_EQ(journal.database().rowCount("UROKI"), 1);
}

TEST_F(ImportWindow, AFileThatCannotBeReadIsRefused)
{
    prompt.expect(Box::Exclamation, u"Не было выбрано имя файла."_s);
    EXPECT_FALSE(imports::importTimetable({session, settings, prompt, status, chooser}, nullptr));
    TimetableFile source({"UROKI"});
    chooser.answer = source.path();
    prompt.expect(Box::Critical, u"Файл не был открыт. Ошибка: в базе данных нет таблицы UROKI"_s);
    EXPECT_FALSE(imports::importTimetable({session, settings, prompt, status, chooser}, nullptr));
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(settings.text(shell::Setting::ImportFile), QString());
}

TEST_F(ImportWindow, AnEmptyTimetableChangesNothing)
{
    TimetableFile source;
    chooser.answer = source.path();
    prompt.expect(Box::Exclamation, u"В базе данных нечего импортировать: ее таблицы пусты."_s);
    EXPECT_FALSE(open([](QDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
        QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdCancel"_s), Qt::LeftButton);
    }));
    EXPECT_TRUE(guarded.isEmpty());
}
