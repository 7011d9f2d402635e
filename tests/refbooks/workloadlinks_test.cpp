// Linking workload rows and taking them apart: the questions in their order, then the links.
#include "refbooks/workloadlinks.h"

#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using shell::Answer;

namespace {

class WorkloadLinking : public BookFixture
{
protected:
    explicit WorkloadLinking(shell::Institution institution = shell::Institution::College)
        : BookFixture(institution)
    {}

    std::int64_t workload(const Values& more = {})
    {
        Values values = {{"CHSEM", 34},
                         {"DATNN", jet::DateTime::of(2022, 9, 1)},
                         {"DATKK", jet::DateTime::of(2022, 12, 30)}};
        values.insert(values.end(), more.begin(), more.end());
        return add("SPNAGR", values);
    }
    std::vector<std::int64_t> workloads(int count)
    {
        std::vector<std::int64_t> keys;
        keys.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            keys.push_back(workload());
        return keys;
    }
    void setLink(const std::vector<std::int64_t>& keys, std::int64_t link)
    {
        for (const auto key : keys)
            session.database().execute("UPDATE SPNAGR SET IDNN = " + std::to_string(link)
                                       + " WHERE IDN = " + std::to_string(key));
    }
    bool linkOrUnlink(const std::vector<std::int64_t>& keys)
    {
        return refbooks::WorkloadLinks(session, prompt, status).linkOrUnlink(keys);
    }
    // The link number of every row in the order of the keys, as the file holds it.
    std::vector<std::int64_t> stored()
    {
        reopen();
        std::vector<std::int64_t> links;
        for (const auto& row : session.database().rows("SELECT IDNN FROM SPNAGR ORDER BY IDN"))
            links.push_back(row[0].toInteger());
        return links;
    }
    void confirmLink() { expectQuestion(u"Связать выделенные нагрузки?"_s); }

    using Links = std::vector<std::int64_t>;
    const QString nothingToDo =
        u"Выделите строки, которые необходимо связать, либо одну или несколько ранее связанных "
        "строк, которые нужно рассоединить."_s;
    const QString different =
        u"Связывание не выполнено, так как связываемые нагрузки должны иметь одинаковые параметры "
        "(количество часов, период выполнения и др.), за исключением параметров: преподаватель, "
        "группа, подгруппа, дисциплина. Занятия всех связанных нагрузок проводятся в одной "
        "аудитории в одно и то же время."_s;
    const QString severalLinks =
        u"Выделено несколько связанных в разные связи нагрузок. Связать воедино?"_s;
    const QString lessonsWarning =
        u"По выделенным нагрузкам имеются назначенные занятия (см. Журнал занятий). %1 нагрузок "
        "может привести к нежелательным последствиям, например, к неправильному подсчету "
        "количества выполненных часов. Рекомендуется в справочнике нагрузки создать "
        "дополнительные аналогичные нагрузки с другими параметрами связывания. Продолжить?"_s;
};

class SchoolWorkloadLinking : public WorkloadLinking
{
protected:
    SchoolWorkloadLinking()
        : WorkloadLinking(shell::Institution::School)
    {}
};

} // namespace

TEST_F(WorkloadLinking, NeedsRowsToLinkOrALink)
{
    const auto keys = workloads(1);
    for (const auto& selection : {std::vector<std::int64_t>(), keys}) {
        prompt.expect(Box::Exclamation, nothingToDo);
        EXPECT_FALSE(linkOrUnlink(selection));
    }
    EXPECT_TRUE(status.texts.isEmpty());
}

TEST_F(WorkloadLinking, TeacherGroupSubgroupAndDisciplineMayDiffer)
{
    const auto first = workload({{"IDP", 1}, {"IDG", 1}, {"IDGG", 0}, {"IDD", 1}});
    const auto second = workload({{"IDP", 2}, {"IDG", 2}, {"IDGG", 2}, {"IDD", 2}});
    workload();
    confirmLink();
    EXPECT_TRUE(linkOrUnlink({second, first}));
    EXPECT_EQ(status.texts, QStringList{u"Связано нагрузок: 2"_s});
    EXPECT_EQ(stored(), (Links{second, second, 0})); // the row selected first gives the number
}

TEST_F(WorkloadLinking, EveryOtherParameterMustBeEqual)
{
    const Values differences = {{"IDT", 1},        {"IDA", 1},
                                {"CHSEM", 36},     {"DATNN", jet::DateTime::of(2022, 9, 2)},
                                {"NO_CALC", true}, {"PRAKT", true},
                                {"WITHD", true},   {"DATKK", jet::DateTime::of(2023, 6, 1)},
                                {"PO_ZAM", true}};
    const auto first = workload();
    const auto second = workload();
    for (const auto& difference : differences) {
        SCOPED_TRACE(difference.first);
        Values values = {{"CHSEM", 34},
                         {"DATNN", jet::DateTime::of(2022, 9, 1)},
                         {"DATKK", jet::DateTime::of(2022, 12, 30)}};
        std::erase_if(values, [&](const auto& value) { return value.first == difference.first; });
        values.push_back(difference);
        const auto other = add("SPNAGR", values);
        confirmLink();
        prompt.expect(Box::Exclamation, different);
        EXPECT_FALSE(linkOrUnlink({first, second, other}));
    }
    EXPECT_EQ(stored(), Links(2 + differences.size(), 0)); // not even the equal ones
}

TEST_F(WorkloadLinking, NoRoomIsNoRoomHoweverItIsStored)
{
    const auto empty = workload();
    const auto zero = workload({{"IDA", 0}, {"IDT", 0}});
    confirmLink();
    EXPECT_TRUE(linkOrUnlink({empty, zero}));
    EXPECT_EQ(stored(), (Links{empty, empty}));
}

TEST_F(WorkloadLinking, FreeRowJoinsTheLinkThatIsThere)
{
    const auto keys = workloads(4);
    setLink({keys[1], keys[2]}, keys[1]);
    confirmLink();
    EXPECT_TRUE(linkOrUnlink({keys[0], keys[2]})); // the free row selected first
    EXPECT_EQ(status.last(), u"Связано нагрузок: 3"_s);
    EXPECT_EQ(stored(), (Links{keys[1], keys[1], keys[1], 0}));
}

TEST_F(WorkloadLinking, TwoLinksBecomeOneWithAllTheirRows)
{
    const auto keys = workloads(6);
    setLink({keys[0], keys[1]}, keys[0]);
    setLink({keys[2], keys[3], keys[4]}, keys[2]);
    confirmLink();
    expectQuestion(severalLinks, Answer::No);
    EXPECT_FALSE(linkOrUnlink({keys[3], keys[1]}));
    EXPECT_EQ(status.last(), u"Операция отменена."_s);

    confirmLink();
    expectQuestion(severalLinks);
    EXPECT_TRUE(linkOrUnlink({keys[3], keys[1], keys[5]}));
    EXPECT_EQ(status.last(), u"Связано нагрузок: 6"_s);
    EXPECT_EQ(stored(), Links(6, keys[2])); // the number of the link met first
}

TEST_F(WorkloadLinking, EveryNoCancels)
{
    const auto keys = workloads(2);
    expectQuestion(u"Связать выделенные нагрузки?"_s, Answer::No);
    EXPECT_FALSE(linkOrUnlink(keys));
    add("UROKI", {{"IDN", keys[1]}});
    confirmLink();
    expectQuestion(lessonsWarning.arg(u"Связывание"_s), Answer::No);
    EXPECT_FALSE(linkOrUnlink(keys));
    EXPECT_EQ(status.texts, (QStringList{u"Операция отменена."_s, u"Операция отменена."_s}));
    EXPECT_EQ(stored(), (Links{0, 0}));

    setLink(keys, keys[0]);
    expectQuestion(u"Рассоединить связанные нагрузки?"_s);
    expectQuestion(lessonsWarning.arg(u"Рассоединение"_s), Answer::No);
    EXPECT_FALSE(linkOrUnlink(keys));
    expectQuestion(u"Отсоединить нагрузку от связанных нагрузок?"_s, Answer::No);
    EXPECT_FALSE(linkOrUnlink({keys[0]}));
    EXPECT_EQ(status.last(), u"Операция отменена."_s);
    EXPECT_EQ(stored(), (Links{keys[0], keys[0]}));
}

TEST_F(WorkloadLinking, LessonsAreWarnedOfBeforeTheParametersAreCompared)
{
    const auto first = workload();
    const auto second = workload({{"IDA", 3}});
    add("UROKI", {{"IDN", first}});
    confirmLink();
    expectQuestion(lessonsWarning.arg(u"Связывание"_s));
    prompt.expect(Box::Exclamation, different);
    EXPECT_FALSE(linkOrUnlink({first, second}));
}

TEST_F(WorkloadLinking, OneRowLeavesAndTheLastOneIsReleased)
{
    const auto keys = workloads(3);
    setLink(keys, keys[0]);
    expectQuestion(u"Отсоединить нагрузку от связанных нагрузок?"_s);
    EXPECT_TRUE(linkOrUnlink({keys[1]}));
    EXPECT_EQ(status.last(), u"Рассоединено нагрузок: 1"_s);
    EXPECT_EQ(stored(), (Links{keys[0], 0, keys[0]}));

    expectQuestion(u"Отсоединить нагрузку от связанных нагрузок?"_s);
    EXPECT_TRUE(linkOrUnlink({keys[2]}));
    EXPECT_EQ(status.last(), u"Рассоединено нагрузок: 2"_s);
    EXPECT_EQ(stored(), (Links{0, 0, 0}));
}

TEST_F(WorkloadLinking, SeveralRowsTakeTheWholeLinkApart)
{
    const auto keys = workloads(5);
    for (const bool all : {false, true}) {
        setLink({keys[0], keys[1], keys[2]}, keys[0]);
        setLink({keys[3], keys[4]}, keys[3]);
        expectQuestion(all ? u"Рассоединить связанные нагрузки?"_s
                           : u"Отсоединить связанные нагрузки?"_s);
        EXPECT_TRUE(linkOrUnlink(all ? Links{keys[0], keys[1], keys[2]} : Links{keys[1], keys[2]}));
        EXPECT_EQ(status.last(), u"Рассоединено нагрузок: 3"_s);
        EXPECT_EQ(stored(), (Links{0, 0, 0, keys[3], keys[3]}));
    }
}

TEST_F(WorkloadLinking, RowsLeftBehindAreNotTakenBackIn)
{
    const auto keys = workloads(4);
    setLink({keys[1], keys[2]}, keys[0]); // the row whose key the link carries has left it
    confirmLink();
    EXPECT_TRUE(linkOrUnlink({keys[0], keys[3]}));
    EXPECT_EQ(status.last(), u"Связано нагрузок: 2"_s);
    EXPECT_EQ(stored(), (Links{keys[3], keys[0], keys[0], keys[3]}));
}

TEST_F(WorkloadLinking, UsersDoNotLink)
{
    const auto keys = workloads(2);
    signIn(shell::Role::User);
    prompt.expect(Box::Exclamation,
                  u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s);
    EXPECT_FALSE(linkOrUnlink(keys));
    EXPECT_EQ(stored(), (Links{0, 0}));
}

TEST_F(SchoolWorkloadLinking, SpeaksOfLessonsTeachersAndClasses)
{
    const auto first = workload();
    const auto second = workload({{"IDA", 3}});
    add("UROKI", {{"IDN", first}});
    confirmLink();
    expectQuestion(
        u"По выделенным нагрузкам имеются назначенные уроки (см. Журнал уроков). Связывание "
        "нагрузок может привести к нежелательным последствиям, например, к неправильному "
        "подсчету количества выполненных часов. Рекомендуется в справочнике нагрузки создать "
        "дополнительные аналогичные нагрузки с другими параметрами связывания. Продолжить?"_s);
    prompt.expect(
        Box::Exclamation,
        u"Связывание не выполнено, так как связываемые нагрузки должны иметь одинаковые параметры "
        "(количество часов, период выполнения и др.), за исключением параметров: учитель, класс, "
        "подгруппа, предмет. Уроки всех связанных нагрузок проводятся в одной аудитории в одно и "
        "то же время."_s);
    EXPECT_FALSE(linkOrUnlink({first, second}));
    prompt.expect(Box::Exclamation, nothingToDo);
    EXPECT_FALSE(linkOrUnlink({}));
}
