#include "shell/forms/menuwording.h"

#include "shell/wording.h"

#include <QMenu>
#include <QMenuBar>
#include <QSet>

#include <map>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// The items whose captions name what the wording is about, by control name. The others stay
// out of it: its table looks for parts of words and would find one in "Параметры".
const QSet<QString> kWorded = {
    u"mnuprepod"_s, u"mnuPred"_s,       u"mnuspez"_s,      u"mnugrup"_s,
    u"mnustud"_s,   u"mnuotchProgul"_s, u"mnuTab"_s,       u"mnuototd"_s,
    u"mnuSprKaf"_s, u"mnuSprTime"_s,    u"mnuSprTipZan"_s, u"mnuSprTipGrup"_s,
};

// Word forms that the table does not hold.
const std::map<QString, QString> kSchoolCaptions = {
    {u"&Табель студента"_s, u"&Табель учащегося"_s},
};

// No caption holds a doubled sign, so that each "&" marks a key.
QChar accessKey(const QString& caption)
{
    const qsizetype sign = caption.indexOf(u'&');
    return sign < 0 || sign + 1 == caption.size() ? QChar() : caption[sign + 1].toLower();
}

QString withFreeKey(QString plain, const QSet<QChar>& taken)
{
    for (qsizetype at = 0; at < plain.size(); ++at) {
        if (plain[at].isLetter() && !taken.contains(plain[at].toLower())) {
            return plain.insert(at, u'&');
        }
    }
    return plain;
}

// The plain text in the other words, or the caption itself when they change nothing.
QString worded(const Wording& wording, const QString& caption)
{
    if (!wording.isSchool()) {
        return caption;
    }
    if (const auto own = kSchoolCaptions.find(caption); own != kSchoolCaptions.end()) {
        return own->second;
    }
    QString plain = caption;
    plain.remove(u'&');
    const QString translated = wording.translate(plain, true);
    return translated == plain ? caption : translated;
}

void applyWording(const Wording& wording, const QList<QAction*>& items)
{
    QSet<QChar> taken;
    QList<QAction*> keyless;
    for (QAction* item : items) {
        if (item->menu()) {
            applyWording(wording, item->menu()->actions());
        }
        const QString before = item->text();
        if (kWorded.contains(item->objectName())) {
            item->setText(worded(wording, before));
        }
        if (const QChar key = accessKey(item->text()); !key.isNull()) {
            taken.insert(key);
        } else if (!accessKey(before).isNull()) {
            keyless.append(item);
        }
    }
    for (QAction* item : keyless) {
        item->setText(withFreeKey(item->text(), taken));
        taken.insert(accessKey(item->text()));
    }
}

} // namespace

void applyWording(const Wording& wording, QMenuBar& bar)
{
    applyWording(wording, bar.actions());
}

} // namespace shell
