#include "refbooks/workloadclear.h"

#include "jet/database.h"
#include "refbooks/permission.h"
#include "refbooks/phrase.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

constexpr Phrase kHasLessons{u"Нельзя удалить всю нагрузку, пока есть назначенные занятия.",
                             u"Нельзя удалить всю нагрузку, пока есть назначенные уроки."};
constexpr Phrase kQuestions[] = {
    {u"Удалить всю нагрузку?"},
    {u"Будут удалены ВСЕ записи у ВСЕХ преподавателей и групп. Вы уверены?"},
    {u"Подтвердите удаление нагрузки. Удаляем?"},
};

bool anyLessonOrGrade(jet::Database& database)
{
    constexpr const char* kCounts[] = {
        "SELECT Count(UROKI.ID) AS [Count-ID] From UROKI WHERE (((UROKI.ZP)=False));",
        "SELECT Count(usp.ID) AS [Count-ID] From usp ",
    };
    return std::ranges::any_of(kCounts, [&](const char* counting) {
        auto rows = database.query(counting);
        return rows.next() && rows.integer(0) > 0;
    });
}

} // namespace

bool deleteAllWorkload(shell::Session& session, shell::Prompt& prompt)
{
    if (!mayChangeBooks(session, prompt))
        return false;
    if (anyLessonOrGrade(session.database())) {
        prompt.critical(kHasLessons.in(session.wording()));
        return false;
    }
    const auto agreed = [&](const Phrase& question) {
        return prompt.confirm(question.in(session.wording()));
    };
    if (!std::ranges::all_of(kQuestions, agreed)
        || !session.beforeMassAction(u"удалением всей нагрузки"_s))
        return false;
    session.database().execute("DELETE SPNAGR.* FROM SPNAGR;");
    return true;
}

} // namespace refbooks
