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
        {u"По группе"_s, u"По классу"_s},
        {u"Копировать в другие группы и подгруппы"_s, u"Копировать в другие классы и подгруппы"_s},
    };
    return texts;
}

QString inWords(const shell::Wording& wording, const QString& text, bool goOn)
{
    if (!wording.isSchool())
        return text;
    const auto own = schoolTexts().constFind(text);
    return own != schoolTexts().constEnd() ? *own : wording.translate(text, goOn);
}

} // namespace

QString worded(const shell::Wording& wording, const QString& text)
{
    return inWords(wording, text, false);
}

QString wordedMessage(const shell::Wording& wording, const QString& text)
{
    return inWords(wording, text, true);
}

} // namespace refbooks
