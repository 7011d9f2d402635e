#include "tests/shell_forms/mainwindow.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCommandLinkButton>
#include <QDir>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;
using shell::JournalAction;

namespace {

// What a screen reader is told of a widget that takes the keyboard or the mouse.
void expectNamed(QWidget* widget)
{
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(seen, nullptr);
    EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty())
        << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
}

} // namespace

TEST_F(MainWindow, EndsItsLoadingReadyWithTheFoldersMade)
{
    start();
    EXPECT_EQ(window->objectName(), u"frmMain"_s);
    EXPECT_EQ(named<QLabel>(u"panelProgress"_s)->text(), u"Готово"_s);
    EXPECT_TRUE(QDir(pathOf(u"program/Архив"_s)).exists());
    EXPECT_TRUE(QDir(pathOf(u"program/Документы"_s)).exists());
}

TEST_F(MainWindow, MarksARunInProgressUntilItIsClosed)
{
    start();
    EXPECT_EQ(settings.text(shell::Setting::AppClose), u"1"_s);
    window->close();
    EXPECT_EQ(settings.text(shell::Setting::AppClose), u"0"_s);
}

TEST_F(MainWindow, KeepsToolbarAndStatusBarHiddenOverARestart)
{
    start();
    EXPECT_TRUE(named<QToolBar>(u"Toolbar1"_s)->isVisible());
    EXPECT_TRUE(named<QStatusBar>(u"sbStatusBar"_s)->isVisible());
    trigger(u"mnupanels"_s);
    trigger(u"mnustatusbar"_s);
    EXPECT_FALSE(named<QToolBar>(u"Toolbar1"_s)->isVisible());
    EXPECT_FALSE(named<QStatusBar>(u"sbStatusBar"_s)->isVisible());
    restart();
    EXPECT_FALSE(named<QToolBar>(u"Toolbar1"_s)->isVisible());
    EXPECT_FALSE(action(u"mnupanels"_s)->isChecked());
    EXPECT_FALSE(action(u"mnustatusbar"_s)->isChecked());
    trigger(u"mnupanels"_s);
    restart();
    EXPECT_TRUE(named<QToolBar>(u"Toolbar1"_s)->isVisible());
    EXPECT_FALSE(named<QStatusBar>(u"sbStatusBar"_s)->isVisible());
}

TEST_F(MainWindow, ComesBackWhereItWas)
{
    start();
    const QRect place(40, 50, 610, 480);
    window->resize(place.size());
    window->move(place.topLeft());
    restart();
    EXPECT_EQ(window->size(), place.size());
    EXPECT_EQ(window->pos(), place.topLeft());
    window->showMaximized();
    restart();
    EXPECT_TRUE(window->isMaximized());
    restart(); // the place to return to outlives maximised runs
    EXPECT_EQ(settings.number(shell::Setting::MainWidth), place.width());
    EXPECT_EQ(settings.number(shell::Setting::MainHeight), place.height());
}

TEST_F(MainWindow, ShowsFileWorkingDateAndUser)
{
    start(newJournal(u"Колледж.mdb"_s));
    auto row = session.settings();
    row.workingDate = QDate(2022, 11, 5);
    session.saveSettings(row);
    EXPECT_EQ(named<QLabel>(u"panelFile"_s)->text(), u"Колледж.mdb"_s);
    EXPECT_EQ(named<QLabel>(u"panelDate"_s)->text(), u"Рабочая дата: 05.11.2022"_s);
    EXPECT_EQ(named<QLabel>(u"panelUser"_s)->text(), u"Администратор"_s);
    session.signIn({2, u"Петрова"_s, shell::Role::User});
    EXPECT_EQ(named<QLabel>(u"panelUser"_s)->text(), u"Петрова (пользователь)"_s);
    EXPECT_EQ(window->windowTitle(), u"Колледж.mdb"_s);
    trigger(u"mnuFileClose"_s);
    EXPECT_EQ(named<QLabel>(u"panelFile"_s)->text(), u"Файл не открыт"_s);
    EXPECT_FALSE(named<QLabel>(u"panelDate"_s)->isVisible());
}

TEST_F(MainWindow, StartPageIsWorkedByTheKeyboardAlone)
{
    start();
    EXPECT_EQ(QApplication::focusWidget(), named<QWidget>(u"cmdCreate"_s));
    chooser.answer = newJournal(u"a.mdb"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), named<QWidget>(u"cmdOpen"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    ASSERT_TRUE(session.isOpen());
    EXPECT_FALSE(named<QWidget>(u"startPage"_s)->isVisible());

    trigger(u"mnuFileClose"_s);
    auto* recent = named<QCommandLinkButton>(u"cmdRecent"_s);
    EXPECT_EQ(QApplication::focusWidget(), recent);
    QTest::keyClick(recent, Qt::Key_Space);
    EXPECT_TRUE(session.isOpen());

    restart();
    EXPECT_EQ(QApplication::focusWidget(), named<QWidget>(u"cmdRecent"_s));
}

TEST_F(MainWindow, StartPageOpensTheDemonstration)
{
    start();
    named<QCommandLinkButton>(u"cmdDemo"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), pathOf(u"user/Демонстрация.mdb"_s));
    trigger(u"mnuFileClose"_s);
    named<QCommandLinkButton>(u"cmdDemo"_s)->click(); // opened again, not built again
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MainWindow, GreysMissingFilesOnTheStartPage)
{
    settings.addRecentFile(pathOf(u"нет.mdb"_s));
    start();
    EXPECT_FALSE(named<QCommandLinkButton>(u"cmdRecent"_s)->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), named<QWidget>(u"cmdCreate"_s));
}

TEST_F(MainWindow, PassesCommandsToTheActiveJournal)
{
    struct Row
    {
        QString command;
        JournalAction expected;
    };
    const Row rows[] = {
        {u"mnuins_oc"_s, JournalAction::SetGrade},
        {u"mnudel_oc"_s, JournalAction::RemoveGrade},
        {u"mnuinsert"_s, JournalAction::Mark},
        {u"mnuins_uv"_s, JournalAction::MakeExcused},
        {u"mnuins_nuv"_s, JournalAction::MakeUnexcused},
        {u"mnudelet"_s, JournalAction::Delete},
        {u"mnuotmena"_s, JournalAction::Undo},
        {u"mnupovtor"_s, JournalAction::Redo},
        {u"mnuprint"_s, JournalAction::Print},
        {u"actRefresh"_s, JournalAction::Refresh},
    };
    start(newJournal(u"a.mdb"_s));
    FakeJournal* journal = openFakeJournal();
    ASSERT_NE(journal, nullptr);
    for (const Row& row : rows) {
        EXPECT_FALSE(action(row.command)->isEnabled()) << row.command.toStdString();
        journal->offer({row.expected});
        journal->ran.clear();
        trigger(row.command);
        EXPECT_EQ(journal->ran, std::vector{row.expected}) << row.command.toStdString();
        journal->offer({});
    }
    journal->offer({JournalAction::Refresh});
    journal->ran.clear();
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_EQ(journal->ran.size(), 1U);

    journal->undoCaption = u"Отменить: оценка 5, Том & Ко, 12.11"_s;
    journal->offer({JournalAction::Undo});
    EXPECT_EQ(action(u"mnuotmena"_s)->text(), u"О&тменить: оценка 5, Том && Ко, 12.11"_s);
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(journal->ran.back(), JournalAction::Undo);

    window->findChild<QMdiArea*>()->closeAllSubWindows();
    EXPECT_EQ(action(u"mnuotmena"_s)->text(), u"О&тменить"_s);
    EXPECT_FALSE(action(u"actRefresh"_s)->isEnabled());
}

TEST_F(MainWindow, OpensEachWindowOnce)
{
    start(newJournal(u"a.mdb"_s));
    FakeJournal* first = openFakeJournal();
    EXPECT_EQ(openFakeJournal(), first);
    EXPECT_EQ(window->findChildren<FakeJournal*>().size(), 1);
    window->findChild<QMdiArea*>()->closeAllSubWindows();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->findChildren<FakeJournal*>().size(), 0);
    EXPECT_NE(openFakeJournal(), nullptr);
}

TEST_F(MainWindow, AWindowThatCannotBeMadeIsAMessage)
{
    windows.offer(u"mnuuspevaemost"_s,
                  [](QWidget*) -> QWidget* { throw std::runtime_error("файл поврежден"); });
    start(newJournal(u"a.mdb"_s));
    prompt.expect(Box::Critical, u"Команда не выполнена. Ошибка: файл поврежден"_s);
    trigger(u"mnuuspevaemost"_s);
    EXPECT_TRUE(prompt.done());
    EXPECT_TRUE(window->findChild<QMdiArea*>()->subWindowList().isEmpty());
}

TEST_F(MainWindow, ArrangesChildWindowsOverTheWholeArea)
{
    windows.offer(u"mnuuspevaemost"_s, [](QWidget* parent) { return new FakeJournal(parent); });
    start(newJournal(u"a.mdb"_s));
    EXPECT_FALSE(action(u"mnugorizont"_s)->isEnabled());
    openFakeJournal();
    trigger(u"mnuuspevaemost"_s);
    auto* area = window->findChild<QMdiArea*>();
    const QSize size = area->viewport()->size();
    const auto children = area->subWindowList();
    trigger(u"mnugorizont"_s);
    EXPECT_EQ(children[0]->geometry(), QRect(0, 0, size.width(), size.height() / 2));
    EXPECT_EQ(children[1]->geometry().bottom(), size.height() - 1);
    trigger(u"mnuVertikal"_s);
    EXPECT_EQ(children[0]->geometry(), QRect(0, 0, size.width() / 2, size.height()));
    EXPECT_EQ(children[1]->geometry().right(), size.width() - 1);
    trigger(u"mnuKaskadom"_s);
    EXPECT_NE(children[0]->pos(), children[1]->pos());
}

TEST_F(MainWindow, StaysOpenWhenAChildWindowDoes)
{
    start(newJournal(u"a.mdb"_s));
    FakeJournal* journal = openFakeJournal();
    journal->staysOpen = true;
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(session.isOpen());
    journal->staysOpen = false;
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(session.isOpen());
}

TEST_F(MainWindow, VerifiesTheFileAfterAnUncleanEnd)
{
    const QString path = newJournal(u"a.mdb"_s);
    settings.setFlag(shell::Setting::AppClose, true);
    prompt.expect(Box::Information,
                  u"Прошлый раз программа завершилась неправильно. База данных проверена "
                  "полностью, ошибок не найдено."_s);
    start(path);
    EXPECT_TRUE(prompt.done());
    restart(path); // this time it ended as it should
}

TEST_F(MainWindow, EveryInteractiveWidgetHasAName)
{
    settings.addRecentFile(newJournal(u"a.mdb"_s));
    start();
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible()) {
            expectNamed(button);
        }
    }
    expectNamed(named<QMdiArea>(u"mdiArea"_s));
    expectNamed(named<QWidget>(u"startPage"_s));
}
