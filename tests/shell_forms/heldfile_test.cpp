#include "data/journal.h"
#include "shell/files/locknote.h"
#include "shell/forms/fileservices.h"
#include "tests/shell_forms/mainwindow.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QTest>
#include <QUrl>

#include <chrono>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

const QString kNotOpened = u"Файл базы данных не был открыт."_s;

void touchFromOutside(const QString& path)
{
    const std::filesystem::path file = path.toStdString();
    std::filesystem::last_write_time(file, std::filesystem::last_write_time(file)
                                               + std::chrono::seconds(5));
}

// The user goes to another window and comes back.
void comeBack(QWidget& window)
{
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QCoreApplication::processEvents();
}

} // namespace

TEST_F(MainWindow, AHeldFileNamesItsHolderAndIsOfferedForReading)
{
    const QString path = newJournal(u"a.mdb"_s);
    start();
    const auto held = data::Journal::openAndCheck(path, false, prompt);
    const shell::LockNote note(path);
    const QString offered = u"^Файл базы данных .*a\\.mdb» уже открыт: .*компьютер .*, процесс "
                            "\\d+\\..*Открыть только для чтения\\?$"_s;
    const auto dotAll = u"(?s)"_s;
    prompt.expectMatching(Box::Question, dotAll + offered, shell::Answer::No);
    prompt.expect(Box::Exclamation, kNotOpened);
    EXPECT_FALSE(window->files().open(path));
    EXPECT_FALSE(session.isOpen());

    prompt.expectMatching(Box::Question, dotAll + offered, shell::Answer::Yes);
    EXPECT_TRUE(window->files().open(path));
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(window->windowTitle(), u"a.mdb [только чтение]"_s);
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_EQ(settings.recentFiles(), QStringList{path});
    EXPECT_TRUE(QFileInfo::exists(shell::lockNotePath(path))); // the holder's is left alone
}

TEST_F(MainWindow, TheOpenFileBearsALockNoteUntilItIsClosed)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    EXPECT_TRUE(QFileInfo::exists(shell::lockNotePath(path)));
    trigger(u"mnuFileClose"_s);
    EXPECT_FALSE(QFileInfo::exists(shell::lockNotePath(path)));
    ASSERT_TRUE(window->files().open(path, shell::Access::ReadOnly));
    EXPECT_FALSE(QFileInfo::exists(shell::lockNotePath(path)));
}

TEST_F(MainWindow, OffersToReloadAFileChangedFromOutside)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    QCoreApplication::processEvents();
    touchFromOutside(path);
    const QString asked = u"^Файл базы данных .* изменен другой программой\\. Открыть его заново"_s;
    prompt.expectMatching(Box::Question, asked, shell::Answer::No);
    comeBack(*window);
    EXPECT_TRUE(prompt.done());
    comeBack(*window); // told once
    const auto row = session.settings();
    EXPECT_ANY_THROW(session.saveSettings(row)); // never overwritten
    prompt.expectMatching(Box::Question, asked, shell::Answer::Yes);
    QCoreApplication::processEvents();
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_NO_THROW(session.saveSettings(row));
}

TEST_F(MainWindow, TellsWhenTheFileHasVanishedAndGoesOnWhenItIsBack)
{
    const QString path = newJournal(u"a.mdb"_s);
    start(path);
    QCoreApplication::processEvents();
    ASSERT_TRUE(QFile::rename(path, path + u".away"_s));
    prompt.expectMatching(Box::Exclamation, u"^Файл базы данных .* недоступен: "_s);
    comeBack(*window);
    EXPECT_TRUE(prompt.done());
    comeBack(*window);
    ASSERT_TRUE(QFile::rename(path + u".away"_s, path));
    comeBack(*window);
    EXPECT_NO_THROW(session.saveSettings(session.settings()));
}

TEST_F(MainWindow, OpensAFileDroppedOnIt)
{
    const QString path = newJournal(u"a.mdb"_s);
    start();
    QMimeData picture;
    picture.setUrls({QUrl::fromLocalFile(pathOf(u"фото.png"_s))});
    QDragEnterEvent unfit({10, 10}, Qt::CopyAction, &picture, Qt::LeftButton, Qt::NoModifier);
    unfit.setAccepted(false);
    QCoreApplication::sendEvent(window.get(), &unfit);
    EXPECT_FALSE(unfit.isAccepted());

    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(pathOf(u"фото.png"_s)), QUrl::fromLocalFile(path)});
    QDragEnterEvent entered({10, 10}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &entered);
    EXPECT_TRUE(entered.isAccepted());
    QDropEvent drop({10, 10}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_FALSE(session.isOpen()); // first the other program gets its answer
    QCoreApplication::processEvents();
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), path);
}

TEST_F(MainWindow, ListsTenRecentFilesGreysMissingOnesAndForgetsThem)
{
    for (int i = 0; i < 11; ++i)
        settings.addRecentFile(i == 4 ? newJournal(u"есть.mdb"_s) : pathOf(u"нет%1.mdb"_s.arg(i)));
    start();
    auto* all = named<QMenu>(u"mnuFileMRUAll"_s);
    emit all->aboutToShow();
    QAction* present = nullptr;
    int files = 0;
    for (QAction* item : all->actions()) {
        if (item->objectName() != u"mnuFileMRUItem"_s)
            continue;
        ++files;
        EXPECT_EQ(item->isEnabled(), item->text().contains(u"есть"_s))
            << item->text().toStdString();
        if (item->isEnabled())
            present = item;
    }
    EXPECT_EQ(files, 10);
    ASSERT_NE(present, nullptr);
    present->trigger();
    EXPECT_TRUE(session.isOpen());
    emit all->aboutToShow();
    trigger(u"mnuFileMRUClear"_s);
    EXPECT_TRUE(settings.recentFiles().isEmpty());
}

TEST_F(MainWindow, AFileOfAnEarlierReleaseIsCopiedBeforeItIsBroughtUpToDate)
{
    const QString path = newJournal(u"a.mdb"_s);
    {
        const auto journal = data::Journal::openAndCheck(path, false, prompt);
        journal->database().execute("UPDATE RASP SET appMajor = 0, appMinor = 0, appRevision = 0;");
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    start(path);
    ASSERT_TRUE(session.isOpen());
    auto& copies = window->services().care().copies();
    copies.finish();
    const auto archived = copies.archive().copies(path);
    ASSERT_EQ(archived.size(), 1);
    EXPECT_EQ(archived[0].name.reason, u"перед обновлением файла"_s);
    shell::Archive::extract(archived[0], pathOf(u"прежний.mdb"_s));
    QFile former(pathOf(u"прежний.mdb"_s));
    ASSERT_TRUE(former.open(QIODevice::ReadOnly));
    EXPECT_EQ(former.readAll(), before);
}

TEST_F(MainWindow, AMassActionOfAnyWindowIsPrecededByACopy)
{
    const QString path = newJournal(u"a.mdb"_s);
    EXPECT_TRUE(session.beforeMassAction(u"проверкой"_s)); // nobody takes care yet
    start(path);
    EXPECT_TRUE(session.beforeMassAction(u"импортом занятий"_s));
    auto& copies = window->services().care().copies();
    copies.finish();
    ASSERT_EQ(copies.archive().copies(path).size(), 1);
    EXPECT_EQ(copies.archive().copies(path)[0].name.reason, u"перед импортом занятий"_s);
}
