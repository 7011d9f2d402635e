#include "import/lists/listimport.h"

#include "data/convert.h"
#include "import/lists/capturingprompt.h"
#include "import/lists/existingrows.h"
#include "import/lists/recordsource.h"
#include "import/tables/readtable.h"
#include "jet/database.h"
#include "jet/error.h"
#include "refbooks/bookrecord.h"
#include "refbooks/recordcheck.h"
#include "refbooks/recordstore.h"
#include "shell/session.h"

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

using refbooks::Book;
using refbooks::RecordDraft;

constexpr std::size_t kRowsBetweenReports = 64;
constexpr int kDone = 100;

// A row that cannot be stored, as opposed to a file that cannot be written.
bool isOfRow(jet::Fault fault)
{
    return fault == jet::Fault::Type || fault == jet::Fault::Overflow
           || fault == jet::Fault::NullValue || fault == jet::Fault::Duplicate;
}

// Takes one row after the other into the book.
class RowTaker
{
public:
    RowTaker(shell::Session& session, RecordSource& source, ExistingRows& existing,
             ExistingRow policy, ImportUndo& undo)
        : m_session(session)
        , m_source(source)
        , m_existing(existing)
        , m_policy(policy)
        , m_undo(undo)
    {}

    RowResult take(const TextRow& row)
    {
        m_source.begin();
        const QString reason = m_source.fill(row.cells);
        RowResult result{.number = row.number, .name = m_source.name()};
        if (!reason.isEmpty())
            return refused(result, reason);
        const auto keys = m_policy == ExistingRow::AddAnyway ? std::vector<std::int64_t>()
                                                             : m_existing.find(m_source.draft());
        if (keys.empty())
            return stored(result, RowOutcome::Added);
        if (m_policy == ExistingRow::Skip) {
            result.outcome = RowOutcome::Skipped;
            result.reason = u"Такая строка уже есть в справочнике."_s;
            return result;
        }
        if (keys.size() > 1)
            return refused(result, u"Таких строк в справочнике несколько."_s);
        return update(result, row, keys.front());
    }

private:
    static RowResult refused(RowResult result, const QString& reason)
    {
        result.outcome = RowOutcome::Refused;
        result.reason = reason;
        return result;
    }

    RowResult update(RowResult result, const TextRow& row, std::int64_t key)
    {
        m_source.begin(key);
        const std::vector<refbooks::FieldValue> before = m_source.draft().values;
        if (const QString reason = m_source.fill(row.cells); !reason.isEmpty())
            return refused(result, reason);
        if (m_source.draft().values == before) {
            result.outcome = RowOutcome::Skipped;
            result.reason = u"Строка справочника не отличается."_s;
            return result;
        }
        return stored(result, RowOutcome::Updated);
    }

    RowResult stored(RowResult result, RowOutcome outcome)
    {
        const RecordDraft& draft = m_source.draft();
        m_prompt.takeDoubts(); // of a row refused before
        if (refbooks::RecordCheck(draft, m_session, m_prompt).failedField())
            return refused(result, m_prompt.takeRefusal());
        try {
            m_source.createNamed();
            // Only now: what is taken back goes backwards, and the row before the names it uses.
            if (outcome == RowOutcome::Updated)
                m_undo.changing(m_session.database(), draft.book, draft.key);
            const auto key = refbooks::storeRecord(m_session.database(), draft);
            if (outcome == RowOutcome::Added)
                m_undo.added(draft.book, *key);
            m_existing.add(draft, *key);
        } catch (const jet::Error& error) {
            if (!isOfRow(error.fault()))
                throw;
            return refused(result, data::fromUtf8(error.what()));
        }
        result.outcome = outcome;
        result.reason = m_prompt.takeDoubts().join(u' ');
        return result;
    }

    shell::Session& m_session;
    RecordSource& m_source;
    ExistingRows& m_existing;
    ExistingRow m_policy;
    ImportUndo& m_undo;
    CapturingPrompt m_prompt;
};

} // namespace

TextTable readSource(shell::Session& session, const QString& path, const QString& sheet)
{
    std::error_code none;
    // A second opening in one process would also let go of the journal's lock.
    if (std::filesystem::equivalent(data::toPath(path), data::toPath(session.journal().filePath()),
                                    none))
        throw jet::Error(jet::Fault::Locked, "это файл открытого журнала");
    return readTable(path, sheet);
}

std::unique_ptr<ListImport> ListImport::open(shell::Session& session, shell::Prompt& prompt,
                                             Book book, TextTable table)
{
    if (book == Book::Users || book == Book::Lessons) {
        prompt.exclamation(u"В этот справочник списки не импортируются."_s);
        return nullptr;
    }
    if (session.database().readOnly()) {
        prompt.exclamation(u"Файл открыт только для чтения, импорт невозможен."_s);
        return nullptr;
    }
    if (table.rows.size() < 2) {
        prompt.exclamation(u"В файле нет строк для импорта: нужны строка с названиями граф и хотя "
                           "бы одна строка под ней."_s);
        return nullptr;
    }
    // Presets, lists and limits are those of the record dialog.
    const auto record =
        refbooks::BookRecord::open(session, prompt, book, refbooks::RecordMode::New);
    if (!record || record->isViewOnly())
        return nullptr;
    RecordDraft blank{.book = book, .fields = record->fields()};
    std::vector<int> longest;
    for (int field = 0; field < static_cast<int>(blank.fields.size()); ++field) {
        blank.values.push_back(record->value(field));
        blank.choices.push_back(record->choices(field));
        longest.push_back(record->maxLength(field));
    }
    return std::unique_ptr<ListImport>(
        new ListImport(session, std::move(blank), std::move(longest), std::move(table)));
}

ListImport::ListImport(shell::Session& session, RecordDraft blank, std::vector<int> longest,
                       TextTable table)
    : m_session(session)
    , m_blank(std::move(blank))
    , m_longest(std::move(longest))
    , m_table(std::move(table))
{}

const refbooks::Choices& ListImport::groups() const
{
    return m_blank.choices[static_cast<std::size_t>(m_blank.position("IDG"))];
}

ListChoice ListImport::guess(const ColumnNames& known) const
{
    return {.columns = matchColumns(m_blank.book, m_blank.fields, m_table, known)};
}

QString ListImport::problem(const ListChoice& choice) const
{
    const auto fills = [&](int field) {
        return std::ranges::find(choice.columns.fields, field) != choice.columns.fields.end();
    };
    if (std::ranges::all_of(choice.columns.fields, [](int field) { return field == kNoField; }))
        return u"Ни одна графа файла не соответствует полю справочника."_s;
    for (int field = 0; field < static_cast<int>(m_blank.fields.size()); ++field)
        if (std::ranges::count(choice.columns.fields, field) > 1)
            return u"Поле \"%1\" выбрано для двух граф: оставьте одну."_s.arg(
                m_blank.fields[static_cast<std::size_t>(field)].name());
    if (choice.columns.headRow + 1 >= m_table.rows.size())
        return u"Под названиями граф нет строк."_s;
    if (m_blank.book == Book::Students && !choice.group && !fills(m_blank.position("IDG")))
        return m_session.wording().isSchool()
                   ? u"В файле нет графы с классом: выберите класс для всех."_s
                   : u"В файле нет графы с группой: выберите группу для всех."_s;
    return {};
}

RecordDraft ListImport::blankFor(const ListChoice& choice) const
{
    RecordDraft blank = m_blank;
    if (blank.book == Book::Students && choice.group)
        blank.value("IDG").choice = choice.group;
    return blank;
}

std::optional<ListReport> ListImport::pass(const ListChoice& choice, ImportUndo& undo,
                                           const shell::Progress& progress)
{
    const RecordDraft blank = blankFor(choice);
    RecordSource source(m_session, blank, m_longest, choice, undo);
    ExistingRows existing(m_session.database(), blank);
    RowTaker taker(m_session, source, existing, choice.existing, undo);
    ListReport report;
    const std::size_t first = choice.columns.headRow + 1;
    for (std::size_t row = first; row < m_table.rows.size(); ++row) {
        report.rows.push_back(taker.take(m_table.rows[row]));
        const auto percent = static_cast<int>((row - first) * kDone / m_table.rows.size());
        if (progress && row % kRowsBetweenReports == 0 && !progress(percent))
            return {};
    }
    report.missing = source.missing();
    return report;
}

std::optional<ListReport> ListImport::preview(const ListChoice& choice,
                                              const shell::Progress& progress)
{
    ImportUndo none;
    const jet::Transaction takenBack(m_session.database());
    return pass(choice, none, progress);
}

std::optional<ListReport> ListImport::run(const ListChoice& choice, const shell::Progress& progress)
{
    if (!m_session.beforeMassAction(u"импортом списка"_s))
        return {};
    ImportUndo undo;
    jet::Transaction transaction(m_session.database());
    auto report = pass(choice, undo, progress);
    if (!report)
        return {};
    undo.finish(m_session.database());
    transaction.commit();
    m_undo = std::move(undo);
    if (progress)
        progress(kDone);
    return report;
}

bool ListImport::undo(shell::Prompt& prompt)
{
    const QString refusal = m_undo.undo(m_session.database());
    if (!refusal.isEmpty())
        prompt.exclamation(refusal);
    return refusal.isEmpty();
}

} // namespace imports
