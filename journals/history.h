#pragma once

#include "journals/keys.h"

#include "jet/value.h"

#include <QDate>
#include <QString>

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace jet {
class Database;
}

namespace journals {

enum class JournalTable { Absences, Grades }; // POS, USP

// Rows that an action may touch: those of a student over some days, both included, in one
// discipline or in all.
struct RowScope
{
    JournalTable table = JournalTable::Absences;
    StudentId student{};
    std::optional<DisciplineId> discipline;
    QDate from;
    QDate to;
};

// What was done in an open journal, to be taken back and done again. It remembers the rows of
// POS and USP before and after each step, so it serves every kind of action alike. Taking a
// step back is a durable write like any other.
class History
{
public:
    static constexpr std::size_t kMostSteps = 200; // the oldest is forgotten beyond that

    explicit History(jet::Database& database);

    // Runs the action as one durable step and remembers what it changed in the scopes, which may
    // overlap; an action that changed nothing there is no step. `text` names the step in the menu:
    // "пропуск, Иванов И. И., 12.11". What the action or the file throws is passed on; nothing is
    // changed or remembered then.
    void record(const QString& text, std::span<const RowScope> scopes,
                const std::function<void()>& action);

    // The step that comes next, "" when there is none.
    QString undoText() const { return m_done == 0 ? QString() : m_steps[m_done - 1].text; }
    QString redoText() const { return m_done == m_steps.size() ? QString() : m_steps[m_done].text; }

    // False when there is no step, or when the rows were changed elsewhere since: then nothing
    // is written and the steps are forgotten, as no order of them is safe any more. Throws
    // jet::Error; nothing is changed then.
    bool undo();
    bool redo();

    void clear();

private:
    // All rows of a student in a discipline on one date.
    struct Place
    {
        JournalTable table;
        StudentId student;
        DisciplineId discipline;
        QDate date;
        friend auto operator<=>(const Place& left, const Place& right)
        {
            const auto key = [](const Place& place) {
                return std::tuple(place.table, place.student, place.discipline,
                                  place.date.toJulianDay());
            };
            return key(left) <=> key(right);
        }
        friend bool operator==(const Place& left, const Place& right) = default;
    };
    struct Row
    {
        Place place;
        std::vector<std::pair<std::string, jet::Value>> values; // of all columns, by name
        friend bool operator==(const Row&, const Row&) = default;
    };
    using Rows = std::vector<Row>;
    struct Change
    {
        Place place;
        Rows before;
        Rows after;
    };
    struct Step
    {
        QString text;
        std::vector<Change> changes;
    };

    Rows read(const RowScope& scope) const;
    Rows read(std::span<const RowScope> scopes) const;
    static bool sameRows(const Rows& left, const Rows& right);
    static std::vector<Change> differences(const Rows& before, const Rows& after);
    bool replace(const Step& step, Rows Change::*expected, Rows Change::*wanted);

    jet::Database& m_database;
    std::deque<Step> m_steps;
    std::size_t m_done = 0; // the steps before it are done, those from it on taken back
};

} // namespace journals
