#include "tests/shell_forms/mainwindow.h"

#include "data/journal.h"

#include <QCloseEvent>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

void FakeJournal::closeEvent(QCloseEvent* event)
{
    event->setAccepted(!staysOpen);
}

MainWindow::MainWindow()
    : settings(folder.filePath(u"settings.ini"_s))
{
    windows.offer(u"mnuposechaemost"_s, [](QWidget* parent) { return new FakeJournal(parent); });
}

void MainWindow::start(const QString& file)
{
    QDir(folder.path()).mkdir(u"program"_s);
    window = std::make_unique<shell::frmMain>(
        shell::MainParts{session, settings, prompt, chooser, windows, pathOf(u"program"_s),
                         pathOf(u"user"_s), nullptr, nullptr, &starter});
    window->files().setDemo(
        [this](const QString& path) {
            return data::Journal::openAndCheck(path, true, prompt) != nullptr;
        },
        pathOf(u"user"_s));
    window->load(file);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void MainWindow::restart(const QString& file)
{
    EXPECT_TRUE(window->close());
    window.reset();
    start(file);
}

QString MainWindow::newJournal(const QString& name)
{
    const QString path = pathOf(name);
    EXPECT_NE(data::Journal::openAndCheck(path, true, prompt), nullptr);
    return path;
}

QAction* MainWindow::action(const QString& name) const
{
    auto* found = window->findChild<QAction*>(name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return found;
}

void MainWindow::trigger(const QString& name)
{
    ASSERT_TRUE(action(name)->isEnabled()) << name.toStdString();
    action(name)->trigger();
}

FakeJournal* MainWindow::openFakeJournal()
{
    trigger(u"mnuposechaemost"_s);
    return window->findChild<FakeJournal*>();
}
