#include "app/desktop.h"

#include "app/errorlog.h"
#include "app/quitsignals.h"
#include "app/singleinstance.h"
#include "tests/shell_forms/mainwindow.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <future>

using namespace Qt::StringLiterals;

namespace {

class Instance : public testing::Test
{
protected:
    // What a second program does while this one works in its event loop.
    bool handOverFromOutside(const app::Options& options)
    {
        auto answer = std::async(std::launch::async, [this, options] {
            return app::SingleInstance(name).handOver(options);
        });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        return answer.get();
    }

    QTemporaryDir folder;
    QString name = folder.filePath(u"socket"_s);
};

app::Options asking(const QString& file)
{
    app::Options options;
    options.file = file;
    return options;
}

} // namespace

TEST_F(Instance, LaterStartHandsItsRequestToTheFirst)
{
    app::SingleInstance first(name);
    EXPECT_FALSE(first.handOver(asking(u"a.mdb"_s))); // nobody there yet
    ASSERT_TRUE(first.listen());
    std::vector<app::Options> taken;
    QObject::connect(&first, &app::SingleInstance::requested, &first,
                     [&](const app::Options& options) { taken.push_back(options); });
    app::Options options = asking(u"/дом/Журнал колледжа.mdb"_s);
    options.readOnly = true;
    EXPECT_TRUE(handOverFromOutside(options));
    EXPECT_TRUE(handOverFromOutside({}));
    ASSERT_EQ(taken.size(), 2U);
    EXPECT_EQ(taken[0].file, options.file);
    EXPECT_TRUE(taken[0].readOnly);
    EXPECT_FALSE(taken[0].demo);
    EXPECT_TRUE(taken[1].file.isEmpty());
}

TEST_F(Instance, TakesThePlaceOfOneThatWasKilled)
{
    QFile stale(name);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    app::SingleInstance next(name);
    EXPECT_FALSE(next.handOver({}));
    EXPECT_TRUE(next.listen());
    EXPECT_TRUE(handOverFromOutside({}));
}

TEST_F(Instance, WaitsForNoneThatHangs)
{
    QLocalServer mute; // connects and never answers: its event loop stands still
    ASSERT_TRUE(mute.listen(name));
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(app::SingleInstance(name).handOver({}));
    EXPECT_LT(time.elapsed(), 4000);
}

TEST_F(Instance, PassesOverWhatIsNoRequest)
{
    app::SingleInstance first(name);
    ASSERT_TRUE(first.listen());
    const QSignalSpy requested(&first, &app::SingleInstance::requested);
    QLocalSocket stranger;
    stranger.connectToServer(name);
    ASSERT_TRUE(stranger.waitForConnected());
    stranger.write(QByteArray(4096, '\x01'));
    QTest::qWait(50);
    EXPECT_EQ(requested.count(), 0);
    EXPECT_TRUE(handOverFromOutside({}));
}

TEST_F(MainWindow, LaterStartOpensItsFileHere)
{
    const QString other = newJournal(u"b.mdb"_s);
    start(newJournal(u"a.mdb"_s));
    window->showMinimized();
    app::takeOver(*window, session, asking(pathOf(u"a.mdb"_s))); // open already: no message
    EXPECT_FALSE(window->isMinimized());
    EXPECT_EQ(session.journal().path(), pathOf(u"a.mdb"_s));
    app::takeOver(*window, session, asking(other));
    EXPECT_EQ(session.journal().path(), other);
    app::takeOver(*window, session, {});
    EXPECT_EQ(session.journal().path(), other);
}

TEST_F(MainWindow, LaterStartWaitsForAnOpenDialog)
{
    const QString other = newJournal(u"b.mdb"_s);
    start(newJournal(u"a.mdb"_s));
    QDialog dialog(window.get());
    dialog.setModal(true);
    dialog.show();
    app::takeOver(*window, session, asking(other));
    EXPECT_EQ(session.journal().path(), pathOf(u"a.mdb"_s));
}

TEST_F(MainWindow, LeavesCleanlyWhenTheSystemAsks)
{
    start(newJournal(u"a.mdb"_s));
    const app::QuitSignals quit;
    QObject::connect(&quit, &app::QuitSignals::quitWanted, window.get(),
                     [this] { app::leave(*window); });
    ASSERT_TRUE(settings.flag(shell::Setting::AppClose));
    QDialog dialog(window.get());
    QTimer::singleShot(0, qApp, [] { std::raise(SIGTERM); });
    EXPECT_EQ(dialog.exec(), QDialog::Rejected); // nobody answers it
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isVisible(); }));
    EXPECT_FALSE(session.isOpen());
    EXPECT_FALSE(settings.flag(shell::Setting::AppClose));
}

TEST(ErrorLog, KeepsWarningsAndErrorsOnly)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"jurnal.log"_s);
    {
        const app::ErrorLog log(path);
        qDebug("подробность");
        qWarning("предупреждение один");
        qCritical("ошибка два");
    }
    qWarning("после конца");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_EQ(text.count(u'\n'), 2) << text.toStdString();
    EXPECT_TRUE(text.contains(u"предупреждение: предупреждение один"_s));
    EXPECT_TRUE(text.contains(u"ошибка: ошибка два"_s));
}
