#include "shell/service/outsideprograms.h"

#include "shell/service/programdetails.h"
#include "tests/support/fakestarter.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class OutsidePrograms : public testing::Test
{
protected:
    FakeStarter starter;
    ScriptedPrompt prompt;
};

const QString kNoCalculator =
    u"Файл программы \"Калькулятор\" не найден. Воспользуйтесь ярлыком: Пуск - Программы - "
    "Стандартные - Калькулятор"_s;

} // namespace

TEST_F(OutsidePrograms, TakeTheDesktopsCalculatorBeforeThePlainOne)
{
    starter.installed = {u"xcalc"_s, u"gnome-calculator"_s};
    shell::startCalculator(starter, prompt);
    EXPECT_EQ(starter.started, QStringList{u"/usr/bin/gnome-calculator"_s});
}

TEST_F(OutsidePrograms, TellThatThereIsNoCalculator)
{
    prompt.expect(Box::Exclamation, kNoCalculator);
    shell::startCalculator(starter, prompt);
    starter.installed = {u"kcalc"_s};
    starter.starts = false;
    prompt.expect(Box::Exclamation, kNoCalculator);
    shell::startCalculator(starter, prompt);
    EXPECT_TRUE(prompt.done());
}

TEST_F(OutsidePrograms, StartRemoteHelpOnlyWhereItIsInstalled)
{
    prompt.expectMatching(Box::Exclamation, u"^Программа AnyDesk .* не установлена\\..*"_s);
    shell::startRemoteHelp(starter, prompt, shell::RemoteHelp::AnyDesk);
    prompt.expectMatching(Box::Exclamation, u"^Программа AmmyyAdmin .* не установлена\\..*"_s);
    shell::startRemoteHelp(starter, prompt, shell::RemoteHelp::AmmyyAdmin);
    EXPECT_TRUE(starter.started.isEmpty());

    starter.installed = {u"anydesk"_s};
    shell::startRemoteHelp(starter, prompt, shell::RemoteHelp::AnyDesk);
    EXPECT_EQ(starter.started, QStringList{u"/usr/bin/anydesk"_s});
    starter.starts = false;
    prompt.expect(Box::Exclamation, u"Программа AnyDesk не запускается: /usr/bin/anydesk"_s);
    shell::startRemoteHelp(starter, prompt, shell::RemoteHelp::AnyDesk);
    EXPECT_TRUE(prompt.done());
}

TEST(ProgramDetails, NameEveryLibraryWithTheVersionThatRuns)
{
    const QString details = shell::programDetails();
    for (const shell::Component& component : shell::components()) {
        EXPECT_TRUE(details.contains(component.name + u' ' + component.version));
        EXPECT_TRUE(component.version.contains(u'.')) << component.name.toStdString();
    }
    EXPECT_FALSE(details.contains(qEnvironmentVariable("HOME")));
}

TEST(ProgramDetails, SayHowThisInstallationIsUpdated)
{
    EXPECT_TRUE(shell::updateText(u"/usr/bin/jurnal"_s).contains(u"sudo apt install"_s));
    EXPECT_TRUE(shell::updateText(u"/home/u/jurnal/build/bin/jurnal"_s).contains(u"git pull"_s));
}
