#include "app/windows.h"
#include "reports/forms/lview.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/shell_forms/modal.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRadioButton>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

// The main window with the documents that the program offers, on an empty journal.
class Reports : public MainWindow
{
protected:
    void startProgram()
    {
        window = std::make_unique<shell::frmMain>(
            shell::MainParts{session, settings, prompt, chooser, windows, pathOf(u"program"_s),
                             pathOf(u"user"_s), nullptr, nullptr, &starter});
        app::offerReports(windows,
                          {session, settings, prompt, window->statusLine(), chooser, starter,
                           [this] { return folder.path(); }},
                          *window);
        window->load(newJournal(u"a.mdb"_s));
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    // The option of the dialog that the command opens.
    QString presetBy(const QString& command)
    {
        QString preset;
        inNextDialog<QDialog>([&](QDialog& dialog) {
            for (const auto* option : dialog.findChildren<QRadioButton*>())
                if (option->isChecked() && option->objectName().startsWith(u"Op1_"_s))
                    preset += QString(option->text()).remove(u'&');
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        trigger(command);
        return preset;
    }
};

TEST_F(Reports, OpenTheirDialogWithTheOptionOfTheCommand)
{
    startProgram();
    session.signIn({2, u"Петрова"_s, shell::Role::User});
    const std::pair<QString, QString> commands[] = {
        {u"mnuotpos"_s, u"Ведомость посещаемости за месяц"_s},
        {u"mnuVedMess"_s, u"Ведомость успеваемости за месяц"_s},
        {u"mnuotusp"_s, u"Ведомость успеваемости по предметам"_s},
        {u"mnuotchProgul"_s, u"Отчет по прогулам по преподавателям/группам"_s},
        {u"mnuTab"_s, u"Табель успеваемости за месяц"_s},
        {u"mnuotitog"_s, u"Итоговый отчет"_s},
        {u"mnuotsvod"_s, u"Сводный отчет"_s},
        {u"keyRep"_s, u"Ведомость посещаемости за месяц"_s},
    };
    for (const auto& command : commands) {
        EXPECT_TRUE(action(command.first)->isEnabled()) << command.first.toStdString();
        EXPECT_EQ(presetBy(command.first), command.second) << command.first.toStdString();
    }
    trigger(u"mnuFileClose"_s);
    EXPECT_FALSE(action(u"mnuotpos"_s)->isEnabled());
}

TEST_F(Reports, LeadToTheRanking)
{
    startProgram();
    inNextDialog<QDialog>([&](QDialog& dialog) {
        dialog.findChild<QRadioButton*>(u"Op1_7"_s)->click();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    trigger(u"mnuotsvod"_s);
    const auto opened = window->findChild<QMdiArea*>(u"mdiArea"_s)->subWindowList();
    ASSERT_EQ(opened.size(), 1);
    EXPECT_NE(qobject_cast<reports::LView*>(opened.first()->widget()), nullptr);
    EXPECT_FALSE(action(u"mnuprint"_s)->isEnabled());
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_TRUE(prompt.done());
}

} // namespace
