#include "papers/frame.h"

#include "data/settingsrow.h"

using namespace Qt::StringLiterals;

namespace papers {
namespace {

// An empty field of the settings row is stored as "нет".
bool isSet(const QString& text)
{
    return !text.trimmed().isEmpty() && text.trimmed() != u"нет"_s;
}

QString orBlank(const QString& text, const QString& blank)
{
    return isSet(text) ? text.trimmed() : blank;
}

} // namespace

void addFrame(Paper& paper, const data::SettingsRow& settings)
{
    for (const QString& line : {settings.institution, settings.address})
        if (isSet(line))
            paper.institution << line.trimmed();
    if (settings.printHead)
        paper.approval << u"УТВЕРЖДАЮ"_s
                       << orBlank(settings.headPost, u"Директор"_s) + u" ______________ "_s
                              + orBlank(settings.headName, u"/__________________/"_s)
                       << u"«____» ______________ 20___ г."_s;
    if (settings.printResponsible)
        paper.signatures.push_back({orBlank(settings.responsiblePost, u"Ответственное лицо"_s),
                                    orBlank(settings.responsibleName, {})});
}

} // namespace papers
