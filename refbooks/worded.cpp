#include "refbooks/worded.h"

#include "shell/wording.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

// The wording's table replaces letters wherever they stand; texts that it would spoil have
// their school form here.
const QHash<QString, QString>& schoolTexts()
{
    static const QHash<QString, QString> texts{
        {u"Занятия"_s, u"Уроки"_s},
        {u"Показаны занятия, которые ведут классные руководители групп. Остальных занятий в "
         "журнале: %L1."_s,
         u"Показаны уроки, которые ведут классные руководители. Остальных уроков в журнале: "
         "%L1."_s},
        {u"По группе"_s, u"По классу"_s},
        {u"Копировать в другие группы и подгруппы"_s, u"Копировать в другие классы и подгруппы"_s},
    };
    return texts;
}

} // namespace

QString worded(const shell::Wording& wording, const QString& text)
{
    return wording.translate(text, schoolTexts());
}

QString wordedMessage(const shell::Wording& wording, const QString& text)
{
    return wording.translate(text, schoolTexts(), true);
}

} // namespace refbooks
