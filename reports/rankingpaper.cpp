#include "reports/rankingpaper.h"

#include "data/settingsrow.h"
#include "papers/frame.h"
#include "reports/rankingtexts.h"
#include "reports/worded.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using namespace papers;

Row bodyRow(const RankingRow& row)
{
    Row cells{text(row.name)};
    for (std::size_t item = RankingItem::Size; item < RankingItem::Count; ++item)
        cells.push_back(row.values[item] ? number(*row.values[item], isRate(item) ? 1 : 0)
                                         : Cell());
    return cells;
}

Paper paperOf(RankingLevel level, std::span<const RankingRow> rows, const QString& subtitle,
              const shell::Wording& wording)
{
    constexpr double kNameWidth = 52, kNumberWidth = 9, kWideWidth = 13; // mm
    Paper paper;
    paper.name = worded(wording, level == RankingLevel::Groups ? u"Группы"_s : u"Специальности"_s);
    paper.title = worded(wording, level == RankingLevel::Groups ? u"СРАВНЕНИЕ ГРУПП СПЕЦИАЛЬНОСТИ"_s
                                                                : u"СРАВНЕНИЕ СПЕЦИАЛЬНОСТЕЙ"_s);
    paper.subtitle = subtitle;
    paper.leadColumns = 1;
    paper.head.resize(1);
    std::size_t item = RankingItem::Name;
    for (const QString& head : rankingHeads(level)) {
        const QString shown = worded(wording, head);
        const bool wide = item == RankingItem::PersonHours || item == RankingItem::Missed
                          || item == RankingItem::MissedExcused;
        paper.head[0].push_back(item == RankingItem::Name ? heading(shown) : rotatedHeading(shown));
        paper.widths.push_back(item == RankingItem::Name ? kNameWidth
                               : wide                    ? kWideWidth
                                                         : kNumberWidth);
        ++item;
    }
    for (const RankingRow& row : rows)
        paper.body.push_back(bodyRow(row));
    for (const QString& note : rankingNotes())
        paper.notes << worded(wording, note);
    return paper;
}

} // namespace

papers::Document rankingDocument(const RankingShown& shown, const data::SettingsRow& settings,
                                 const shell::Wording& wording)
{
    const QString period = rankingPeriodText(shown.request);
    const QString name = worded(wording, u"Отчет по специальностям"_s) + u' '
                         + shown.request.begin.toString(u"yyyy-MM-dd"_s) + u'_'
                         + shown.request.end.toString(u"yyyy-MM-dd"_s);
    Document document{u"ranking"_s, name, {}};
    document.papers.push_back(
        paperOf(RankingLevel::Specialities, shown.specialities, period, wording));
    if (!shown.groups.empty())
        document.papers.push_back(paperOf(RankingLevel::Groups, shown.groups,
                                          shown.speciality + u", "_s + period, wording));
    for (Paper& paper : document.papers)
        addFrame(paper, settings);
    return document;
}

} // namespace reports
