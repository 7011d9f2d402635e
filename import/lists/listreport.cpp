#include "import/lists/listreport.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

QString rowLine(const RowResult& row)
{
    QString line = u"Строка %1"_s.arg(row.number);
    if (!row.name.isEmpty())
        line += u" (%1)"_s.arg(QString(row.name).replace(u'\n', u' '));
    line += u": "_s + outcomeText(row.outcome);
    return row.reason.isEmpty() ? line : line + u". "_s + row.reason;
}

QString missingLine(const MissingName& missing)
{
    const QString what = missing.isCreated      ? u"Создано в списке"_s
                         : missing.canBeCreated ? u"Нет в списке, можно создать"_s
                                                : u"Нет в списке"_s;
    return u"%1 \"%2\": %3 (строк: %4)"_s.arg(what, missing.list, missing.name).arg(missing.rows);
}

} // namespace

int ListReport::count(RowOutcome outcome) const
{
    return static_cast<int>(std::ranges::count(rows, outcome, &RowResult::outcome));
}

QString ListReport::text(const QString& title) const
{
    QStringList lines = {title,
                         {},
                         u"Добавлено: %1"_s.arg(count(RowOutcome::Added)),
                         u"Изменено: %1"_s.arg(count(RowOutcome::Updated)),
                         u"Пропущено: %1"_s.arg(count(RowOutcome::Skipped)),
                         u"Отклонено: %1"_s.arg(count(RowOutcome::Refused))};
    if (!missing.empty())
        lines << QString();
    for (const MissingName& each : missing)
        lines << missingLine(each);
    lines << QString();
    for (const RowResult& row : rows)
        if (!row.reason.isEmpty())
            lines << rowLine(row);
    return lines.join(u'\n').trimmed() + u'\n';
}

QString outcomeText(RowOutcome outcome)
{
    switch (outcome) {
    case RowOutcome::Added:
        return u"добавлена"_s;
    case RowOutcome::Updated:
        return u"изменена"_s;
    case RowOutcome::Skipped:
        return u"пропущена"_s;
    case RowOutcome::Refused:
        break;
    }
    return u"отклонена"_s;
}

} // namespace imports
