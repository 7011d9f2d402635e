#include "reports/worded.h"

#include "shell/wording.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

const QHash<QString, QString>& schoolTexts()
{
    static const QHash<QString, QString> texts{
        // the document dialog, with its access keys
        {u"&Отчет по прогулам по преподавателям/группам"_s,
         u"&Отчет по прогулам по учителям/классам"_s},
        {u"Отчет по &специальностям"_s, u"Отчет по пара&ллелям"_s},
        {u"Г&руппа:"_s, u"Кла&сс:"_s},
        {u"Студе&нт:"_s, u"Учащи&йся:"_s},
        {u"Все группы"_s, u"Все классы"_s},
        {u"Все студенты группы"_s, u"Все учащиеся класса"_s},
        {u"Прогулы по преподавателям/группам"_s, u"Прогулы по учителям/классам"_s},
        {u"По преподавателям и группам за период"_s, u"По учителям и классам за период"_s},
        {u"Документ пуст: нет ни одной группы или ни одного студента."_s,
         u"Документ пуст: нет ни одного класса или ни одного учащегося."_s},
    };
    return texts;
}

} // namespace

QString worded(const shell::Wording& wording, const QString& text)
{
    return wording.translate(text, schoolTexts());
}

} // namespace reports
