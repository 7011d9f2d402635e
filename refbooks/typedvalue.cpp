#include "refbooks/typedvalue.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

// The runs of digits in a text made of digits, blanks and separators; nothing for another one.
std::optional<QStringList> digitRuns(const QString& text)
{
    static const QRegularExpression allowed(u"^[0-9 .,:/-]+$"_s);
    static const QRegularExpression separators(u"[ .,:/-]+"_s);
    if (!allowed.match(text).hasMatch())
        return {};
    return text.split(separators, Qt::SkipEmptyParts);
}

bool sameText(const QString& left, const QString& right)
{
    return left.trimmed().compare(right.trimmed(), Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<QDate> typedDate(const QString& text)
{
    constexpr int kCentury = 100, kTurn = 50;
    if (text.trimmed().isEmpty())
        return QDate();
    auto runs = digitRuns(text.trimmed());
    if (!runs)
        return {};
    if (runs->size() == 1 && (runs->front().size() == 6 || runs->front().size() == 8)) {
        const QString digits = runs->front();
        runs = {digits.sliced(0, 2), digits.sliced(2, 2), digits.sliced(4)};
    }
    if (runs->size() != 3)
        return {};
    if (runs->front().size() == 4) // year first
        std::swap(runs->front(), runs->back());
    if (runs->back().size() != 2 && runs->back().size() != 4)
        return {};
    int year = runs->back().toInt();
    if (runs->back().size() == 2)
        year += year < kTurn ? 20 * kCentury : 19 * kCentury;
    const QDate date(year, runs->at(1).toInt(), runs->at(0).toInt());
    return date.isValid() && year >= kCentury ? std::optional(date) : std::nullopt;
}

std::optional<QTime> typedTime(const QString& text)
{
    if (text.trimmed().isEmpty())
        return QTime();
    auto runs = digitRuns(text.trimmed());
    if (!runs || runs->isEmpty())
        return {};
    if (runs->size() == 1 && runs->front().size() > 2) {
        const QString digits = runs->front();
        runs = {digits.chopped(2), digits.last(2)};
    }
    if (runs->size() == 1)
        runs->append(u"00"_s);
    if (runs->size() != 2)
        return {};
    const QTime time(runs->at(0).toInt(), runs->at(1).toInt());
    return time.isValid() && runs->at(1).size() == 2 ? std::optional(time) : std::nullopt;
}

QString dateText(QDate date)
{
    return date.toString(u"dd.MM.yyyy"_s);
}

QString timeText(QTime time)
{
    return time.toString(u"H:mm"_s);
}

int rowOfText(const Choices& choices, const QString& text)
{
    const auto found = std::ranges::find_if(
        choices, [&](const Choice& choice) { return sameText(choice.text, text); });
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

int onlyRowWith(const Choices& choices, const QString& text)
{
    const QString part = text.trimmed();
    int only = -1;
    for (int row = 0; row < static_cast<int>(choices.size()); ++row) {
        if (!choices[static_cast<std::size_t>(row)].text.contains(part, Qt::CaseInsensitive))
            continue;
        if (only >= 0)
            return -1;
        only = row;
    }
    return only;
}

QString wrongText(const RecordField& field, const QString& text)
{
    switch (field.kind) {
    case FieldKind::List:
        return u"В списке \"%1\" нет строки \"%2\". Выберите строку из списка."_s.arg(field.name(),
                                                                                      text);
    case FieldKind::Date:
        return u"В поле \"%1\" нужна дата вида 31.12.2026, а введено \"%2\"."_s.arg(field.name(),
                                                                                    text);
    case FieldKind::TimeOfDay:
        return u"В поле \"%1\" нужно время вида 8:30, а введено \"%2\"."_s.arg(field.name(), text);
    default:
        return {};
    }
}

} // namespace refbooks
