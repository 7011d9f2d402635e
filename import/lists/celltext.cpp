#include "import/lists/celltext.h"

#include "refbooks/typedvalue.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

using refbooks::FieldKind;

std::optional<bool> flagIn(const QString& text)
{
    static const QStringList yes = {u"да"_s,     u"1"_s,    u"-1"_s, u"+"_s,
                                    u"истина"_s, u"true"_s, u"yes"_s};
    static const QStringList no = {u"нет"_s, u"0"_s, u"-"_s, u"ложь"_s, u"false"_s, u"no"_s};
    const QString word = text.toLower();
    if (yes.contains(word))
        return true;
    return no.contains(word) ? std::optional(false) : std::nullopt;
}

// Spreadsheets and databases give days with a time, and times with seconds.
QString withoutTime(const QString& text)
{
    static const QRegularExpression kTime(u"[ T]\\d{1,2}:\\d\\d(:\\d\\d)?$"_s);
    return QString(text).remove(kTime);
}

QString withoutSeconds(const QString& text)
{
    static const QRegularExpression kSeconds(u"^(\\d{1,2}:\\d\\d):\\d\\d$"_s);
    return QString(text).replace(kSeconds, u"\\1"_s);
}

} // namespace

QString takeCell(const QString& text, const refbooks::RecordField& field, int longest,
                 refbooks::FieldValue& value)
{
    switch (field.kind) {
    case FieldKind::CheckBox:
        if (const auto flag = flagIn(text)) {
            value.checked = *flag;
            return {};
        }
        return u"В поле \"%1\" нужно \"да\" или \"нет\", а в файле \"%2\"."_s.arg(field.name(),
                                                                                  text);
    case FieldKind::Date:
        if (const auto date = refbooks::typedDate(withoutTime(text))) {
            value.date = *date;
            return {};
        }
        return refbooks::wrongText(field, text);
    case FieldKind::TimeOfDay:
        if (const auto time = refbooks::typedTime(withoutSeconds(text))) {
            value.time = *time;
            return {};
        }
        return refbooks::wrongText(field, text);
    default:
        break;
    }
    if (text.size() > longest)
        return u"В поле \"%1\" помещается знаков: %2, а в файле их %3."_s.arg(field.name())
            .arg(longest)
            .arg(text.size());
    value.text = text;
    return {};
}

} // namespace imports
