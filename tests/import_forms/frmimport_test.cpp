// The import of a list from choosing the file to the rows in the book, by keys and clicks.

#include "import/forms/importlist.h"
#include "shell/settings.h"
#include "tests/refbooks/bookfixture.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/scriptedchooser.h"

#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class ListWindow : public BookFixture
{
protected:
    bool open(refbooks::Book book, const QByteArray& text, std::function<void(QDialog&)> steps)
    {
        chooser.answer = folder.filePath(u"список.csv"_s);
        QFile file(chooser.answer);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        inNextDialog<QDialog>([steps = std::move(steps)](QDialog& dialog) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
            steps(dialog);
        });
        refbooks::ListFilter filter;
        filter.key = 1;
        return imports::importList({session, settings, prompt, status, chooser}, book, filter,
                                   nullptr);
    }
    static void click(QDialog& dialog, const QString& name)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(name), Qt::LeftButton);
    }
    static QString counts(QDialog& dialog)
    {
        return dialog.findChild<QLabel*>(u"Counts"_s)->text();
    }

    QTemporaryDir folder;
    shell::Settings settings{folder.filePath(u"settings.ini"_s)};
    ScriptedChooser chooser;
};

TEST_F(ListWindow, ImportsStudentsIntoTheChosenGroupAndTakesThemBack)
{
    add("SPGRUP", {{"NAIM", "ИС-21"}});
    const std::string students = "SELECT FAM, IM, TEL FROM SPSTUD WHERE IDG = 1";
    const bool changed =
        open(refbooks::Book::Students, u"ФИО;Связь\nИванов Иван;12\nПетров;34\n"_s.toUtf8(),
             [&](QDialog& dialog) {
                 EXPECT_EQ(withoutAccessibleName(dialog), "");
                 EXPECT_EQ(counts(dialog),
                           u"Будет: добавлено 1, изменено 0, пропущено 0, отклонено 1."_s);
                 auto* columns = dialog.findChild<QTableWidget*>(u"Columns"_s);
                 auto* box = qobject_cast<QComboBox*>(columns->cellWidget(1, 2));
                 box->setFocus();
                 for (int i = 0; i < 15 && box->currentText() != u"Телефон"_s; ++i)
                     QTest::keyClick(box, Qt::Key_Down);
                 EXPECT_EQ(box->currentText(), u"Телефон"_s);
                 EXPECT_EQ(rows(students), QStringList()) << "nothing before the button";
                 QTest::keyClick(&dialog, Qt::Key_Return);
                 EXPECT_EQ(counts(dialog),
                           u"Выполнено: добавлено 1, изменено 0, пропущено 0, отклонено 1."_s);
                 EXPECT_EQ(rows(students), QStringList{u"Иванов Иван 12"_s});
                 chooser.answer = folder.filePath(u"отчет.txt"_s);
                 click(dialog, u"SaveReport"_s);
                 click(dialog, u"Undo"_s);
                 EXPECT_EQ(rows(students), QStringList());
                 click(dialog, u"Run"_s);
                 QTest::keyClick(&dialog, Qt::Key_Escape);
             });
    EXPECT_TRUE(changed);
    reopen();
    EXPECT_EQ(rows(students), QStringList{u"Иванов Иван 12"_s});
    QFile report(folder.filePath(u"отчет.txt"_s));
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    EXPECT_TRUE(report.readAll().contains(u"Строка 3 (Петров): отклонена."_s.toUtf8()));
}

TEST_F(ListWindow, RemembersWhereColumnsWent)
{
    const auto fieldOf = [](QDialog& dialog, int column) {
        auto* columns = dialog.findChild<QTableWidget*>(u"Columns"_s);
        return qobject_cast<QComboBox*>(columns->cellWidget(column, 2));
    };
    EXPECT_TRUE(
        open(refbooks::Book::Departments, u"Кто\nФизика\n"_s.toUtf8(), [&](QDialog& dialog) {
            QTest::keyClick(fieldOf(dialog, 0), Qt::Key_Down);
            click(dialog, u"Run"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        }));
    EXPECT_TRUE(open(refbooks::Book::Departments, u"Кто\nХимия\n"_s.toUtf8(), [&](QDialog& dialog) {
        EXPECT_EQ(fieldOf(dialog, 0)->currentData().toInt(), 0);
        click(dialog, u"Run"_s);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }));
    EXPECT_EQ(rows("SELECT NAIM FROM SPKAF ORDER BY NAIM"), (QStringList{u"Физика"_s, u"Химия"_s}));
}

TEST_F(ListWindow, ChangesNothingWhenClosedOrRefused)
{
    EXPECT_FALSE(
        open(refbooks::Book::Departments, u"Кто\nФизика\n"_s.toUtf8(), [](QDialog& dialog) {
            EXPECT_FALSE(dialog.findChild<QPushButton*>(u"Run"_s)->isEnabled());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        }));
    QFile(folder.filePath(u"список.csv"_s)).remove();
    prompt.expectMatching(Box::Critical, u"^Файл не был открыт\\. Ошибка: .*"_s);
    EXPECT_FALSE(imports::importList({session, settings, prompt, status, chooser},
                                     refbooks::Book::Departments, {}, nullptr));
}

} // namespace
