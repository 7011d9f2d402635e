#pragma once

#include "import/lists/importundo.h"
#include "import/lists/listchoice.h"
#include "import/lists/listreport.h"
#include "import/tables/texttable.h"
#include "refbooks/recorddraft.h"
#include "shell/files/longwork.h"

#include <memory>

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace imports {

class RecordSource;

// Reads the file that an import comes from. Throws jet::Error, also for the open journal itself.
TextTable readSource(shell::Session& session, const QString& path, const QString& sheet = {});

// The rows of a table on their way into a reference book. Each is checked as the record dialog
// checks it. A preview does the whole work and takes it back, so it says what a run will do.
class ListImport
{
public:
    // Requires an open session, which must outlive it. Null, after a message, when this may not
    // be done or the table has no rows. Throws jet::Error.
    static std::unique_ptr<ListImport> open(shell::Session& session, shell::Prompt& prompt,
                                            refbooks::Book book, TextTable table);

    const std::vector<refbooks::RecordField>& fields() const { return m_blank.fields; }
    const TextTable& table() const { return m_table; }
    // The groups that students can go to.
    const refbooks::Choices& groups() const;

    // What is set until the user changes it: the columns as known from before or guessed.
    ListChoice guess(const ColumnNames& known = {}) const;
    // Why such a choice cannot be carried out, "" when it can.
    QString problem(const ListChoice& choice) const;

    // Both require that there is no problem(); nothing when `progress` cancelled. Throw jet::Error.
    std::optional<ListReport> preview(const ListChoice& choice,
                                      const shell::Progress& progress = {});
    // A copy of the file is made first; nothing too when the user would not go on without it.
    std::optional<ListReport> run(const ListChoice& choice, const shell::Progress& progress = {});

    bool canUndo() const { return !m_undo.isEmpty(); }
    // Takes back the last run. False after a message. Throws jet::Error.
    bool undo(shell::Prompt& prompt);

private:
    ListImport(shell::Session& session, refbooks::RecordDraft blank, std::vector<int> longest,
               TextTable table);
    std::optional<ListReport> pass(const ListChoice& choice, ImportUndo& undo,
                                   const shell::Progress& progress);
    refbooks::RecordDraft blankFor(const ListChoice& choice) const;

    shell::Session& m_session;
    refbooks::RecordDraft m_blank;
    std::vector<int> m_longest; // characters of each field
    TextTable m_table;
    ImportUndo m_undo;
};

} // namespace imports
