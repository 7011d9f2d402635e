#pragma once

#include "journals/forms/journalparts.h"
#include "journals/keys.h"
#include "journals/lists.h"
#include "journals/month.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QSpinBox;

namespace journals {

// The boxes of a journal window that say what it shows.
struct SelectorBoxes
{
    QComboBox* group;
    QComboBox* subgroup;
    QComboBox* discipline;
    QComboBox* month;
    QSpinBox* year;
};

// Fills the selectors of a journal window and keeps them in step: another group brings its
// subgroups, and what is taught follows group, subgroup and month.
class JournalSelectors final : public QObject
{
    Q_OBJECT

public:
    using Disciplines = std::vector<ListEntry<DisciplineId>>;
    // What is chosen when the discipline chosen before is not taught.
    enum class Fallback { AllDisciplines, FirstDiscipline, NoDiscipline };
    struct Chosen
    {
        std::optional<GroupId> group;
        std::optional<int> subgroup;
        bool allDisciplines = false;
        std::optional<DisciplineId> discipline;
        Month month;
    };

    // `allDisciplines` is the first entry of the disciplines, `notFilled` begins the message
    // when a list cannot be read.
    JournalSelectors(const JournalParts& parts, const SelectorBoxes& boxes, QString allDisciplines,
                     QString notFilled, QObject* parent);

    // Where the disciplines come from.
    void setDisciplineSource(std::function<Disciplines()> source) { m_source = std::move(source); }
    void setFallback(Fallback fallback) { m_fallback = fallback; }

    // A month of 0 is none; a year of 0 that of the working date.
    void setMonth(int month, int year);
    // Fills the lists and begins to listen.
    void start();

    Chosen chosen() const;
    // Puts the choice back without a signal.
    void restore(const Chosen& choice);
    // Reads the disciplines again, then changed().
    void refreshDisciplines();

signals:
    void changed();

private:
    void fillGroups();
    void fillSubgroups();
    void fillDisciplines();
    void groupChanged();

    JournalParts m_parts;
    SelectorBoxes m_boxes;
    QString m_allDisciplines;
    QString m_notFilled;
    std::function<Disciplines()> m_source;
    Fallback m_fallback = Fallback::AllDisciplines;
};

} // namespace journals
