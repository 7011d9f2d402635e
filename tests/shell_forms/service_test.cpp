#include "shell/files/zipfile.h"
#include "shell/forms/frmabout.h"
#include "shell/service/logfile.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/shell_forms/modal.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusTipEvent>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

// The log of this test alone.
class OwnState final
{
public:
    explicit OwnState(const QString& folder) { qputenv("XDG_STATE_HOME", folder.toUtf8()); }
    ~OwnState() { qunsetenv("XDG_STATE_HOME"); }
    OwnState(const OwnState&) = delete;
    OwnState& operator=(const OwnState&) = delete;
};

void collect(const QMenu& menu, QList<QAction*>& items)
{
    for (QAction* item : menu.actions()) {
        if (item->menu()) {
            collect(*item->menu(), items);
        } else if (!item->isSeparator() && item->isVisible()) {
            items << item;
        }
    }
}

} // namespace

TEST_F(MainWindow, StartsOutsideProgramsFromTheServiceMenu)
{
    starter.installed = {u"kcalc"_s, u"anydesk"_s};
    start();
    trigger(u"mnuToolsCacl"_s);
    trigger(u"mnuAnyDesk"_s);
    EXPECT_EQ(starter.started, QStringList({u"/usr/bin/kcalc"_s, u"/usr/bin/anydesk"_s}));
    prompt.expectMatching(Box::Information, u"^Установлена версия (.|\n)*"_s);
    trigger(u"mnuObnovlenie"_s);
    EXPECT_TRUE(prompt.done());
}

TEST_F(MainWindow, AboutBoxCopiesItsDetails)
{
    start();
    inNextDialog<shell::frmAbout>([](shell::frmAbout& about) {
        EXPECT_EQ(withoutAccessibleName(about), "");
        QTest::keyClick(&about, Qt::Key_C, Qt::AltModifier); // no key of ours: does nothing
        QTest::mouseClick(about.findChild<QPushButton*>(u"cmdCopy"_s), Qt::LeftButton);
        EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u"SQLite "_s));
        QTest::keyClick(&about, Qt::Key_Escape);
    });
    trigger(u"mnuoproge"_s);
}

TEST_F(MainWindow, LetterIsMadeAfterTheMenuCommandHasReturned)
{
    starter.installed = {u"xdg-email"_s};
    start(newJournal(u"Журнал.mdb"_s));
    trigger(u"mnuToolsMail"_s);
    EXPECT_TRUE(starter.started.isEmpty());
    auto* timer = window->findChild<QTimer*>(u"Timer1"_s);
    ASSERT_NE(timer, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !starter.started.isEmpty(); }));
    const QString zip = starter.given.last();
    const QString copy = pathOf(u"copy.mdb"_s);
    shell::extractZip(zip, copy);
    EXPECT_NE(data::Journal::openAndCheck(copy, false, prompt), nullptr);
    QDir(QFileInfo(zip).absolutePath()).removeRecursively();
}

TEST_F(MainWindow, LetterWaitsForNobodyWhenTheFileIsClosedMeanwhile)
{
    start(newJournal(u"a.mdb"_s));
    trigger(u"mnuToolsMail"_s);
    trigger(u"mnuFileClose"_s);
    const QSignalSpy fired(window->findChild<QTimer*>(u"Timer1"_s), &QTimer::timeout);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fired.count() > 0; }));
    EXPECT_TRUE(starter.started.isEmpty());
}

TEST_F(MainWindow, WritesToSupportOrSaysThatThereIsNoMailProgram)
{
    start();
    trigger(u"mnuTPemail"_s);
    ASSERT_EQ(starter.opened.size(), 1);
    EXPECT_EQ(starter.opened.first().scheme(), u"mailto"_s);
    starter.opens = false;
    prompt.expectMatching(Box::Exclamation, u"^Почтовая программа не найдена\\..*"_s);
    trigger(u"mnuTPemail"_s);
    EXPECT_TRUE(prompt.done());
}

TEST_F(MainWindow, OpensTheErrorLog)
{
    const OwnState state(pathOf(u"state"_s));
    start();
    prompt.expect(Box::Information, u"Журнал ошибок пуст."_s);
    trigger(u"mnuErrorLog"_s);
    EXPECT_TRUE(prompt.done());
    shell::LogFile(shell::logPath()).write(u"сбой"_s);
    trigger(u"mnuErrorLog"_s);
    ASSERT_EQ(starter.opened.size(), 1);
    EXPECT_EQ(starter.opened.first().toLocalFile(), shell::logPath());
    starter.opens = false;
    trigger(u"mnuErrorLog"_s);
    EXPECT_EQ(chooser.revealed, shell::logPath());
}

TEST_F(MainWindow, FillsTheScreenAndGoesBack)
{
    start();
    QTest::keyClick(window.get(), Qt::Key_F11);
    EXPECT_TRUE(window->isFullScreen());
    EXPECT_TRUE(action(u"mnuFullScreen"_s)->isChecked());
    window->setWindowState(Qt::WindowNoState); // as the desktop may
    EXPECT_FALSE(action(u"mnuFullScreen"_s)->isChecked());
    QTest::keyClick(window.get(), Qt::Key_F11);
    EXPECT_TRUE(window->isFullScreen());
    QTest::keyClick(window.get(), Qt::Key_F11);
    EXPECT_FALSE(window->isFullScreen());
}

TEST_F(MainWindow, TellsInTheStatusBarWhatACommandDoes)
{
    start();
    QList<QAction*> items;
    for (const QAction* menu : window->menuBar()->actions()) {
        collect(*menu->menu(), items);
    }
    EXPECT_GT(items.size(), 50);
    for (const QAction* item : items) {
        if (item->objectName().startsWith(u"mnu"_s)) {
            EXPECT_FALSE(item->statusTip().isEmpty()) << item->objectName().toStdString();
        }
    }
}

TEST_F(MainWindow, NamesEveryWidgetToScreenReaders)
{
    start();
    EXPECT_EQ(withoutAccessibleName(*window), "");
    ASSERT_TRUE(window->files().open(newJournal(u"a.mdb"_s)));
    EXPECT_EQ(withoutAccessibleName(*window), "");
}
