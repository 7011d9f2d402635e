#include "import/lists/existingrows.h"

#include "jet/database.h"
#include "refbooks/recordstore.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

using refbooks::Book;
using refbooks::FieldKind;
using refbooks::RecordDraft;
using refbooks::RecordField;

using Fields = std::vector<std::string_view>;

std::vector<Fields> distinctions(const RecordDraft& draft)
{
    switch (draft.book) {
    case Book::Workload:
        return {{"IDP", "IDG", "IDGG", "IDD", "DATNN", "DATKK"}};
    case Book::Groups:
        return {{"IDO", "KURS", "NAIM"}};
    case Book::Holidays:
        return {{"DAY", "MN"}};
    case Book::LessonTimes:
        return {{"IDUR"}};
    case Book::Students:
        return {{"IDG", "FAM", "IM", "OTCH"}};
    case Book::TimetableProjects:
        return {{"DAT1", "DAT2"}};
    default:
        break;
    }
    std::vector<Fields> unique;
    for (const RecordField& field : draft.fields)
        if (field.requirement == refbooks::Requirement::Unique)
            unique.push_back({field.field});
    return unique;
}

// What counts when two rows are compared; "" for an empty field.
QString nameOf(const RecordDraft& draft, std::string_view field)
{
    const int position = draft.position(field);
    const RecordField& info = draft.fields[static_cast<std::size_t>(position)];
    const refbooks::FieldValue& value = draft.values[static_cast<std::size_t>(position)];
    if (info.kind == FieldKind::List)
        return value.choice ? QString::number(*value.choice) : QString();
    if (info.kind == FieldKind::Date)
        return value.date.toString(Qt::ISODate);
    const QString text = draft.text(position);
    const bool holdsNumber = info.wholeNumber || field == "DAY";
    bool isNumber = false;
    const double number = holdsNumber ? text.toDouble(&isNumber) : 0; // "01" is 1
    return isNumber ? QString::number(number) : text.toCaseFolded();
}

} // namespace

ExistingRows::ExistingRows(jet::Database& database, RecordDraft draft)
    : m_distinctions(distinctions(draft))
    , m_keys(m_distinctions.size())
{
    const refbooks::BookInfo& info = refbooks::bookInfo(draft.book);
    auto rows = database.query("SELECT * FROM " + std::string(info.table) + ';');
    const int key = rows.column(info.key);
    while (rows.next()) {
        refbooks::readValues(rows, draft);
        add(draft, rows.integer(key));
    }
}

std::vector<std::int64_t> ExistingRows::find(const RecordDraft& draft) const
{
    for (std::size_t i = 0; i < m_distinctions.size(); ++i) {
        const QString name = nameOf(draft, m_distinctions[i]);
        if (const auto found = m_keys[i].constFind(name);
            !name.isEmpty() && found != m_keys[i].constEnd())
            return *found;
    }
    return {};
}

void ExistingRows::add(const RecordDraft& draft, std::int64_t key)
{
    for (std::size_t i = 0; i < m_distinctions.size(); ++i) {
        std::vector<std::int64_t>& keys = m_keys[i][nameOf(draft, m_distinctions[i])];
        if (std::ranges::find(keys, key) == keys.end())
            keys.push_back(key);
    }
}

QString ExistingRows::nameOf(const RecordDraft& draft, const Fields& fields)
{
    QString name;
    bool isEmpty = true;
    for (const std::string_view field : fields) {
        const QString part = imports::nameOf(draft, field);
        isEmpty = isEmpty && part.isEmpty();
        name += part;
        name += u'\n';
    }
    return isEmpty ? QString() : name;
}

} // namespace imports
