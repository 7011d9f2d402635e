#pragma once

#include "import/lists/importundo.h"
#include "import/lists/listchoice.h"
#include "import/lists/listreport.h"
#include "import/lists/namelookup.h"
#include "refbooks/recorddraft.h"

namespace shell {
class Session;
}

namespace imports {

// Turns rows of texts into records of a book. The lists behind the fields are read once.
class RecordSource
{
public:
    // `blank` is a new record with its presets and lists; `longest` the characters that each text
    // field takes. All references must outlive it. Throws jet::Error.
    RecordSource(shell::Session& session, const refbooks::RecordDraft& blank,
                 const std::vector<int>& longest, const ListChoice& choice, ImportUndo& undo);

    refbooks::RecordDraft& draft() { return m_draft; }
    // A new record, or the stored one of `key`. Throws jet::Error.
    void begin();
    void begin(std::int64_t key);
    // Fills the record; empty cells leave what it holds. Gives why it cannot be, "" when it was
    // done. A name that a list lacks stands for a row still to be created if the choice says so.
    // Throws jet::Error.
    QString fill(const QStringList& cells);
    // Creates these rows and puts their keys into the record, which is to be stored right after.
    // Throws jet::Error.
    void createNamed();

    const std::vector<MissingName>& missing() const { return m_missing; }
    // What messages call the record.
    QString name() const;

private:
    QString fill(int field, const QString& text);
    QString fillList(int field, const QString& text);
    void fillFullName(const QString& text);
    void forgetNamed();
    QString nameMissing(int field, const QString& text);
    MissingName& missingName(int field, const QString& name);

    shell::Session& m_session;
    const refbooks::RecordDraft& m_blank;
    const std::vector<int>& m_longest;
    const ListChoice& m_choice;
    ImportUndo& m_undo;
    refbooks::RecordDraft m_draft;
    std::vector<NameLookup> m_lookups; // for each field
    std::vector<MissingName> m_missing;
    // Rows of other books that the record needs, and the field that does.
    struct Named
    {
        int field = 0;
        refbooks::RecordDraft row;
        QString name;
    };
    std::vector<Named> m_named;
    bool m_isSecondFill = false; // of a row: its missing names are counted already
};

// The book behind a list and its only required field, a text; nothing when a name is not enough
// for a new row there.
std::optional<std::pair<refbooks::Book, std::string_view>>
createdByName(refbooks::Lookup lookup, const shell::Wording& wording);

} // namespace imports
