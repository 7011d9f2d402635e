#include "shell/files/uncleanend.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/storage/checker.h"

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kLastTime = u"Прошлый раз программа завершилась неправильно. "_s;

QString place(const jet::Finding& finding)
{
    QString text;
    if (!finding.table.empty())
        text += u"таблица «%1», "_s.arg(data::fromUtf8(finding.table));
    if (finding.page != 0)
        text += u"страница %1, "_s.arg(finding.page);
    return text;
}

} // namespace

CheckVerdict verifyAfterUncleanEnd(jet::Database& database)
{
    jet::CheckTotals totals;
    const auto findings = jet::checkDatabase(database.store(), &totals);
    if (totals.harmful == 0)
        return {true, kLastTime + u"База данных проверена полностью, ошибок не найдено."_s};
    const jet::Finding& first = findings.front(); // harmful ones come first
    return {false, kLastTime
                       + u"База данных проверена, найдено ошибок: %1. Первая: %2%3.\n\n"
                         "Восстановите файл командой «Восстановить из архива...» или исправьте его "
                         "командой «Сжать базу данных» меню «Сервис»."_s.arg(totals.harmful)
                             .arg(place(first), data::fromUtf8(first.text))};
}

} // namespace shell
