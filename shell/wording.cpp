#include "shell/wording.h"

#include <QStringView>

namespace shell {

namespace {

struct Pair
{
    QStringView college;
    QStringView school;
};

// Searched in this order, so longer phrases stand before the words they contain. "подгруппы"
// and "подгруппа" map to themselves to shield them from the rows for "группы"; "группы"
// stands twice, as genitive and as plural, and the caller chooses by `occurrence`.
constexpr Pair kPairs[] = {
    {u"пара", u"час"},
    {u"поточное занятие", u"поточный урок"},
    {u"учебные занятия", u"уроки"},
    {u"занятие", u"урок"},
    {u"занятия", u"урока"},
    {u"занятий", u"уроков"},
    {u"преподаватель", u"учитель"},
    {u"преподаватели", u"учителя"},
    {u"преподавателя", u"учителя"},
    {u"преподавателям", u"учителям"},
    {u"преподавателем", u"учителем"},
    {u"преподавателей", u"учителей"},
    {u"преподавателю", u"учителю"},
    {u"учебные группы", u"классы"},
    {u"подгруппы", u"подгруппы"},
    {u"подгруппа", u"подгруппа"},
    {u"группы", u"класса"},
    {u"группы", u"классы"},
    {u"группе", u"классе"},
    {u"группах", u"классах"},
    {u"группам", u"классам"},
    {u"группа", u"класс"},
    {u"группу", u"класс"},
    {u"групп", u"классов"},
    {u"курс", u"год"},
    {u"специальности", u"параллели"},
    {u"специальность", u"параллель"},
    {u"специальностей", u"параллелей"},
    {u"специальностям", u"параллелям"},
    {u"кафедры", u"методические объединения"},
    {u"кафедра", u"методическое объединение"},
    {u"кафедру", u"методическое объединение"},
    {u"кафедр", u"объединений"},
    {u"дисциплины", u"предметы"},
    {u"дисциплинами", u"предметами"},
    {u"дисциплина", u"предмет"},
    {u"дисциплине", u"предмету"},
    {u"дисциплину", u"предмет"},
    {u"дисциплин", u"предметов"},
    {u"часов в семестре", u"часов в неделю"},
    {u"студентов", u"учащихся"},
    {u"студенты", u"учащиеся"},
    {u"студент", u"учащийся"},
};

bool isCapital(QChar letter)
{
    return letter == letter.toUpper();
}

QString capitalised(QStringView word)
{
    QString result = word.toString();
    result[0] = result[0].toUpper();
    return result;
}

} // namespace

QString Wording::translate(const QString& text, bool goOn, int occurrence) const
{
    if (!isSchool() || text.trimmed().isEmpty())
        return text;
    QString result = text;
    int matches = 0;
    for (const Pair& pair : kPairs) {
        const qsizetype found = QStringView(result).indexOf(pair.college, 0, Qt::CaseInsensitive);
        if (found < 0)
            continue;
        if (matches != occurrence) {
            ++matches;
            continue;
        }
        const bool capital = isCapital(result.at(found));
        const QString school = capital ? capitalised(pair.school) : pair.school.toString();
        result.replace(pair.college.toString(), school, Qt::CaseInsensitive);
        if (!goOn)
            break;
    }
    return result;
}

QString Wording::translate(const QString& text, const QHash<QString, QString>& own, bool goOn) const
{
    const auto found = isSchool() ? own.constFind(text) : own.constEnd();
    return found != own.constEnd() ? *found : translate(text, goOn);
}

} // namespace shell
