// Copying workload rows to groups and to subgroups.
#include "refbooks/workloadcopy.h"

#include "jet/error.h"
#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using refbooks::CopyTarget;
using refbooks::CopyTo;
using shell::Answer;

namespace {

class WorkloadCopying : public BookFixture
{
protected:
    explicit WorkloadCopying(shell::Institution institution = shell::Institution::College)
        : BookFixture(institution)
        , firstGroup(add("SPGRUP", {{"NAIM", "ИС-21"}}))
        , secondGroup(add("SPGRUP", {{"NAIM", "Группа \"Б\""}}))
    {}

    // A row with a value of its own in every field.
    std::int64_t workload(const Values& more = {})
    {
        Values values = {{"IDP", 5},
                         {"IDG", 901},
                         {"IDD", 6},
                         {"IDT", 7},
                         {"CHSEM", 34},
                         {"DATNN", jet::DateTime::of(2022, 9, 1)},
                         {"DATKK", jet::DateTime::of(2022, 12, 30)},
                         {"CH", 2},
                         {"IDGG", 0},
                         {"MEMO", "часы \"лабораторные\"; №1"},
                         {"PRAKT", true},
                         {"WITHD", true},
                         {"IDZ", 8},
                         {"NO_CALC", true},
                         {"IDA", 9},
                         {"PO_ZAM", true}};
        values.insert(values.end(), more.begin(), more.end());
        return add("SPNAGR", values);
    }
    int copy(const std::vector<std::int64_t>& keys, CopyTo to,
             const std::vector<CopyTarget>& targets)
    {
        return refbooks::WorkloadCopy(session, prompt, status).copy(keys, to, targets);
    }
    static QString question(const QString& kind, const QString& names)
    {
        return u"Сейчас произойдет копирование выделенных Вами строк нагрузки на "_s + kind
               + u": "_s + names
               + u". После нажатия \"Да\" это будет невозможно отменить. Копировать?"_s;
    }
    // Group, subgroup and link of each row in the order of the keys.
    QStringList placed() { return rows("SELECT IDG, IDGG, IDNN FROM SPNAGR ORDER BY IDN"); }
    // How many different rows there are beyond key, group, subgroup and link.
    int kinds()
    {
        return static_cast<int>(
            rows("SELECT DISTINCT IDP, IDD, IDT, CHSEM, DATNN, DATKK, CH, MEMO, PRAKT, WITHD, "
                 "IDZ, NO_CALC, IDA, PO_ZAM FROM SPNAGR")
                .size());
    }

    std::int64_t firstGroup;
    std::int64_t secondGroup;
};

class SchoolWorkloadCopying : public WorkloadCopying
{
protected:
    SchoolWorkloadCopying()
        : WorkloadCopying(shell::Institution::School)
    {}
};

} // namespace

TEST_F(WorkloadCopying, CopiesToGroupsStandAlone)
{
    const auto linked = workload({{"IDNN", 1}});
    const auto free = workload({{"IDGG", 2}});
    const auto targets =
        refbooks::WorkloadCopy(session, prompt, status).targets(CopyTo::Groups, {});
    ASSERT_EQ(targets, (std::vector<CopyTarget>{{secondGroup, u"Группа \"Б\""_s},
                                                {firstGroup, u"ИС-21"_s}}));
    expectQuestion(question(u"учебные группы"_s, u"Группа \"Б\", ИС-21"_s));
    prompt.expect(Box::Information, u"Создано строк: 4."_s);
    EXPECT_EQ(copy({linked, free}, CopyTo::Groups, targets), 4);
    EXPECT_EQ(status.texts, (QStringList{u"Идет копирование строк..."_s, u"Готово"_s}));
    reopen();
    const QString first = QString::number(firstGroup), second = QString::number(secondGroup);
    EXPECT_EQ(placed(), (QStringList{u"901 0 1"_s, u"901 2 -"_s, second + u" 0 -"_s,
                                     first + u" 0 -"_s, second + u" 2 -"_s, first + u" 2 -"_s}));
    EXPECT_EQ(kinds(), 1);
}

TEST_F(WorkloadCopying, CopiesToSubgroupsAreLinkedWithTheirSource)
{
    const auto free = workload();
    const auto linked = workload({{"IDNN", 77}});
    workload({{"IDNN", 77}});
    expectQuestion(question(u"подгруппы"_s, u"1 п/г, 2 п/г"_s));
    prompt.expect(Box::Information, u"Создано строк: 4."_s);
    EXPECT_EQ(copy({free, linked}, CopyTo::Subgroups, {{1, u"1 п/г"_s}, {2, u"2 п/г"_s}}), 4);
    reopen();
    const QString own = QString::number(free);
    EXPECT_EQ(placed(),
              (QStringList{u"901 0 "_s + own, u"901 0 77"_s, u"901 0 77"_s, u"901 1 "_s + own,
                           u"901 2 "_s + own, u"901 1 77"_s, u"901 2 77"_s}));
    EXPECT_EQ(kinds(), 1);
}

TEST_F(WorkloadCopying, CopiesDoNotJoinRowsThatTheirSourceHasLeft)
{
    const auto source = workload();
    const auto left = workload({{"IDNN", source}});
    workload({{"IDNN", source}});
    expectQuestion(question(u"подгруппы"_s, u"1 п/г"_s));
    prompt.expect(Box::Information, u"Создано строк: 1."_s);
    EXPECT_EQ(copy({source}, CopyTo::Subgroups, {{1, u"1 п/г"_s}}), 1);
    reopen();
    const QString copied = QString::number(left + 2), old = QString::number(source);
    EXPECT_EQ(placed(), (QStringList{u"901 0 "_s + copied, u"901 0 "_s + old, u"901 0 "_s + old,
                                     u"901 1 "_s + copied}));
}

TEST_F(WorkloadCopying, NoCopiesNothing)
{
    const auto key = workload();
    expectQuestion(question(u"учебные группы"_s, u"ИС-21"_s), Answer::No);
    EXPECT_EQ(copy({key}, CopyTo::Groups, {{firstGroup, u"ИС-21"_s}}), 0);
    EXPECT_EQ(status.texts, (QStringList{u"Строки не были скопированы."_s, u"Готово"_s}));

    // With nothing chosen nothing is asked, and no link of the source alone begins.
    EXPECT_EQ(copy({key}, CopyTo::Subgroups, {}), 0);
    EXPECT_EQ(copy({}, CopyTo::Groups, {{firstGroup, u"ИС-21"_s}}), 0);
    reopen();
    EXPECT_EQ(placed(), QStringList{u"901 0 -"_s});
}

TEST_F(WorkloadCopying, UsersDoNotCopy)
{
    const auto key = workload();
    signIn(shell::Role::User);
    prompt.expect(Box::Exclamation,
                  u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s);
    EXPECT_EQ(copy({key}, CopyTo::Groups, {{firstGroup, u"ИС-21"_s}}), 0);
    EXPECT_EQ(placed().size(), 1);
}

TEST_F(WorkloadCopying, FullDiskLeavesNoLinkOfTheSourceAlone)
{
    if (!FailingWrites::possible())
        GTEST_SKIP() << "no file size limit here";
    const auto key = workload();
    expectQuestion(question(u"подгруппы"_s, u"1 п/г"_s));
    {
        const FailingWrites noRoom;
        EXPECT_THROW(copy({key}, CopyTo::Subgroups, {{1, u"1 п/г"_s}}), jet::Error);
    }
    reopen();
    EXPECT_EQ(placed(), QStringList{u"901 0 -"_s});
}

TEST_F(WorkloadCopying, RowThatFailsHalfwayLeavesNoCopies)
{
    const auto key = workload();
    expectQuestion(question(u"подгруппы"_s, u"1 п/г, 300 п/г"_s));
    const std::vector<CopyTarget> targets = {{1, u"1 п/г"_s}, {300, u"300 п/г"_s}}; // no byte
    EXPECT_THROW(copy({key}, CopyTo::Subgroups, targets), jet::Error);
    reopen();
    EXPECT_EQ(placed(), QStringList{u"901 0 -"_s});
}

TEST_F(WorkloadCopying, SubgroupsAreThoseOfTheGroupAndAtLeastTwo)
{
    const auto key = workload({{"IDG", firstGroup}});
    refbooks::WorkloadCopy copying(session, prompt, status);
    const std::vector keys = {key};
    const auto count = [&] { return copying.targets(CopyTo::Subgroups, keys).size(); };
    EXPECT_EQ(count(), 2U);
    add("SPSTUD", {{"IDG", secondGroup}, {"IDGG", 5}});
    EXPECT_EQ(count(), 2U);
    add("SPSTUD", {{"IDG", firstGroup}, {"IDGG", 3}});
    ASSERT_EQ(count(), 3U);
    EXPECT_EQ(copying.targets(CopyTo::Subgroups, keys)[2], (CopyTarget{3, u"3 п/г"_s}));
    add("SPSTUD", {{"IDG", firstGroup}, {"IDGG", 4000}}); // a slip, not 4,000 subgroups
    EXPECT_EQ(count(), 9U);
}

TEST_F(WorkloadCopying, ChooserTellsWhatToDo)
{
    const shell::Wording& wording = session.wording();
    EXPECT_EQ(refbooks::copyChoicePrompt(CopyTo::Groups, wording),
              u"Выберите учебные группы для копирования в них выбранной нагрузки."_s);
    EXPECT_EQ(refbooks::copyConfirmPrompt(),
              u"Нажмите \"Да\" для копирования или \"Нет\" для отмены."_s);
}

TEST_F(SchoolWorkloadCopying, SpeaksOfClassesButKeepsTheirNames)
{
    const auto key = workload();
    EXPECT_EQ(refbooks::copyChoicePrompt(CopyTo::Groups, session.wording()),
              u"Выберите классы для копирования в них выбранной нагрузки."_s);
    EXPECT_EQ(refbooks::copyChoicePrompt(CopyTo::Subgroups, session.wording()),
              u"Выберите подгруппы для копирования в них выбранной нагрузки."_s);
    expectQuestion(question(u"классы"_s, u"Группа \"Б\""_s), Answer::No);
    EXPECT_EQ(copy({key}, CopyTo::Groups, {{secondGroup, u"Группа \"Б\""_s}}), 0);
    expectQuestion(question(u"подгруппы"_s, u"1 п/г"_s), Answer::No);
    EXPECT_EQ(copy({key}, CopyTo::Subgroups, {{1, u"1 п/г"_s}}), 0);
}
