#include "import/importtexts.h"

#include "import/worded.h"

#include <array>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

const std::array<QString, kBooks> kBookNames = {u"Специальности"_s, u"Преподаватели"_s,
                                                u"Типы занятий"_s,  u"Группы"_s,
                                                u"Дисциплины"_s,    u"Нагрузка"_s};

const std::array<QString, kNeeds> kMissing = {u"нет преподавателя"_s, u"нет группы"_s,
                                              u"у группы нет специальности"_s, u"нет дисциплины"_s,
                                              u"нет нагрузки"_s};

} // namespace

QList<SummaryLine> summary(const ImportCounts& counts, const shell::Wording& wording)
{
    QList<SummaryLine> lines;
    for (std::size_t book = 0; book < kBooks; ++book)
        lines.append({worded(wording, kBookNames[book]), counts.books[book]});
    lines.append({worded(wording, u"Занятия"_s), {.added = counts.lessons}});
    return lines;
}

QString doneText()
{
    return u"Импорт успешно завершен."_s;
}

QString doneText(const ImportCounts& counts, const shell::Wording& wording)
{
    return worded(wording, u"Импорт успешно завершен. Импортировано: %1 занятий."_s)
        .arg(counts.lessons);
}

QString emptyText()
{
    return u"В базе данных нечего импортировать: ее таблицы пусты."_s;
}

QString thereText(std::int64_t lessons, const shell::Wording& wording)
{
    return worded(wording, u"В журнале за эти дни уже были занятия: %1."_s).arg(lessons);
}

QString againText(const shell::Wording& wording)
{
    return worded(wording, u"Импорт добавит занятия еще раз. Продолжить?"_s);
}

QString skippedText(const LessonChoice& choice, const shell::Wording& wording)
{
    QStringList reasons;
    for (std::size_t need = 0; need < kNeeds; ++need)
        if (choice.missing[need] > 0)
            reasons << worded(wording, kMissing[need]) + u" — "_s
                           + QString::number(choice.missing[need]);
    QStringList sentences;
    if (!reasons.isEmpty())
        sentences << worded(wording, u"Пропущено занятий: %1 (%2)."_s)
                         .arg(QString::number(choice.lessons.size() - choice.complete),
                              reasons.join(u", "_s));
    if (choice.ofProjects > 0)
        sentences << worded(wording, u"Не импортируется занятий из проектов расписания: %1."_s)
                         .arg(choice.ofProjects);
    return sentences.join(u' ');
}

QString missingText(const LessonPlace& place, const shell::Wording& wording)
{
    if (place.isComplete())
        return {};
    return worded(wording, u"Не импортируется: %1."_s)
        .arg(worded(wording, kMissing[static_cast<std::size_t>(place.missing)]));
}

QString shortenedText(const ImportCounts& counts)
{
    return counts.shortened == 0
               ? QString()
               : u"Сокращено текстов, не вмещающихся в поле: %1."_s.arg(counts.shortened);
}

} // namespace imports
