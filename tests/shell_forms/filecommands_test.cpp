#include "data/journal.h"
#include "jet/error.h"
#include "tests/shell_forms/mainwindow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString kNotCreated = u"Создание базы данных не выполнено."_s;
const QString kNotOpened = u"Файл базы данных не был открыт."_s;

} // namespace

TEST_F(MainWindow, CancelledFileCommandsEndWithTheirMessages)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    prompt.expect(Box::Exclamation, kNotOpened);
    trigger(u"mnuFileOpen"_s);
    prompt.expect(Box::Exclamation, kNotCreated);
    trigger(u"mnuFileCr"_s);
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(session.journal().path(), path);
}

TEST_F(MainWindow, KeepsThePresentFileWhenAnotherCannotBeOpened)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    FakeJournal* journal = openFakeJournal();
    chooser.answer = pathOf(u"нет.mdb"_s);
    prompt.expect(Box::Critical, u"Файл базы данных %1 не найден!"_s.arg(chooser.answer));
    prompt.expect(Box::Exclamation, kNotOpened);
    trigger(u"mnuFileOpen"_s);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_EQ(window->findChild<FakeJournal*>(), journal); // its window stays as well
    EXPECT_GT(session.database().rowCount("MONTH"), 0);
    EXPECT_EQ(settings.recentFiles(), QStringList{path});
}

TEST_F(MainWindow, RefusesToCreateOverAnExistingFile)
{
    start();
    chooser.answer = newJournal(u"a.mdb"_s);
    const qint64 size = QFileInfo(chooser.answer).size();
    shell::FileCommands& files = window->files();
    struct AnyCritical final : shell::Prompt
    {
        void critical(const QString& text) override { criticals << text; }
        void information(const QString&) override {}
        void exclamation(const QString& text) override { exclamations << text; }
        bool question(const QString&, shell::Answer) override { return false; }
        shell::Answer saveQuestion(const QString&) override { return shell::Answer::Cancel; }
        QStringList criticals;
        QStringList exclamations;
    } told;
    shell::FileCommands own(session, settings, told, chooser, window->statusLine());
    EXPECT_FALSE(own.create());
    EXPECT_EQ(told.criticals.size(), 1); // the reason
    EXPECT_EQ(told.exclamations, QStringList{kNotCreated});
    EXPECT_EQ(QFileInfo(chooser.answer).size(), size);
    EXPECT_TRUE(files.open(chooser.answer));
}

TEST_F(MainWindow, AWindowThatStaysKeepsItsFile)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    openFakeJournal()->staysOpen = true;
    chooser.answer = pathOf(u"новый.mdb"_s);
    prompt.expect(Box::Exclamation, kNotCreated);
    trigger(u"mnuFileCr"_s);
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_FALSE(QFileInfo::exists(chooser.answer)); // nothing half-made is left
    trigger(u"mnuFileClose"_s);
    EXPECT_TRUE(session.isOpen());
    window->findChild<FakeJournal*>()->staysOpen = false;
}

TEST_F(MainWindow, ChangesFilesAndClosesTheWindowsOfTheFormerOne)
{
    const QString first = newJournal(u"a.mdb"_s);
    start(first);
    openFakeJournal();
    chooser.answer = newJournal(u"б.mdb"_s);
    trigger(u"mnuFileOpen"_s);
    EXPECT_EQ(session.journal().path(), chooser.answer);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->findChild<FakeJournal*>(), nullptr);
    EXPECT_EQ(settings.recentFiles(), (QStringList{chooser.answer, first}));
    // The former file is free again.
    EXPECT_NE(data::Journal::openAndCheck(first, false, prompt), nullptr);
}

TEST_F(MainWindow, OpeningTheOpenFileAgainChangesNothing)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    FakeJournal* journal = openFakeJournal();
    chooser.answer = path;
    trigger(u"mnuFileOpen"_s);
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_EQ(window->findChild<FakeJournal*>(), journal);
}

TEST_F(MainWindow, OpensForReadingOnlyAndSaysSo)
{
    const QString path = newJournal(u"a.mdb"_s);
    start();
    ASSERT_TRUE(window->files().open(path, shell::Access::ReadOnly));
    EXPECT_EQ(window->windowTitle(), u"a.mdb [только чтение]"_s);
    EXPECT_TRUE(session.database().readOnly());
    EXPECT_THROW(session.saveSettings({}), jet::Error);
}

TEST_F(MainWindow, ShowsTheFileInTheFileManager)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    trigger(u"mnuFileOpenR"_s);
    EXPECT_EQ(chooser.revealed, path);
    chooser.hasFileManager = false;
    prompt.expect(Box::Exclamation, u"Не удалось показать расположение файла: %1"_s.arg(path));
    trigger(u"mnuFileOpenR"_s);
    EXPECT_TRUE(prompt.done());
}

TEST_F(MainWindow, ADemonstrationThatFailsIsAMessage)
{
    start();
    window->files().setDemo([](const QString&) -> bool { throw std::runtime_error("диск полон"); },
                            pathOf(u"user"_s));
    prompt.expect(Box::Critical, u"Демонстрационный журнал не создан. Ошибка: диск полон"_s);
    EXPECT_FALSE(window->files().demonstrate());
    EXPECT_TRUE(prompt.done());
    EXPECT_FALSE(session.isOpen());
}
