#include "shell/forms/frmarchive.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/support/smalljournal.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using shell::Archive;
using shell::frmArchive;

namespace {

class ArchiveDialog : public testing::Test
{
protected:
    ArchiveDialog()
    {
        const int group = journal.group("ИС-21");
        archive.add(journal.path(), journal.path(), u"перед изменениями"_s);
        journal.student(group, "Иванов", "Иван", "Иванович");
        now = now.addDays(1);
        archive.add(journal.path(), journal.path(), shell::ArchiveName::kManual);
    }
    void show(const QString& file)
    {
        dialog = std::make_unique<frmArchive>(archive, file, prompt, chooser);
        QSignalSpy shown(dialog.get(), &frmArchive::previewShown);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        if (dialog->chosen()) {
            ASSERT_TRUE(shown.wait());
        }
    }
    QTreeWidget* list() const { return dialog->findChild<QTreeWidget*>(u"lvCopies"_s); }
    QPushButton* button(const QString& name) const { return dialog->findChild<QPushButton*>(name); }
    QString preview() const { return dialog->findChild<QLabel*>(u"lblPreview"_s)->text(); }

    QTemporaryDir folder;
    QDateTime now{QDate(2026, 11, 21), QTime(14, 5, 33)};
    Archive archive{folder.filePath(u"Архив"_s), [this] { return now; }};
    SmallJournal journal;
    ScriptedPrompt prompt;
    ScriptedChooser chooser;
    std::unique_ptr<frmArchive> dialog;
};

} // namespace

TEST_F(ArchiveDialog, ListsCopiesAndTellsWhatTheSelectedOneHolds)
{
    show(journal.path());
    EXPECT_EQ(withoutAccessibleName(*dialog), "");
    ASSERT_EQ(list()->topLevelItemCount(), 2);
    EXPECT_EQ(list()->topLevelItem(0)->text(0), u"22.11.2026 14:05:33"_s);
    EXPECT_EQ(list()->topLevelItem(0)->text(2), u"по команде"_s);
    EXPECT_TRUE(preview().startsWith(u"Студентов: 1, пропусков: 0, оценок: 0."_s));
    QSignalSpy shown(dialog.get(), &frmArchive::previewShown);
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_FALSE(button(u"cmdRestore"_s)->isEnabled());
    ASSERT_TRUE(shown.wait());
    EXPECT_TRUE(preview().startsWith(u"Студентов: 0,"_s));
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->chosen()->name.reason, u"перед изменениями"_s);
}

TEST_F(ArchiveDialog, ADamagedCopyCannotBeChosen)
{
    QFile zip(archive.copies()[0].path);
    ASSERT_TRUE(zip.resize(zip.size() / 2));
    show(journal.path());
    EXPECT_TRUE(preview().startsWith(u"Копию нельзя прочитать. Ошибка: архив "_s))
        << preview().toStdString();
    EXPECT_FALSE(button(u"cmdRestore"_s)->isEnabled());
    EXPECT_TRUE(button(u"cmdDelete"_s)->isEnabled());
}

TEST_F(ArchiveDialog, DeletesACopyAfterAsking)
{
    show(journal.path());
    const QString asked = u"^Удалить копию от 22\\.11\\.2026 14:05:33 \\(.*\\)\\? Вернуть ее "
                          "будет нельзя\\.$"_s;
    prompt.expectMatching(Box::Question, asked, shell::Answer::No);
    QTest::mouseClick(button(u"cmdDelete"_s), Qt::LeftButton);
    EXPECT_EQ(archive.copies().size(), 2);
    prompt.expectMatching(Box::Question, asked, shell::Answer::Yes);
    QTest::mouseClick(button(u"cmdDelete"_s), Qt::LeftButton);
    EXPECT_EQ(archive.copies().size(), 1);
    EXPECT_EQ(list()->topLevelItemCount(), 1);
}

TEST_F(ArchiveDialog, ShowsTheFolderAndNothingForAnotherJournal)
{
    show(journal.path());
    QTest::mouseClick(button(u"cmdFolder"_s), Qt::LeftButton);
    EXPECT_EQ(chooser.revealed, archive.copies()[0].path);
    show(u"/где-то/другой.mdb"_s);
    EXPECT_EQ(list()->topLevelItemCount(), 0);
    EXPECT_FALSE(button(u"cmdRestore"_s)->isEnabled());
    EXPECT_FALSE(button(u"cmdDelete"_s)->isEnabled());
    show({});
    EXPECT_EQ(list()->topLevelItemCount(), 2);
}

TEST_F(ArchiveDialog, ClosingWhileACopyIsReadIsHarmless)
{
    for (int i = 0; i < 5; ++i) {
        frmArchive quick(archive, journal.path(), prompt, chooser);
        quick.show();
        QTest::qWait(145 + 5 * i); // about when the reading begins
    }
}
