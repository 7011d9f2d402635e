#include "journals/forms/frmhpos.h"

#include "shell/session.h"
#include "shell/settings.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <QComboBox>
#include <QPrintPreviewDialog>
#include <QTemporaryDir>
#include <QTest>

using namespace journals;
using namespace Qt::StringLiterals;
using shell::JournalAction;
using shell::Setting;

namespace {

TEST(JournalPrint, ShowsThePreviewOfWhatTheWindowShows)
{
    SmallJournal file;
    const int group = file.group("ИС-21");
    file.student(group, "Иванов", "Иван", "Иванович");
    file.workload(group, file.discipline("Математика"), {2022, 11, 1}, {2022, 11, 30});
    const QTemporaryDir folder;
    shell::Settings settings(folder.filePath(u"settings.ini"_s));
    settings.setNumber(Setting::JournalMonth, 11);
    settings.setNumber(Setting::JournalYear, 2022);
    shell::Session session;
    session.openJournal(file.release());
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    frmHPos window({session, settings, prompt, status});
    window.show();
    EXPECT_FALSE(window.available(JournalAction::Print)); // nothing is shown yet
    window.run(JournalAction::Print);

    window.findChild<QComboBox*>(u"cboGroup"_s)->setCurrentIndex(0);
    ASSERT_TRUE(window.available(JournalAction::Print)) << status.last().toStdString();
    QString title;
    inNextDialog<QPrintPreviewDialog>([&](QPrintPreviewDialog& preview) {
        title = preview.windowTitle();
        QTest::keyClick(&preview, Qt::Key_Escape);
    });
    window.run(JournalAction::Print);
    EXPECT_TRUE(title.contains(u"Журнал посещаемости Группа ИС-21"_s)) << title.toStdString();
    EXPECT_TRUE(title.contains(u"ноябрь 2022"_s));
}

} // namespace
