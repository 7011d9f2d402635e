#include "app/windows.h"
#include "journals/forms/frmhpos.h"
#include "refbooks/catalogue.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/shell_forms/modal.h"

#include <QComboBox>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The main window with the windows that the program offers, on an empty journal.
class Books : public MainWindow
{
protected:
    void startProgram()
    {
        window = std::make_unique<shell::frmMain>(
            shell::MainParts{session, settings, prompt, chooser, windows, pathOf(u"program"_s),
                             pathOf(u"user"_s), nullptr, nullptr, &starter});
        app::offerWindows(windows, {session, settings, prompt, window->statusLine()});
        app::offerBooks(windows,
                        {session, settings, prompt, window->statusLine(), chooser,
                         [this] { return folder.path(); }},
                        *window);
        window->load(newJournal(u"a.mdb"_s));
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    std::int64_t add(std::string_view table,
                     const std::vector<std::pair<std::string, jet::Value>>& values)
    {
        return session.database().insert(table, values);
    }
    QList<QMdiSubWindow*> opened() const
    {
        return window->findChild<QMdiArea*>(u"mdiArea"_s)->subWindowList();
    }
    QWidget* active() const
    {
        return window->findChild<QMdiArea*>(u"mdiArea"_s)->activeSubWindow()->widget();
    }
};

TEST_F(Books, OpenFromTheMenuOnceEach)
{
    startProgram();
    qsizetype count = 0;
    for (int code = 0; code < refbooks::kBookCodes; ++code) {
        const auto& info = refbooks::catalogue()[static_cast<std::size_t>(code)];
        if (info.table.empty())
            continue;
        const QString command = QString::fromUtf8(info.command.data());
        ++count;
        for (int time = 0; time < 2; ++time) {
            trigger(command);
            const auto* list = qobject_cast<refbooks::frmSPRAV*>(active());
            ASSERT_NE(list, nullptr) << command.toStdString();
            EXPECT_EQ(static_cast<int>(list->book()), code);
            EXPECT_EQ(opened().size(), count);
        }
        EXPECT_FALSE(action(command)->statusTip().isEmpty()) << command.toStdString();
    }
    EXPECT_EQ(count, 18);
    session.signIn({2, u"Петрова"_s, shell::Role::User});
    EXPECT_FALSE(action(u"mnuSprUsers"_s)->isEnabled());
    EXPECT_TRUE(action(u"mnuSprKaf"_s)->isEnabled());
    trigger(u"mnuFileClose"_s);
    EXPECT_EQ(opened().size(), 0);
}

TEST_F(Books, ShowTheRowsOfAnImportedList)
{
    startProgram();
    chooser.answer = pathOf(u"учителя.csv"_s);
    QFile file(chooser.answer);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(u"ФИО;Таб. №\nБелов Б.Б.;7\nАнина А.А.;8\n"_s.toUtf8());
    file.close();
    trigger(u"mnuprepod"_s);
    inNextDialog<QDialog>([](QDialog& dialog) {
        QTest::keyClick(&dialog, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QTest::keyClick(active()->findChild<QWidget*>(u"lvList"_s), Qt::Key_I, Qt::ControlModifier);
    const auto* rows = active()->findChild<QTableView*>(u"lvList"_s)->model();
    ASSERT_EQ(rows->rowCount(), 2);
    EXPECT_EQ(rows->index(0, 1).data(), u"Анина А.А."_s);
}

TEST_F(Books, LeadFromTheWorkloadToTheAttendanceJournal)
{
    settings.setNumber(shell::Setting::JournalMonth, 11);
    settings.setNumber(shell::Setting::JournalYear, 2022);
    settings.setNumber(shell::Setting::WorkloadListItem, 0);
    startProgram();
    const auto teacher = add("SPPREP", {{"FAMIO", "Белов Б.Б."}});
    add("SPGRUP", {{"NAIM", "А-1"}});
    const auto group = add("SPGRUP", {{"NAIM", "Б-1"}});
    for (const char* name : {"Алгебра", "Физика"})
        add("SPNAGR", {{"IDP", teacher},
                       {"IDG", group},
                       {"IDD", add("SPPRED", {{"NAIM", name}})},
                       {"DATNN", jet::DateTime::of(2022, 9, 1)},
                       {"DATKK", jet::DateTime::of(2022, 12, 30)}});
    trigger(u"mnunagr"_s);
    QTest::keyClick(active()->findChild<QWidget*>(u"lvList"_s), Qt::Key_Down);
    active()->findChild<QAction*>(u"keyJur"_s)->trigger();
    auto* journal = qobject_cast<journals::frmHPos*>(active());
    ASSERT_NE(journal, nullptr);
    EXPECT_EQ(journal->findChild<QComboBox*>(u"cboGroup"_s)->currentText(), u"Б-1"_s);
    EXPECT_EQ(journal->findChild<QComboBox*>(u"cboDiscipline"_s)->currentText(), u"Физика"_s);
}

} // namespace
