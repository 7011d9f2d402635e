#include "refbooks/forms/frmanaliz.h"
#include "refbooks/forms/frmcopyto.h"
#include "tests/refbooks/bookfixture.h"
#include "tests/shell_forms/accessible.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

class CopyDialog : public testing::Test
{
protected:
    void press(const char* button)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QString::fromLatin1(button)),
                          Qt::LeftButton);
    }

    shell::Wording wording;
    frmCopyTo dialog{{{1, u"ИС-11"_s}, {2, u"ИС-21"_s}, {3, u"ЭК-11"_s}},
                     {{1, u"1 п/г"_s}, {2, u"2 п/г"_s}},
                     wording};
    QListWidget* list = dialog.findChild<QListWidget*>(u"lstTargets"_s);
    QLineEdit* filter = dialog.findChild<QLineEdit*>(u"txtFilter"_s);
    QPushButton* yes = dialog.findChild<QPushButton*>(u"cmdYes"_s);
    QLabel* says = dialog.findChild<QLabel*>(u"lblPrompt"_s);
};

TEST_F(CopyDialog, TicksWhatTheFilterShows)
{
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(withoutAccessibleName(dialog), "");
    EXPECT_EQ(says->text(), u"Выберите учебные группы для копирования в них выбранной нагрузки."_s);
    QTest::keyClicks(filter, u"11"_s);
    QTest::keyClick(filter, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "nothing is chosen yet";
    press("cmdAll");
    QTest::keyClick(filter, Qt::Key_Backspace);
    QTest::keyClick(filter, Qt::Key_Backspace);
    list->setFocus();
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_Space); // unticks
    EXPECT_TRUE(
        says->text().startsWith(u"Нажмите \"Да\" для копирования или \"Нет\" для отмены."_s));
    EXPECT_TRUE(yes->isEnabled());
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.to(), CopyTo::Groups);
    EXPECT_EQ(dialog.chosen(), (std::vector<CopyTarget>{{3, u"ЭК-11"_s}}));
}

TEST_F(CopyDialog, TurnsToSubgroups)
{
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    press("cmdAll");
    QTest::sendKeyEvent(QTest::Click, &dialog, static_cast<Qt::Key>(u'П'), u"п"_s, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.to() == CopyTo::Subgroups; }));
    EXPECT_EQ(says->text(), u"Выберите подгруппы для копирования в них выбранной нагрузки."_s);
    EXPECT_FALSE(yes->isEnabled());
    EXPECT_TRUE(dialog.chosen().empty());
    press("cmdAll");
    EXPECT_EQ(dialog.chosen(), (std::vector<CopyTarget>{{1, u"1 п/г"_s}, {2, u"2 п/г"_s}}));
    press("cmdNone");
    EXPECT_TRUE(dialog.chosen().empty());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST(AnalysisDialog, CountsUpToTheDayTyped)
{
    SmallJournal file;
    const int group = file.group("ИС-21");
    const int maths = file.discipline("Математика");
    const int physics = file.discipline("Физика");
    const QDate first(2025, 9, 1), last(2026, 6, 30);
    const std::vector<std::int64_t> keys{file.workload(group, maths, first, last),
                                         file.workload(group, physics, first, last, 1)};
    file.database().execute("UPDATE SPNAGR SET CHSEM=4;");
    for (int day = 1; day <= 3; ++day)
        file.database().execute("UPDATE UROKI SET IDN=" + std::to_string(keys[0]) + " WHERE ID="
                                + std::to_string(file.lesson(group, maths, {2025, 9, day}, 1))
                                + ";");
    file.options(true, 2);
    shell::Session session;
    session.openJournal(file.release());

    QStringList written;
    frmAnaliz dialog(session, keys, [&](const sheets::Table& table) {
        for (int row = 0; row < table.rows; ++row)
            written << table.text(row, 3) + table.text(row, 6);
    });
    dialog.show();
    EXPECT_EQ(withoutAccessibleName(dialog), "");
    auto* date = dialog.findChild<QLineEdit*>(u"DT0"_s);
    auto* table = dialog.findChild<QTableView*>(u"tblHours"_s);
    const auto hours = [&] {
        QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdCopy"_s), Qt::LeftButton);
        return QGuiApplication::clipboard()->text();
    };
    const auto typed = [&](const QString& text) {
        date->setFocus();
        date->selectAll();
        QTest::keyClick(date, Qt::Key_Delete);
        QTest::keyClicks(date, text);
        QTest::keyClick(date, Qt::Key_Return);
    };
    typed(u"2.9.25"_s);
    const QString head = u"Преподаватель\tГруппа\tП/г\tДисциплина\tПлан\tПроведено\tОсталось\n"_s;
    const QString twoDays = head
                            + u"\tИС-21\t\tМатематика\t4\t4\t0\n\tИС-21\t1\tФизика\t4\t0\t4\n"
                              "Итого\t\t\t\t8\t4\t4\n"_s;
    EXPECT_EQ(hours(), twoDays);
    EXPECT_EQ(date->text(), u"02.09.2025"_s);
    typed(u"31.02"_s);
    EXPECT_EQ(hours(), twoDays) << "no day: the hours stay";
    typed({});
    EXPECT_EQ(hours(), head
                           + u"\tИС-21\t\tМатематика\t4\t6\t-2\n\tИС-21\t1\tФизика\t4\t0\t4\n"
                             "Итого\t\t\t\t8\t6\t2\n"_s);
    QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdExport"_s), Qt::LeftButton);
    EXPECT_EQ(written, (QStringList{u"Математика-2"_s, u"Физика4"_s, u"2"_s}));
    const QModelIndex over = table->model()->index(0, 6);
    EXPECT_EQ(over.data(Qt::ToolTipRole).toString(), u"Проведено больше, чем запланировано"_s);
    EXPECT_TRUE(dialog.isVisible()) << "Enter in the date line only counts";
}

} // namespace
