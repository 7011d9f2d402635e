#pragma once

#include "journals/forms/journalselectors.h"
#include "journals/gradesheet.h"
#include "journals/studyyears.h"

#include <QList>
#include <QObject>

#include <functional>
#include <vector>

class QComboBox;
class QWidget;

namespace journals {

// The selectors of the grades journal: those of both journals, the kind of grades, and the study
// year. Only what the grid depends on is seen, a month or a study year.
class GradeSelectors final : public QObject
{
    Q_OBJECT

public:
    using Source = std::function<JournalSelectors::Disciplines(const GradeSelection& selection)>;
    struct Boxes
    {
        SelectorBoxes common;
        QComboBox* mode;
        QComboBox* period;
        QList<QWidget*> monthOnly;
        QList<QWidget*> periodOnly;
    };

    GradeSelectors(const JournalParts& parts, const Boxes& boxes, const QString& notFilled,
                   Source disciplines, QObject* parent);

    // Takes over what was chosen in an earlier run and begins to listen.
    void start();
    void save();

    // There are no current grades of all disciplines: the monthly ones are chosen until one
    // discipline is chosen again.
    GradeSelection selection();
    // Puts the choice back without a signal.
    void restore(const GradeSelection& selection);

signals:
    void changed();

private:
    GradeSelection chosen() const;
    void modeChanged();
    void fillPeriods();
    void setMode(GradeMode mode);
    void showNeeded();

    JournalParts m_parts;
    Boxes m_boxes;
    JournalSelectors* m_common = nullptr;
    std::vector<StudyYear> m_years;
    bool m_currentLater = false; // current grades again with the next discipline
};

} // namespace journals
