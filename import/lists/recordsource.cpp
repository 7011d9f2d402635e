#include "import/lists/recordsource.h"

#include "import/lists/capturingprompt.h"
#include "import/lists/celltext.h"
#include "refbooks/recordcheck.h"
#include "refbooks/recordstore.h"
#include "refbooks/typedvalue.h"
#include "shell/session.h"

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

using refbooks::Book;
using refbooks::Lookup;
using refbooks::RecordDraft;
using refbooks::RecordField;
using refbooks::Requirement;

std::optional<Book> bookBehind(Lookup lookup)
{
    switch (lookup) {
    case Lookup::Teachers:
        return Book::Teachers;
    case Lookup::Groups:
        return Book::Groups;
    case Lookup::Rooms:
        return Book::Rooms;
    case Lookup::RoomTypes:
        return Book::RoomTypes;
    case Lookup::Specialities:
        return Book::Specialities;
    case Lookup::Departments:
        return Book::Departments;
    case Lookup::Disciplines:
        return Book::Disciplines;
    case Lookup::LessonTypes:
        return Book::LessonTypes;
    case Lookup::GroupTypes:
        return Book::GroupTypes;
    case Lookup::StudyForms:
        return Book::StudyForms;
    default:
        return {};
    }
}

// From here on, one for each field: keys that no counter gives.
constexpr int kToBeCreated = std::numeric_limits<int>::min();

// A new row that has but a name; nothing when its own book's check refuses it, as a name that is
// too long.
std::optional<RecordDraft> namedRow(shell::Session& session, Book book, std::string_view field,
                                    const QString& name)
{
    RecordDraft draft{.book = book, .fields = refbooks::recordFields(book, session.wording())};
    draft.values.resize(draft.fields.size());
    draft.choices.resize(draft.fields.size());
    draft.value(field).text = name;
    CapturingPrompt prompt;
    if (refbooks::RecordCheck(draft, session, prompt).failedField())
        return std::nullopt;
    return draft;
}

} // namespace

std::optional<std::pair<Book, std::string_view>> createdByName(Lookup lookup,
                                                               const shell::Wording& wording)
{
    const auto book = bookBehind(lookup);
    if (!book)
        return {};
    const auto isAsked = [](const RecordField& field) {
        return field.requirement != Requirement::Optional;
    };
    const std::vector<RecordField> fields = refbooks::recordFields(*book, wording);
    const auto asked = std::ranges::find_if(fields, isAsked);
    if (std::ranges::count_if(fields, isAsked) != 1 || asked->kind != refbooks::FieldKind::Text)
        return {};
    return std::pair(*book, asked->field);
}

RecordSource::RecordSource(shell::Session& session, const RecordDraft& blank,
                           const std::vector<int>& longest, const ListChoice& choice,
                           ImportUndo& undo)
    : m_session(session)
    , m_blank(blank)
    , m_longest(longest)
    , m_choice(choice)
    , m_undo(undo)
    , m_draft(blank)
{
    for (std::size_t i = 0; i < blank.fields.size(); ++i) {
        const auto lookup = blank.fields[i].lookup;
        m_lookups.push_back(lookup ? NameLookup(*lookup, blank.choices[i], session.database())
                                   : NameLookup());
    }
}

void RecordSource::begin()
{
    forgetNamed();
    m_draft.mode = refbooks::RecordMode::New;
    m_draft.key = 0;
    m_draft.values = m_blank.values;
    m_isSecondFill = false;
}

void RecordSource::begin(std::int64_t key)
{
    forgetNamed();
    m_draft.mode = refbooks::RecordMode::Edit;
    m_draft.key = key;
    refbooks::readRecord(m_session.database(), m_draft);
    m_isSecondFill = true;
}

QString RecordSource::fill(const QStringList& cells)
{
    const auto columns = std::min<std::size_t>(static_cast<std::size_t>(cells.size()),
                                               m_choice.columns.fields.size());
    QStringList reasons;
    for (std::size_t column = 0; column < columns; ++column) {
        const int field = m_choice.columns.fields[column];
        const QString text = cells[static_cast<qsizetype>(column)].trimmed();
        if (text.isEmpty() || field == kNoField)
            continue;
        if (field == kFullName)
            fillFullName(text);
        else if (const QString reason = fill(field, text); !reason.isEmpty())
            reasons << reason;
    }
    return reasons.join(u' ');
}

QString RecordSource::fill(int field, const QString& text)
{
    const auto at = static_cast<std::size_t>(field);
    if (m_draft.fields[at].lookup)
        return fillList(field, text);
    return takeCell(text, m_draft.fields[at], m_longest[at], m_draft.values[at]);
}

QString RecordSource::fillList(int field, const QString& text)
{
    const auto at = static_cast<std::size_t>(field);
    const NameLookup::Found found = m_lookups[at].find(text);
    if (found.isAmbiguous)
        return u"В списке \"%1\" строк с именем \"%2\" несколько."_s.arg(m_draft.fields[at].name(),
                                                                         text);
    if (!found.key)
        return nameMissing(field, text);
    m_draft.values[at].choice = found.key;
    return {};
}

// The row that the name asks for stands in the list under a key of its own until it is created.
QString RecordSource::nameMissing(int field, const QString& text)
{
    const auto at = static_cast<std::size_t>(field);
    const RecordField& info = m_draft.fields[at];
    const auto maker = createdByName(*info.lookup, m_session.wording());
    MissingName& missing = missingName(field, text);
    missing.canBeCreated = maker.has_value();
    if (!m_isSecondFill)
        ++missing.rows;
    std::optional<RecordDraft> row;
    if (maker && m_choice.createMissing)
        row = namedRow(m_session, maker->first, maker->second, text);
    if (!row)
        return u"В списке \"%1\" нет строки \"%2\"."_s.arg(info.name(), text);
    const int key = kToBeCreated + field;
    m_draft.choices[at].push_back({key, text});
    m_draft.values[at].choice = key;
    m_named.push_back({field, std::move(*row), text});
    return {};
}

void RecordSource::createNamed()
{
    for (const Named& named : std::exchange(m_named, {})) {
        const auto at = static_cast<std::size_t>(named.field);
        const auto key = refbooks::storeRecord(m_session.database(), named.row);
        m_undo.added(named.row.book, *key);
        missingName(named.field, named.name).isCreated = true;
        m_lookups[at].add(static_cast<int>(*key), named.name);
        m_draft.choices[at].back().key = static_cast<int>(*key);
        m_draft.values[at].choice = static_cast<int>(*key);
    }
}

void RecordSource::forgetNamed()
{
    for (const Named& named : std::exchange(m_named, {}))
        m_draft.choices[static_cast<std::size_t>(named.field)].pop_back();
}

// "Иванов Иван Иванович оглы": what follows the name is the patronymic.
void RecordSource::fillFullName(const QString& text)
{
    const QString words = text.simplified();
    m_draft.value("FAM").text = words.section(u' ', 0, 0);
    m_draft.value("IM").text = words.section(u' ', 1, 1);
    m_draft.value("OTCH").text = words.section(u' ', 2);
}

MissingName& RecordSource::missingName(int field, const QString& name)
{
    const QString list = m_draft.fields[static_cast<std::size_t>(field)].name();
    auto found = std::ranges::find_if(m_missing, [&](const MissingName& each) {
        return each.list == list && each.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (found == m_missing.end())
        found = m_missing.insert(m_missing.end(), {.list = list, .name = name});
    return *found;
}

QString RecordSource::name() const
{
    if (m_draft.book == Book::Students)
        return QString(m_draft.text("FAM") + u' ' + m_draft.text("IM") + u' '
                       + m_draft.text("OTCH"))
            .trimmed();
    if (m_draft.book == Book::Workload)
        return m_draft.choiceText("IDD") + u", "_s + m_draft.choiceText("IDG");
    for (const std::string_view field : {"KAUDI", "FAMIO", "Naim", "NAIM"})
        if (std::ranges::find(m_draft.fields, field, &RecordField::field) != m_draft.fields.end())
            return m_draft.text(field);
    return {};
}

} // namespace imports
