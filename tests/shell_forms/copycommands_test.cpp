#include "data/journal.h"
#include "jet/error.h"
#include "shell/files/locknote.h"
#include "shell/forms/fileservices.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/support/smalljournal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

const QString kNotSaved = u"Сохранение базы данных в другом файле не выполнено."_s;
const QString kNotCopied = u"Копирование базы данных на съемный диск не было выполнено."_s;
const QString kNotBroughtBack =
    u"Восстановление базы данных со съемного диска не было выполнено."_s;
const QString kNotArchived = u"Архивная копия базы данных не была создана."_s;
const QString kNotRestored = u"Восстановление базы данных из архива не было выполнено."_s;
const QString kNotCompacted = u"Сжатие и восстановление базы данных не было выполнено."_s;

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

class CopyMenu : public MainWindow
{
protected:
    void startWithJournal()
    {
        path = newJournal(u"Журнал.mdb"_s);
        start(path);
        services = &window->services();
        QCoreApplication::processEvents();
    }
    void addGroup(const char* name)
    {
        const std::pair<std::string, jet::Value> values[] = {{"NAIM", std::string(name)}};
        session.database().insert("SPGRUP", values);
        QCoreApplication::processEvents();
    }
    std::int64_t groups() { return session.database().rowCount("SPGRUP"); }
    QList<shell::ArchivedCopy> archived()
    {
        services->care().copies().finish();
        return services->care().archive().copies(path);
    }

    // Ends the program and spoils the last page of its file, which holds the groups.
    void damageGroups()
    {
        ASSERT_TRUE(window->close());
        window.reset();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.seek(file.size() - 4096 + 13)); // the high byte of its number of rows
        const char spoilt = static_cast<char>(file.peek(1)[0] ^ 1);
        ASSERT_TRUE(file.putChar(spoilt));
    }

    QString path;
    shell::FileServices* services = nullptr;
};

} // namespace

TEST_F(CopyMenu, CancelledCommandsEndWithTheirMessagesAndChangeNothing)
{
    struct Row
    {
        QString command;
        QString message;
    };
    const Row rows[] = {
        {u"mnuFileSaveAs"_s, kNotSaved},
        {u"mnuFileSaveTo"_s, kNotCopied},
        {u"mnuFileOpenFrom"_s, kNotBroughtBack},
        {u"mnuToolsArhOpen"_s, kNotRestored},
    };
    startWithJournal();
    const QByteArray before = bytesOf(path);
    for (const Row& row : rows) {
        prompt.expect(Box::Exclamation, row.message);
        trigger(row.command);
        EXPECT_TRUE(prompt.done()) << row.command.toStdString();
        ASSERT_TRUE(session.isOpen());
        EXPECT_EQ(session.journal().path(), path);
    }
    EXPECT_EQ(bytesOf(path), before);
}

TEST_F(CopyMenu, SaveAsGoesOnInTheNewFile)
{
    startWithJournal();
    addGroup("А");
    chooser.answer = pathOf(u"Другой.mdb"_s);
    trigger(u"mnuFileSaveAs"_s);
    EXPECT_EQ(chooser.suggested, u"Журнал.mdb"_s);
    EXPECT_EQ(session.journal().path(), chooser.answer);
    addGroup("Б");
    EXPECT_EQ(groups(), 2);
    const auto former = data::Journal::openAndCheck(path, false, prompt);
    ASSERT_TRUE(former);
    EXPECT_EQ(former->database().rowCount("SPGRUP"), 1);
}

TEST_F(CopyMenu, SaveAsUnderItsOwnNameOrOverAnOpenFileIsRefused)
{
    startWithJournal();
    const QByteArray before = bytesOf(path);
    chooser.answer = path;
    prompt.expect(Box::Exclamation,
                  u"Это имя открытого файла. Все изменения в нем уже сохранены."_s);
    prompt.expect(Box::Exclamation, kNotSaved);
    trigger(u"mnuFileSaveAs"_s);
    EXPECT_EQ(bytesOf(path), before);

    const QString other = newJournal(u"чужой.mdb"_s);
    const auto held = data::Journal::openAndCheck(other, false, prompt);
    chooser.answer = other;
    prompt.expectMatching(Box::Critical, u"^Сохранение базы данных в другом файле не выполнено\\. "
                                         "Ошибка: .* уже открыт другой программой"_s);
    trigger(u"mnuFileSaveAs"_s);
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(session.journal().path(), path);
}

TEST_F(CopyMenu, CopiesToADriveAndBack)
{
    startWithJournal();
    addGroup("А");
    QDir(folder.path()).mkdir(u"usb"_s);
    chooser.driveFile = pathOf(u"usb/Журнал.mdb"_s);
    prompt.expectMatching(Box::Information, u"^База данных скопирована на съемный диск: "_s);
    trigger(u"mnuFileSaveTo"_s);
    EXPECT_EQ(bytesOf(chooser.driveFile), bytesOf(path));

    prompt.expectMatching(Box::Question, u"^На диске уже есть файл .*Заменить его\\?$"_s,
                          shell::Answer::No);
    prompt.expect(Box::Exclamation, kNotCopied);
    trigger(u"mnuFileSaveTo"_s);

    addGroup("Б");
    prompt.expectMatching(Box::Question,
                          u"(?s)студентов 0, пропусков 0, оценок 0.*Заменить ею файл"_s,
                          shell::Answer::Yes);
    trigger(u"mnuFileOpenFrom"_s);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_EQ(groups(), 1);
    EXPECT_EQ(archived().first().name.reason, u"перед восстановлением"_s);
}

TEST_F(CopyMenu, WhatIsNoJournalIsNotBroughtBack)
{
    startWithJournal();
    const QByteArray before = bytesOf(path);
    chooser.driveFile = pathOf(u"плохой.mdb"_s);
    QFile bad(chooser.driveFile);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("this is no database");
    bad.close();
    prompt.expectMatching(Box::Critical, u"^Восстановление базы данных со съемного диска не было "
                                         "выполнено\\. Ошибка: "_s);
    trigger(u"mnuFileOpenFrom"_s);
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(session.journal().path(), path);
    EXPECT_EQ(bytesOf(path), before);
    EXPECT_FALSE(QFileInfo::exists(path + u".restored"_s));
}

TEST_F(CopyMenu, RestoresFromTheArchiveAndKeepsThePresentFile)
{
    startWithJournal();
    addGroup("А");
    prompt.expectMatching(Box::Information, u"^Архивная копия создана и проверена: "_s);
    trigger(u"mnuToolsArh"_s);
    addGroup("Б");
    addGroup("В");
    chooser.choosesCopy = true; // the copy before the first change
    ASSERT_EQ(archived().size(), 2);
    const qsizetype before = archived().size();
    prompt.expectMatching(Box::Question, u"(?s)^Копия от .*Заменить ею файл"_s, shell::Answer::Yes);
    trigger(u"mnuToolsArhOpen"_s);
    EXPECT_TRUE(prompt.done());
    EXPECT_EQ(groups(), 0);
    ASSERT_EQ(archived().size(), before + 1);
    shell::Archive::extract(archived().first(), pathOf(u"сохранен.mdb"_s));
    const auto saved = data::Journal::openAndCheck(pathOf(u"сохранен.mdb"_s), false, prompt);
    EXPECT_EQ(saved->database().rowCount("SPGRUP"), 3);
}

TEST_F(CopyMenu, RestoresAFileThatCannotBeOpenedAnyMore)
{
    startWithJournal();
    addGroup("А");
    prompt.expectMatching(Box::Information, u"^Архивная копия"_s);
    trigger(u"mnuToolsArh"_s);
    archived();
    trigger(u"mnuFileClose"_s);
    QFile file(path);
    ASSERT_TRUE(file.resize(5000)); // broken
    chooser.choosesCopy = true;
    chooser.answer = path;
    prompt.expectMatching(Box::Question, u"^Копия от "_s, shell::Answer::Yes);
    trigger(u"mnuToolsArhOpen"_s);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(groups(), 0);
}

TEST_F(CopyMenu, ADamagedFileAfterAnUncleanEndIsReplacedByACopyAtOnce)
{
    startWithJournal();
    addGroup("А");
    archived();
    damageGroups();
    settings.setFlag(shell::Setting::AppClose, true);
    chooser.choosesCopy = true;
    prompt.expectMatching(Box::Question,
                          u"(?s)^Прошлый раз программа завершилась неправильно. База данных "
                          "проверена, найдено ошибок: .*SPGRUP.*Восстановить из архива"_s,
                          shell::Answer::Yes);
    prompt.expectMatching(Box::Question, u"^Копия от "_s, shell::Answer::Yes);
    start(path);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(groups(), 0);
}

TEST_F(CopyMenu, CompactionOffersToRepairADamagedFile)
{
    startWithJournal();
    addGroup("А");
    archived();
    damageGroups();
    const QByteArray before = bytesOf(path);
    const QString question = u"(?s)^Файл базы данных поврежден: .*Собрать из него новый файл"_s;
    const QString losses = u"(?s)^Прочитано таблиц: 24, .*SPGRUP: страница .*Заменить файл"_s;
    start(path);
    prompt.expectMatching(Box::Question, question, shell::Answer::No);
    prompt.expect(Box::Exclamation, kNotCompacted);
    trigger(u"mnuToolsAcc"_s);
    prompt.expectMatching(Box::Question, question);
    prompt.expectMatching(Box::Question, losses, shell::Answer::No);
    prompt.expect(Box::Exclamation, kNotCompacted);
    trigger(u"mnuToolsAcc"_s);
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(bytesOf(path), before);

    prompt.expectMatching(Box::Question, question);
    prompt.expectMatching(Box::Question, losses);
    prompt.expectMatching(Box::Information, u"^База данных исправлена и сжата. Размер был "_s);
    trigger(u"mnuToolsAcc"_s);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(groups(), 0);
    EXPECT_EQ(QDir(folder.path()).entryList({u"*.repaired"_s}), QStringList());
    addGroup("Б"); // works on in the repaired file
    EXPECT_EQ(groups(), 1);
}

TEST_F(CopyMenu, AFullDiskLeavesTheOpenFileInForce)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    startWithJournal();
    chooser.answer = pathOf(u"Другой.mdb"_s);
    chooser.driveFile = pathOf(u"usb.mdb"_s);
    struct Row
    {
        QString command;
        QString message;
    };
    const Row rows[] = {{u"mnuFileSaveAs"_s, kNotSaved},
                        {u"mnuFileSaveTo"_s, kNotCopied},
                        {u"mnuToolsArh"_s, kNotArchived}};
    for (const Row& row : rows) {
        const FailingWrites full;
        prompt.expectMatching(Box::Critical,
                              u'^' + QRegularExpression::escape(row.message) + u" Ошибка: "_s);
        trigger(row.command);
        EXPECT_TRUE(prompt.done()) << row.command.toStdString();
        EXPECT_EQ(session.journal().path(), path);
    }
    EXPECT_FALSE(QFileInfo::exists(chooser.answer));
    EXPECT_FALSE(QFileInfo::exists(chooser.driveFile));
    EXPECT_TRUE(archived().isEmpty());
    addGroup("А");
    EXPECT_EQ(groups(), 1);
}

TEST_F(CopyMenu, CompactsAndTellsTheSpaceWon)
{
    startWithJournal();
    for (int i = 0; i < 400; ++i)
        addGroup("Группа с названием в 30 знаков");
    session.database().execute("DELETE * FROM SPGRUP WHERE IDG>1;");
    QCoreApplication::processEvents();
    const qint64 before = QFileInfo(path).size();
    prompt.expectMatching(Box::Information,
                          u"^База данных сжата\\. Размер был .*, стал .*, освобождено "_s);
    trigger(u"mnuToolsAcc"_s);
    EXPECT_TRUE(prompt.done());
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(groups(), 1);
    EXPECT_LT(QFileInfo(path).size(), before);
    addGroup("после");
    EXPECT_EQ(groups(), 2);
}

TEST_F(CopyMenu, CompactionThatFailsOpensTheFileAgain)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    startWithJournal();
    addGroup("А");
    const QByteArray before = bytesOf(path);
    {
        const FailingWrites full;
        prompt.expectMatching(Box::Critical,
                              u'^' + QRegularExpression::escape(kNotCompacted) + u" Ошибка: "_s);
        trigger(u"mnuToolsAcc"_s);
        EXPECT_TRUE(prompt.done());
    }
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(groups(), 1);
    EXPECT_EQ(bytesOf(path), before);
}

TEST_F(CopyMenu, AReadOnlyFileMayBeCopiedAndNotChanged)
{
    path = newJournal(u"Журнал.mdb"_s);
    start();
    ASSERT_TRUE(window->files().open(path, shell::Access::ReadOnly));
    for (const QString& name : {u"mnuFileSaveAs"_s, u"mnuFileSaveTo"_s, u"mnuToolsArh"_s})
        EXPECT_TRUE(action(name)->isEnabled()) << name.toStdString();
    for (const QString& name : {u"mnuFileOpenFrom"_s, u"mnuToolsArhOpen"_s, u"mnuToolsAcc"_s})
        EXPECT_FALSE(action(name)->isEnabled()) << name.toStdString();
    FakeJournal* journal = openFakeJournal();
    journal->offer({shell::JournalAction::Mark, shell::JournalAction::Print});
    EXPECT_FALSE(action(u"mnuinsert"_s)->isEnabled());
    EXPECT_TRUE(action(u"mnuprint"_s)->isEnabled());
}
