#include "import/bookimport.h"

#include "data/convert.h"

#include <algorithm>
#include <tuple>

namespace imports {
namespace {

const BookLayout kSpecialities{"SPOTD", "IDO", {{"SOKR", true}, {"NAIM", true}}, {"KOD"}};
const BookLayout kTeachers{"SPPREP", "IDP", {{"FAMIO", true}}, {"TABNOM", "MEMO"}};
const BookLayout kLessonTypes{"SPTIPZ", "IDZ", {{"NAIM", true}}, {"MEMO"}};
const BookLayout kGroups{
    "SPGRUP", "IDG", {{"IDO", false}, {"KURS", false}, {"NAIM", true}}, {"IDP", "MEMO"}};
const BookLayout kDisciplines{"SPPRED", "IDD", {{"NAIM", true}}, {"KOD", "MEMO"}};
const BookLayout kWorkload{"SPNAGR",
                           "IDN",
                           {{"IDP", false}, {"IDG", false}, {"IDGG", false}, {"IDD", false}},
                           {"CHSEM", "DATNN", "DATKK", "MEMO", "IDNN"}};
constexpr std::size_t kLink = 4; // among the carried fields of the workload

// What the timetable tells of a field, nothing when it has no such field.
std::optional<jet::Value> told(const SourceTable& table, std::size_t row, std::size_t field)
{
    return table.has(field) ? std::optional(table.value(row, field)) : std::nullopt;
}

} // namespace

void KeyMap::add(const jet::Value& from, std::int64_t to)
{
    if (!from.isNull())
        m_keys.emplace(from.toInteger(), to);
}

std::optional<std::int64_t> KeyMap::find(const jet::Value& from) const
{
    const auto found = from.isNull() ? m_keys.end() : m_keys.find(from.toInteger());
    return found == m_keys.end() ? std::nullopt : std::optional(found->second);
}

jet::Value KeyMap::value(const jet::Value& from) const
{
    const auto found = find(from);
    return found ? jet::Value(*found) : jet::Value();
}

BookImport::BookImport(const Timetable& timetable, const Period& period, jet::Database& journal,
                       RowSink& sink)
    : m_timetable(timetable)
    , m_period(period)
    , m_journal(journal)
    , m_sink(sink)
{}

void BookImport::run()
{
    importSpecialities();
    importTeachers();
    importLessonTypes();
    importGroups();
    importDisciplines();
    importWorkload();
}

void BookImport::finish(Book which, TargetBook& book)
{
    m_counts[static_cast<std::size_t>(which)] = book.finish();
    m_shortened += book.shortened();
}

void BookImport::importSpecialities()
{
    using F = SpecialityField;
    const SourceTable& source = m_timetable.specialities();
    TargetBook book(m_journal, kSpecialities, m_sink);
    for (std::size_t row = 0; row < source.size(); ++row)
        m_specialities.add(source.value(row, F::Key),
                           book.take({source.value(row, F::ShortName), source.value(row, F::Name)},
                                     {told(source, row, F::Code)}));
    finish(Book::Specialities, book);
}

void BookImport::importTeachers()
{
    using F = TeacherField;
    const SourceTable& source = m_timetable.teachers();
    TargetBook book(m_journal, kTeachers, m_sink);
    for (std::size_t row = 0; row < source.size(); ++row)
        m_teachers.add(source.value(row, F::Key),
                       book.take({source.value(row, F::Name)},
                                 {told(source, row, F::Number), told(source, row, F::Note)}));
    finish(Book::Teachers, book);
}

void BookImport::importLessonTypes()
{
    using F = LessonTypeField;
    const SourceTable& source = m_timetable.lessonTypes();
    TargetBook book(m_journal, kLessonTypes, m_sink);
    for (std::size_t row = 0; row < source.size(); ++row)
        book.take({source.value(row, F::Name)}, {told(source, row, F::Note)});
    finish(Book::LessonTypes, book);
}

// A group without a curator in the timetable keeps the one it has in the journal.
void BookImport::importGroups()
{
    using F = GroupField;
    const SourceTable& source = m_timetable.groups();
    TargetBook book(m_journal, kGroups, m_sink);
    for (std::size_t row = 0; row < source.size(); ++row) {
        const auto curator = m_teachers.find(source.value(row, F::Curator));
        m_groups.add(source.value(row, F::Key),
                     book.take({m_specialities.value(source.value(row, F::Speciality)),
                                source.value(row, F::Course), source.value(row, F::Name)},
                               {curator ? std::optional<jet::Value>(*curator) : std::nullopt,
                                told(source, row, F::Note)}));
    }
    finish(Book::Groups, book);
}

void BookImport::importDisciplines()
{
    using F = DisciplineField;
    const SourceTable& source = m_timetable.disciplines();
    TargetBook book(m_journal, kDisciplines, m_sink);
    for (std::size_t row = 0; row < source.size(); ++row)
        m_disciplines.add(source.value(row, F::Key),
                          book.take({source.value(row, F::Name)},
                                    {told(source, row, F::Code), told(source, row, F::Note)}));
    finish(Book::Disciplines, book);
}

// By link, then by key; NULL is first.
std::vector<std::size_t> BookImport::workloadByLink() const
{
    using F = WorkloadField;
    const SourceTable& source = m_timetable.workload();
    std::vector<std::size_t> order(source.size());
    for (std::size_t row = 0; row < order.size(); ++row)
        order[row] = row;
    std::ranges::stable_sort(order, {}, [&source](std::size_t row) {
        const jet::Value& link = source.value(row, F::Link);
        return std::tuple(!link.isNull(), link.toInteger(), source.value(row, F::Key).toInteger());
    });
    return order;
}

// Each bracket lets every date pass: (DATNN >= from or DATNN <= to) and (DATKK >= from or
// DATKK <= to). Only a row without one of its dates is left out.
bool BookImport::isInForce(std::size_t workload) const
{
    using F = WorkloadField;
    const SourceTable& source = m_timetable.workload();
    const auto passes = [&](std::size_t field) {
        const jet::Value& date = source.value(workload, field);
        return !source.has(field)
               || (!date.isNull()
                   && (date.toDate().days >= data::toJet(m_period.from).days
                       || date.toDate().days <= data::toJet(m_period.to).days));
    };
    return passes(F::First) && passes(F::Last);
}

std::optional<TargetBook::Matched> BookImport::workloadPlace(std::size_t row) const
{
    using F = WorkloadField;
    const SourceTable& source = m_timetable.workload();
    const auto teacher = m_teachers.find(source.value(row, F::Teacher));
    const auto group = m_groups.find(source.value(row, F::Group));
    const auto discipline = m_disciplines.find(source.value(row, F::Discipline));
    if (!teacher || !group || !discipline)
        return std::nullopt;
    return TargetBook::Matched{*teacher, *group, source.value(row, F::Subgroup), *discipline};
}

void BookImport::importWorkload()
{
    using F = WorkloadField;
    const SourceTable& source = m_timetable.workload();
    const RowsByKey groups(m_timetable.groups(), GroupField::Key);
    const auto hasSpeciality = [&](std::size_t row) {
        const int group = groups.row(source.value(row, F::Group));
        return group >= 0
               && m_specialities.find(m_timetable.groups().value(static_cast<std::size_t>(group),
                                                                 GroupField::Speciality));
    };
    TargetBook book(m_journal, kWorkload, m_sink);
    std::vector<std::size_t> taken;
    std::vector<std::size_t> left;
    const auto order = workloadByLink();
    for (const std::size_t row : order) {
        const auto place = workloadPlace(row);
        if (!place)
            continue;
        if (!isInForce(row) || !hasSpeciality(row)) {
            left.push_back(row);
            continue;
        }
        taken.push_back(row);
        m_workload.add(source.value(row, F::Key),
                       book.take(*place, {told(source, row, F::Hours), told(source, row, F::First),
                                          told(source, row, F::Last), told(source, row, F::Note),
                                          std::nullopt}));
    }
    // Lessons of a row that is not imported go to the journal's row of that place, if any.
    for (const std::size_t row : left)
        if (const auto key = book.find(*workloadPlace(row)))
            m_workload.add(source.value(row, F::Key), *key);
    if (source.has(F::Link))
        translateLinks(book, taken);
    finish(Book::Workload, book);
}

// A row that is linked to itself is linked to its own new row; one whose link leads to a row
// that is not imported is not linked, which is 0.
void BookImport::translateLinks(TargetBook& book, const std::vector<std::size_t>& taken)
{
    using F = WorkloadField;
    const SourceTable& source = m_timetable.workload();
    for (const std::size_t row : taken) {
        const jet::Value& link = source.value(row, F::Link);
        const std::int64_t key = *m_workload.find(source.value(row, F::Key));
        if (link.isNull() || link.toInteger() == 0)
            book.set(key, kLink, link);
        else
            book.set(key, kLink, m_workload.find(link).value_or(0));
    }
}

} // namespace imports
