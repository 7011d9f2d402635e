#include "app/windows.h"
#include "journals/forms/frmhpos.h"
#include "shell/forms/frmmain.h"
#include "shell/forms/windowregistry.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The program as main() puts it together, on a small journal with one student.
class Program : public testing::Test
{
protected:
    Program()
        : settings(folder.filePath(u"settings.ini"_s))
    {
        const int group = file.group("ИС-21");
        maths = file.discipline("Математика");
        student = file.student(group, "Иванов", "Иван", "Иванович");
        file.lesson(group, maths, {2022, 11, 12}, 3);
        file.options(true, 2);
        settings.setNumber(shell::Setting::JournalMonth, 11);
        settings.setNumber(shell::Setting::JournalYear, 2022);
        file.release().reset();
        app::offerWindows(windows, {session, settings, prompt, window.statusLine()});
        window.load(file.path());
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void pick(const QString& box, const QString& entry)
    {
        auto* combo = window.findChild<QComboBox*>(box);
        ASSERT_NE(combo, nullptr) << box.toStdString();
        combo->setCurrentIndex(combo->findText(entry));
    }
    static void press(QWidget* target, QChar letter, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::sendKeyEvent(QTest::Click, target, static_cast<Qt::Key>(letter.toUpper().unicode()),
                            letter, modifiers);
    }
    // Opens a menu of the bar by its access key and chooses in it by another.
    void choose(QChar menu, QChar item)
    {
        press(&window, menu, Qt::AltModifier);
        auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(popup, nullptr);
        press(popup, item);
    }

    QTemporaryDir folder;
    SmallJournal file;
    shell::Settings settings;
    ScriptedPrompt prompt;
    ScriptedChooser chooser;
    shell::Session session;
    shell::WindowRegistry windows;
    shell::frmMain window{
        {session, settings, prompt, chooser, windows, folder.path(), folder.path()}};
    int maths = 0;
    int student = 0;
};

} // namespace

TEST_F(Program, MarksAnAbsenceThroughTheMenuOfTheMainWindow)
{
    window.findChild<QAction*>(u"mnuposechaemost"_s)->trigger();
    auto* journal = window.findChild<journals::frmHPos*>();
    ASSERT_NE(journal, nullptr);
    auto* mark = window.findChild<QAction*>(u"mnuinsert"_s);
    EXPECT_FALSE(mark->isEnabled());
    pick(u"cboGroup"_s, u"ИС-21"_s);
    pick(u"cboDiscipline"_s, u"Математика"_s);
    auto* grid = journal->findChild<QTableView*>(u"HF1"_s);
    grid->setCurrentIndex(grid->model()->index(0, 14)); // the 12th
    ASSERT_TRUE(mark->isEnabled());

    choose(u'д', u'п'); // "Действия", "Поставить пропуск"
    EXPECT_EQ(grid->model()->index(0, 14).data().toString(), u"2"_s);
    window.findChild<QAction*>(u"mnuins_uv"_s)->trigger();

    ASSERT_TRUE(window.close());
    file.reopen();
    EXPECT_EQ(file.absences(), QStringList{u"%1 %2 12.11.2022 3 2/0"_s.arg(student).arg(maths)});
}

TEST_F(Program, ClosesTheJournalWindowWithItsFile)
{
    window.findChild<QAction*>(u"mnuposechaemost"_s)->trigger();
    window.findChild<QAction*>(u"mnuFileClose"_s)->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.findChild<journals::frmHPos*>(), nullptr);
    EXPECT_FALSE(session.isOpen());
    file.reopen(); // nobody holds it any more
    EXPECT_TRUE(file.absences().isEmpty());
}
