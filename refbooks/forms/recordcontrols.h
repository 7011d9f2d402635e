#pragma once

#include "refbooks/bookrecord.h"

#include <QObject>

class QLineEdit;
class QWidget;

namespace refbooks {

class LookupBox;
class NoteEdit;

// The controls of a record's fields. Each change goes into the record at once; a text that
// names no date, time or row of the list stays in its control, is marked when the control is
// left, and is told by wrongField().
class RecordControls final : public QObject
{
    Q_OBJECT

public:
    // Makes the controls as children of `parent`. The record must outlive them. `today` is
    // where calendars open.
    RecordControls(BookRecord& record, QDate today, QWidget* parent);

    // In the order of the record's fields; a check box carries its caption itself.
    const std::vector<QWidget*>& widgets() const { return m_widgets; }
    // The first field whose text cannot be taken, and why.
    std::optional<int> wrongField() const;
    const QString& problem(int field) const { return m_problems[static_cast<std::size_t>(field)]; }
    // Gives the field the focus, its text selected.
    void select(int field);

signals:
    void problemsShown(); // one was marked, or is gone

private:
    QWidget* makeControl(int field, QWidget* parent);
    QWidget* makeShown(int field, QWidget* parent);
    QWidget* makeText(int field, QWidget* parent);
    QWidget* makeNote(int field, QWidget* parent);
    QWidget* makeList(int field, QWidget* parent);
    QWidget* makeCheck(int field, QWidget* parent);
    QWidget* makeDate(int field, QWidget* parent);
    QWidget* makeTime(int field, QWidget* parent);
    QString shownText(int field) const;
    const RecordField& info(int field) const;
    void takeChoice(int field, const LookupBox& box);
    void setProblem(int field, const QString& problem);
    void markOnLeaving(int field, QLineEdit* line);

    BookRecord& m_record;
    QDate m_today;
    std::vector<QWidget*> m_widgets;
    std::vector<QString> m_problems; // "" where all is well
};

} // namespace refbooks
