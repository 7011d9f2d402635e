#include "import/worded.h"

#include "shell/wording.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

// The wording's table replaces letters wherever they stand; texts that it would spoil have
// their school form here.
const QHash<QString, QString>& schoolTexts()
{
    static const QHash<QString, QString> texts{
        {u"Занятия"_s, u"Уроки"_s},
        {u"Группы"_s, u"Классы"_s},
        {u"Занятия за период в базе данных расписания"_s,
         u"Уроки за период в базе данных расписания"_s},
        {u"Типы занятий"_s, u"Типы уроков"_s},
        {u"импортом занятий"_s, u"импортом уроков"_s},
        {u"В журнале за эти дни уже были занятия: %1."_s,
         u"В журнале за эти дни уже были уроки: %1."_s},
        {u"Импорт добавит занятия еще раз. Продолжить?"_s,
         u"Импорт добавит уроки еще раз. Продолжить?"_s},
    };
    return texts;
}

} // namespace

QString worded(const shell::Wording& wording, const QString& text)
{
    return wording.translate(text, schoolTexts(), true);
}

} // namespace imports
