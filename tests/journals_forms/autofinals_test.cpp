#include "journals/forms/frmavtor.h"

#include "journals/history.h"
#include "shell/session.h"
#include "tests/shell_forms/accessible.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>

using namespace journals;
using namespace Qt::StringLiterals;
using Grade = SmallJournal::Grade;

namespace {

// Study year 2024/25; two students with marks in October and November, the first of them with
// a final grade already.
class AutoFinalsDialog : public testing::Test
{
protected:
    AutoFinalsDialog()
    {
        const QDate first(2024, 9, 2), last(2025, 6, 30);
        file.studyYear(first, last);
        file.workload(group, maths, first, last);
        for (const int student : {ivanov, petrov}) {
            file.grade(student, maths, {2024, 10, 8}, 5);
            file.grade(student, maths, {2024, 11, 12}, 4);
        }
        file.grade(ivanov, maths, {2025, 6, 30}, 5, Grade::Final);
    }
    void open(shell::Wording wording = shell::Wording())
    {
        session = std::make_unique<shell::Session>(wording);
        session->openJournal(file.release());
        history = std::make_unique<History>(session->database());
        dialog = std::make_unique<FrmAvtoR>(*session, prompt, status, *history, GroupId{group},
                                            DisciplineId{maths}, Month{2024, 11});
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(dialog->focusWidget(), key, modifiers);
    }
    template <class Widget>
    Widget* named(const char* name)
    {
        return dialog->findChild<Widget*>(QLatin1String(name));
    }
    // The rows as "+Name|now|becomes|average|marks", "-" where not ticked.
    QStringList rows()
    {
        QStringList lines;
        auto* list = named<QTreeWidget>("lvResults");
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            const auto* item = list->topLevelItem(row);
            QStringList cells{(item->checkState(0) == Qt::Checked ? u'+' : u'-') + item->text(0)};
            for (int column = 2; column < list->columnCount(); ++column)
                cells << item->text(column);
            lines << cells.join(u'|');
        }
        return lines;
    }
    QStringList results()
    {
        return SmallJournal::grades(session->database()).filter(QRegularExpression(u"[ми]$"_s));
    }

    SmallJournal file;
    int group = file.group("ИС-21");
    int maths = file.discipline("Математика");
    int ivanov = file.student(group, "Иванов", "Иван", "Иванович");
    int petrov = file.student(group, "Петров", "Пётр", "Петрович");
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    std::unique_ptr<shell::Session> session;
    std::unique_ptr<History> history;
    std::unique_ptr<FrmAvtoR> dialog;
};

TEST_F(AutoFinalsDialog, ComputesUnticksAndWritesByKeysAlone)
{
    open();
    EXPECT_EQ(withoutAccessibleName(*dialog), "");
    EXPECT_EQ(named<QLabel>("lblResults")->text(),
              u"Рез&ультаты (пробел ставит и снимает отметку):"_s);
    EXPECT_EQ(dialog->windowTitle(), u"Параметры авторасчета"_s);
    EXPECT_FALSE(named<QPushButton>("cmdWrite")->isEnabled());
    press(Qt::Key_Return); // counts; the final grade is chosen from the start
    EXPECT_EQ(rows(), (QStringList{u"+Иванов Иван Иванович|5|4|4,50|2"_s,
                                   u"+Петров Пётр Петрович|-|4|4,50|2"_s}));
    EXPECT_EQ(named<QLabel>("lblSummary")->text(),
              u"Отмечено строк: 2 из 2; новых 1, изменено 1, без изменений 0, удалено 0."_s);
    EXPECT_EQ(results().size(), 1); // nothing is written yet

    press(Qt::Key_Space); // leaves the first student as he is: no question
    EXPECT_EQ(rows().front().front(), u'-');
    press(Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(results(), (QStringList{u"%1 %2 30.06.2025 5 и"_s.arg(ivanov).arg(maths),
                                      u"%1 %2 30.06.2025 4 и"_s.arg(petrov).arg(maths)}));
    EXPECT_EQ(status.last(),
              u"Автоматический расчет итогов: новых 1, изменено 0, без изменений 0, удалено 0."_s);
    EXPECT_EQ(history->undoText(), u"автоматический расчет итогов"_s);
    EXPECT_TRUE(history->undo());
    EXPECT_EQ(results().size(), 1);
}

TEST_F(AutoFinalsDialog, ChoicesEnableWhatTheyNeed)
{
    struct Case
    {
        std::vector<Qt::Key> keys;
        bool dates, month;
        QDate from, to; // as shown
        int rows;
    };
    const QDate begin{2024, 9, 2}, end{2025, 6, 30};
    const Case cases[] = {
        {{Qt::Key_Down}, true, false, begin, end, 4},
        {{Qt::Key_Down}, false, true, {2024, 11, 1}, {2024, 11, 30}, 2},
        {{Qt::Key_Up}, true, false, {2024, 11, 1}, {2024, 11, 30}, 2}, // goes on from the month
        {{Qt::Key_Down, Qt::Key_Down}, false, false, begin, end, 4},   // the study year
        {{Qt::Key_Up, Qt::Key_Up, Qt::Key_Up}, true, false, begin, end, 2},
    };
    open();
    for (const Case& each : cases) {
        for (const Qt::Key key : each.keys)
            press(key);
        EXPECT_EQ(named<QDateEdit>("DTPicker1")->isEnabled(), each.dates);
        EXPECT_EQ(named<QDateEdit>("DTPicker2")->isEnabled(), each.dates);
        EXPECT_EQ(named<QComboBox>("Combo1")->isEnabled(), each.month);
        EXPECT_EQ(named<QDateEdit>("DTPicker1")->date(), each.from);
        EXPECT_EQ(named<QDateEdit>("DTPicker2")->date(), each.to);
        EXPECT_TRUE(rows().isEmpty()); // what was computed before is gone
        QWidget* choice = dialog->focusWidget();
        press(Qt::Key_Return);
        EXPECT_EQ(rows().size(), each.rows);
        choice->setFocus();
    }
    prompt.expect(Box::Exclamation, u"Необходимо обязательно выбрать дисциплину."_s);
    named<QComboBox>("cboDiscipline")->setCurrentIndex(-1);
    press(Qt::Key_Return);
    EXPECT_TRUE(prompt.done());
    press(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(results().size(), 1);
}

TEST_F(AutoFinalsDialog, SaysClassAndSubjectInASchool)
{
    open(shell::Wording(shell::Institution::School));
    EXPECT_EQ(named<QLabel>("lblGroup")->text(), u"&Класс:"_s);
    EXPECT_EQ(named<QLabel>("lblDiscipline")->text(), u"Пре&дмет:"_s);
    EXPECT_EQ(named<QTreeWidget>("lvResults")->headerItem()->text(0), u"ФИО учащегося"_s);
}

} // namespace
