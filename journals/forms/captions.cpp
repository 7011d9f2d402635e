#include "journals/forms/captions.h"

#include "journals/worded.h"

#include <QLabel>
#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace journals {

void wordCaptions(const QList<QLabel*>& labels, const shell::Wording& wording)
{
    QString taken = u"фвджатеос"_s; // by the main menu
    QList<QLabel*> changed;
    for (QLabel* label : labels) {
        const QString plain = label->text().remove(u'&');
        const QString text = worded(wording, plain);
        if (text == plain) {
            taken += label->text()[label->text().indexOf(u'&') + 1].toLower();
        } else {
            label->setText(text);
            changed << label;
        }
    }
    for (QLabel* label : changed) {
        QString text = label->text();
        const auto free = std::find_if(text.begin(), text.end(), [&taken](QChar letter) {
            return letter.isLetter() && !taken.contains(letter.toLower());
        });
        if (free == text.end())
            continue;
        taken += free->toLower();
        label->setText(text.insert(free - text.begin(), u'&'));
    }
}

} // namespace journals
