#include "refbooks/bookrecord.h"

#include "jet/database.h"
#include "refbooks/permission.h"
#include "refbooks/recordcheck.h"
#include "refbooks/recordstore.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <algorithm>
#include <cassert>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

const QString kHeldElsewhere =
    u"Извините, но эта строка (или соседняя строка) данного справочника редактируется другим "
    "пользователем. Одновременное внесение изменений несколькими пользователями в одну строку "
    "может привести к порче данных. Попробуйте отредактировать строку в другое время. Сейчас "
    "возможен только просмотр."_s;

} // namespace

std::unique_ptr<BookRecord> BookRecord::open(shell::Session& session, shell::Prompt& prompt,
                                             Book book, RecordMode mode, std::int64_t key)
{
    const bool mayView = book != Book::Users && mode == RecordMode::Edit; // users: passwords
    const bool isReader = book != Book::Users && !session.mayEditBooks();
    if (!(mayView && isReader) && !mayChangeBook(book, session, prompt))
        return nullptr;
    std::unique_ptr<BookRecord> record(new BookRecord(session, prompt, book, mode, key));
    record->m_viewOnly = isReader || session.database().readOnly();
    if (mode != RecordMode::New && !record->read())
        return nullptr;
    record->limitTexts();
    record->m_opened = record->m_draft.values;
    if (mode == RecordMode::Edit && !isReader && session.journal().isSnapshot())
        prompt.exclamation(kHeldElsewhere);
    return record;
}

BookRecord::BookRecord(shell::Session& session, shell::Prompt& prompt, Book book, RecordMode mode,
                       std::int64_t key)
    : m_session(session)
    , m_prompt(prompt)
    , m_draft{
          .book = book, .mode = mode, .key = key, .fields = recordFields(book, session.wording())}
{
    m_draft.values.resize(m_draft.fields.size());
    m_draft.choices.resize(m_draft.fields.size());
    fillLists();
    if (mode == RecordMode::New)
        presetNew();
}

void BookRecord::fillLists()
{
    for (std::size_t i = 0; i < m_draft.fields.size(); ++i) {
        const RecordField& field = m_draft.fields[i];
        if (!field.lookup)
            continue;
        Choices& list = m_draft.choices[i];
        list = refbooks::choices(*field.lookup, m_session.database(), m_session.wording());
        const bool alwaysHasOne = field.lookup == Lookup::Sexes || field.lookup == Lookup::Roles;
        if (field.requirement == Requirement::Optional && !alwaysHasOne)
            list.insert(list.begin(), Choice{});
    }
}

// What a new row begins with: the whole group, the study year, no more rights than needed.
void BookRecord::presetNew()
{
    switch (m_draft.book) {
    case Book::Workload:
        m_draft.value("IDGG").choice = 0;
        m_draft.value("DATNN").date = m_session.yearBegin();
        m_draft.value("DATKK").date = m_session.yearEnd();
        break;
    case Book::TimetableProjects:
        m_draft.value("DAT1").date = m_session.yearBegin();
        m_draft.value("DAT2").date = m_session.yearEnd();
        break;
    case Book::Students:
        m_draft.value("POL").choice = 0;
        break;
    case Book::Users:
        m_draft.value("ROLE").choice = static_cast<int>(shell::Role::User);
        break;
    default:
        break;
    }
}

std::unique_ptr<BookRecord> BookRecord::another() const
{
    auto record = open(m_session, m_prompt, m_draft.book, RecordMode::New);
    if (record)
        record->preset(m_preset);
    return record;
}

void BookRecord::preset(const ListFilter& filter)
{
    m_preset = filter;
    if (m_draft.mode != RecordMode::New || !filter.key)
        return;
    if (m_draft.book == Book::Students) {
        m_draft.value("IDG").choice = filter.key;
        m_draft.value("IDGG").choice = filter.subgroup;
    } else if (m_draft.book == Book::Workload && filter.kind != WorkloadKind::ByRoom) {
        m_draft.value(filter.kind == WorkloadKind::ByTeacher ? "IDP" : "IDG").choice = filter.key;
    }
    m_opened = m_draft.values;
}

void BookRecord::limitTexts()
{
    const jet::TableDef table = m_session.database().tableDef(bookInfo(m_draft.book).table);
    for (std::size_t i = 0; i < m_draft.fields.size(); ++i) {
        const RecordField& field = m_draft.fields[i];
        const jet::Field* column = table.field(field.field);
        int limit = field.limit;
        if (column && column->type == jet::FieldType::Text)
            limit = std::min(limit, column->size);
        const auto length = static_cast<int>(m_draft.values[i].text.size());
        m_maxLengths.push_back(std::max(limit, length));
    }
}

bool BookRecord::read()
{
    return readRecord(m_session.database(), m_draft) || notFound();
}

bool BookRecord::notFound()
{
    const QString which = m_draft.mode == RecordMode::Edit ? u"редактируемая"_s : u"копируемая"_s;
    m_prompt.exclamation(u"Не найдена "_s + which
                         + u" запись. Обновите окно (F3), выделите другую строку."_s);
    return false;
}

QString BookRecord::caption() const
{
    const QString noun = bookNoun(m_draft.book, m_session.wording());
    return noun + u": "_s + (m_draft.mode == RecordMode::New ? u"Новая"_s : rowName());
}

QString BookRecord::rowName() const
{
    if (m_draft.book == Book::Workload)
        return m_draft.choiceText("IDD");
    for (const std::string_view name : {"KAUDI", "FAMIO", "FAM", "Naim", "NAIM"})
        if (std::ranges::find(m_draft.fields, name, &RecordField::field) != m_draft.fields.end())
            return m_draft.text(name);
    return {};
}

void BookRecord::setText(int field, const QString& text)
{
    m_draft.values[at(field)].text = text.left(maxLength(field));
}

bool BookRecord::save()
{
    assert(!m_viewOnly);
    m_failedField = RecordCheck(m_draft, m_session, m_prompt).failedField();
    if (m_failedField)
        return false;
    const auto key = storeRecord(m_session.database(), m_draft);
    if (!key)
        return notFound();
    m_draft.key = *key;
    m_opened = m_draft.values;
    return true;
}

} // namespace refbooks
