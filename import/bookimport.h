#pragma once

#include "import/targetbook.h"
#include "import/timetable.h"

#include <array>

namespace imports {

// The books that are imported, in this order.
enum class Book { Specialities, Teachers, LessonTypes, Groups, Disciplines, Workload, Count };
inline constexpr std::size_t kBooks = static_cast<std::size_t>(Book::Count);

// Keys of the timetable to keys of the journal.
class KeyMap
{
public:
    // Of equal keys the first counts.
    void add(const jet::Value& from, std::int64_t to);
    std::optional<std::int64_t> find(const jet::Value& from) const;
    // NULL when there is none.
    jet::Value value(const jet::Value& from) const;

private:
    std::unordered_map<std::int64_t, std::int64_t> m_keys;
};

// The reference rows of a timetable, brought into the journal step by step: each step walks all
// rows of a book, and later ones need the keys of those before. Throws jet::Error.
class BookImport
{
public:
    BookImport(const Timetable& timetable, const Period& period, jet::Database& journal,
               RowSink& sink);

    void run();

    const KeyMap& teachers() const { return m_teachers; }
    const KeyMap& groups() const { return m_groups; }
    const KeyMap& disciplines() const { return m_disciplines; }
    const KeyMap& workload() const { return m_workload; }
    const std::array<RowCounts, kBooks>& counts() const { return m_counts; }
    std::int64_t shortened() const { return m_shortened; }

private:
    void importSpecialities();
    void importTeachers();
    void importLessonTypes();
    void importGroups();
    void importDisciplines();
    void importWorkload();

    std::vector<std::size_t> workloadByLink() const;
    bool isInForce(std::size_t workload) const;
    // Teacher, group, subgroup, discipline; nothing when one of them is not in the timetable.
    std::optional<TargetBook::Matched> workloadPlace(std::size_t row) const;
    // Which journal rows the rows taken are linked to, once all of them have keys.
    void translateLinks(TargetBook& book, const std::vector<std::size_t>& taken);
    void finish(Book which, TargetBook& book);

    const Timetable& m_timetable;
    Period m_period;
    jet::Database& m_journal;
    RowSink& m_sink;
    KeyMap m_specialities, m_teachers, m_groups, m_disciplines, m_workload;
    std::array<RowCounts, kBooks> m_counts;
    std::int64_t m_shortened = 0;
};

} // namespace imports
