#pragma once

#include "refbooks/listquery.h"
#include "refbooks/recorddraft.h"

#include <memory>

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace refbooks {

// A record dialog without its window: a new row, a copy or a row of any book, its fields,
// their lists, the checks and the storing. The session and the prompt must outlive it.
class BookRecord
{
public:
    // Requires an open session; `key` is that of the row to copy or edit. Null, after a
    // message, when the row is gone or the role may not do this. Throws jet::Error.
    static std::unique_ptr<BookRecord> open(shell::Session& session, shell::Prompt& prompt,
                                            Book book, RecordMode mode, std::int64_t key = 0);

    // Presets what the list is narrowed to: a new student's group, a new workload's teacher.
    void preset(const ListFilter& filter);

    // A further new row of the same book with the same presets. Null as open() is.
    std::unique_ptr<BookRecord> another() const;
    bool isNew() const { return m_draft.mode == RecordMode::New; }

    // "Группа: Новая"; of another row its name instead.
    QString caption() const;
    // Nothing may be changed: the role, or a file opened for reading.
    bool isViewOnly() const { return m_viewOnly; }
    bool isChanged() const { return m_draft.values != m_opened; }

    // A position below is that of a field here.
    const std::vector<RecordField>& fields() const { return m_draft.fields; }
    const FieldValue& value(int field) const { return m_draft.values[at(field)]; }
    const Choices& choices(int field) const { return m_draft.choices[at(field)]; }
    int chosenRow(int field) const { return positionOf(choices(field), value(field).choice); }
    // The most characters a text box takes; a longer text of the file stays whole.
    int maxLength(int field) const { return m_maxLengths[at(field)]; }

    // A text beyond maxLength() is cut.
    void setText(int field, const QString& text);
    void setChoice(int field, std::optional<int> key) { m_draft.values[at(field)].choice = key; }
    void setChecked(int field, bool checked) { m_draft.values[at(field)].checked = checked; }
    void setDate(int field, QDate date) { m_draft.values[at(field)].date = date; }
    void setTime(int field, QTime time) { m_draft.values[at(field)].time = time; }

    // Checks and stores. False after a message: the dialog stays, failedField() has the focus.
    // Throws jet::Error; nothing is stored then. Requires that it is not view-only.
    bool save();
    std::optional<int> failedField() const { return m_failedField; }
    // Of the row stored, for selecting it in the list.
    std::int64_t key() const { return m_draft.key; }

private:
    BookRecord(shell::Session& session, shell::Prompt& prompt, Book book, RecordMode mode,
               std::int64_t key);
    static std::size_t at(int field) { return static_cast<std::size_t>(field); }
    void fillLists();
    void presetNew();
    void limitTexts();
    bool read();
    bool notFound();
    QString rowName() const;

    shell::Session& m_session;
    shell::Prompt& m_prompt;
    RecordDraft m_draft;
    ListFilter m_preset;
    std::vector<FieldValue> m_opened; // as the dialog opened
    std::vector<int> m_maxLengths;
    bool m_viewOnly = false;
    std::optional<int> m_failedField;
};

} // namespace refbooks
