// The commands that only the workload's list has.
#include "tests/refbooks_forms/listwindow.h"

#include "refbooks/forms/frmanaliz.h"
#include "refbooks/forms/frmcopyto.h"

#include <QListWidget>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace refbooks;
using shell::Answer;

namespace {

class WorkloadWindow : public ListWindow
{
protected:
    WorkloadWindow()
    {
        for (const char* name : {"Белов Б.Б.", "Волков А.А."})
            teachers.push_back(add("SPPREP", {{"FAMIO", name}}));
        for (const char* name : {"А-1", "Б-1", "В-1"})
            groups.push_back(add("SPGRUP", {{"NAIM", name}}));
        discipline = add("SPPRED", {{"NAIM", "Физика"}});
        first = workload(teachers[0], groups[0]);
        second = workload(teachers[0], groups[1], 2);
        workload(teachers[1], groups[0]);
    }
    std::int64_t workload(std::int64_t teacher, std::int64_t group, int subgroup = 0)
    {
        return add("SPNAGR", {{"IDP", teacher},
                              {"IDG", group},
                              {"IDD", discipline},
                              {"IDGG", subgroup},
                              {"CHSEM", 72}});
    }
    // Chooses the first teacher.
    void openOnTeacher()
    {
        open(Book::Workload);
        EXPECT_EQ(shown(), QStringList());
        named<QComboBox>(u"cboSecond"_s)->setFocus();
        press(Qt::Key_Home);
        list->setFocus();
        ASSERT_EQ(shown().size(), 2);
    }
    QStringList stored()
    {
        reopen();
        return rows("SELECT IDP, IDG, IDGG, IDNN FROM SPNAGR ORDER BY IDN;");
    }

    std::vector<std::int64_t> teachers, groups;
    std::int64_t discipline = 0, first = 0, second = 0;
};

TEST_F(WorkloadWindow, NarrowsToATeacherAGroupOrARoom)
{
    openOnTeacher();
    EXPECT_EQ(window->windowTitle(), u"Нагрузка преподавателя"_s);
    auto* kind = named<QComboBox>(u"cboFirst"_s);
    kind->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(window->windowTitle(), u"Нагрузка группы"_s);
    EXPECT_EQ(shown(), QStringList());
    named<QComboBox>(u"cboSecond"_s)->setFocus();
    press(Qt::Key_Home);
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(selected(0), QStringList{u"Белов Б.Б."_s});
    open(Book::Workload);
    EXPECT_EQ(window->windowTitle(), u"Нагрузка группы"_s) << "as it was left";
    EXPECT_EQ(named<QComboBox>(u"cboSecond"_s)->currentText(), u"А-1"_s);
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(WorkloadWindow, LinksAndCopiesTheSelectedRows)
{
    openOnTeacher();
    press(Qt::Key_A, Qt::ControlModifier);
    expectQuestion(u"Связать выделенные нагрузки?"_s);
    press(Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(status.last(), u"Связано нагрузок: 2"_s);
    EXPECT_EQ(shown()[1].section(u'|', 8, 8), QString::number(first));
    press(Qt::Key_Home);
    inNextDialog<frmCopyTo>([](frmCopyTo& dialog) {
        dialog.findChild<QListWidget*>()->item(2)->setCheckState(Qt::Checked);
        QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdYes"_s), Qt::LeftButton);
    });
    expectQuestion(u"Сейчас произойдет копирование выделенных Вами строк нагрузки на учебные "
                   "группы: В-1. После нажатия \"Да\" это будет невозможно отменить. "
                   "Копировать?"_s);
    prompt.expect(Box::Information, u"Создано строк: 1."_s);
    click(u"keyCopyTo"_s);
    EXPECT_EQ(shown().size(), 3);
    const auto line = [](auto teacher, auto group, int subgroup, auto link) {
        return u"%1 %2 %3 %4"_s.arg(teacher).arg(group).arg(subgroup).arg(link);
    };
    const QStringList found = stored();
    EXPECT_EQ(found[0], line(teachers[0], groups[0], 0, first));
    EXPECT_EQ(found[1], line(teachers[0], groups[1], 2, first));
    EXPECT_TRUE(found[3].startsWith(u"%1 %2 0"_s.arg(teachers[0]).arg(groups[2])));
}

TEST_F(WorkloadWindow, OpensTheJournalAndTheAnalysisOfItsRows)
{
    openOnTeacher();
    press(Qt::Key_Down);
    click(u"keyJur"_s);
    ASSERT_EQ(attendance.size(), 1U);
    EXPECT_EQ(attendance[0],
              (WorkloadPlace{static_cast<int>(groups[1]), 2, static_cast<int>(discipline)}));
    inNextDialog<frmAnaliz>([](frmAnaliz& dialog) {
        EXPECT_EQ(dialog.findChild<QTableView*>()->model()->index(1, 1).data().toString(),
                  u"Б-1"_s);
        dialog.reject();
    });
    click(u"keyAnl"_s);
}

TEST_F(WorkloadWindow, DeletesAllOfItAfterThreeQuestions)
{
    openOnTeacher();
    for (const QString& question :
         {u"Удалить всю нагрузку?"_s,
          u"Будут удалены ВСЕ записи у ВСЕХ преподавателей и групп. Вы уверены?"_s,
          u"Подтвердите удаление нагрузки. Удаляем?"_s})
        expectQuestion(question);
    click(u"keyAllDay"_s);
    EXPECT_EQ(shown(), QStringList());
    EXPECT_EQ(stored(), QStringList());
}

TEST_F(WorkloadWindow, BeginsANewRowWithTheTeacherChosen)
{
    openOnTeacher();
    inDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QComboBox*>(u"IDP"_s)->currentText(), u"Белов Б.Б."_s);
        dialog.reject();
    });
    press(Qt::Key_Insert);
}

} // namespace
