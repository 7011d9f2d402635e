#include "import/lists/namelookup.h"

#include "data/convert.h"
#include "jet/database.h"

using namespace Qt::StringLiterals;

namespace imports {
namespace {

QString exact(const QString& name)
{
    return name.simplified().toCaseFolded();
}

QString loose(const QString& name)
{
    QString text = exact(name);
    text.replace(u". "_s, u"."_s);
    return text.replace(u'ё', u'е');
}

} // namespace

NameLookup::NameLookup(refbooks::Lookup lookup, const refbooks::Choices& choices,
                       jet::Database& database)
{
    for (const refbooks::Choice& choice : choices)
        if (choice.key)
            add(*choice.key, choice.text);
    addOthers(lookup, database);
}

void NameLookup::addOthers(refbooks::Lookup lookup, jet::Database& database)
{
    using refbooks::Lookup;
    constexpr int kMonths = 12, kMostSubgroups = 9;
    switch (lookup) {
    case Lookup::Specialities: {
        auto rows = database.query("SELECT IDO, Kod, Naim FROM SPOTD;");
        while (rows.next()) {
            const auto key = static_cast<int>(rows.integer(0));
            const QString code = data::fromUtf8(rows.text(1)), name = data::fromUtf8(rows.text(2));
            for (const QString& each : {name, code, u"%1 %2"_s.arg(code, name)})
                insert(m_others, key, loose(each));
        }
        break;
    }
    case Lookup::Months:
        for (int month = 1; month <= kMonths; ++month) {
            insert(m_others, month, QString::number(month));
            insert(m_others, month, u"%1"_s.arg(month, 2, 10, QChar(u'0')));
        }
        break;
    case Lookup::Subgroups:
        for (int number = 0; number <= kMostSubgroups; ++number)
            insert(m_others, number, QString::number(number));
        break;
    case Lookup::Sexes:
        for (const QString& male : {u"муж"_s, u"муж."_s, u"мужской"_s, u"-1"_s, u"m"_s})
            insert(m_others, -1, male);
        for (const QString& female : {u"жен"_s, u"жен."_s, u"женский"_s, u"0"_s, u"f"_s})
            insert(m_others, 0, female);
        break;
    default:
        break;
    }
}

void NameLookup::add(int key, const QString& name)
{
    insert(m_names, key, exact(name));
    insert(m_others, key, loose(name));
}

void NameLookup::insert(Names& names, int key, const QString& text)
{
    if (text.isEmpty())
        return;
    const auto known = names.find(text);
    if (known == names.end())
        names.insert(text, {key});
    else if (known->key != key)
        *known = {{}, true};
}

NameLookup::Found NameLookup::find(const QString& name) const
{
    const auto known = m_names.constFind(exact(name));
    return known == m_names.constEnd() ? m_others.value(loose(name)) : *known;
}

} // namespace imports
