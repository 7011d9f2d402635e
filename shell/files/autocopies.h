#pragma once

#include "shell/files/archive.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QThreadPool>

namespace shell {

class Prompt;
class StatusLine;

// The copies nobody asks for: before the first change of a day and before what changes much.
// The copy itself is made at once, since the change waits for it; it is compressed and the
// outlived copies are removed in another thread.
class AutoCopies final
{
public:
    AutoCopies(Archive archive, Prompt& prompt, StatusLine& status);
    ~AutoCopies(); // waits for the work in the other thread

    const Archive& archive() const { return m_archive; }

    // To be called before every change of the open `journal`, which lies in `file`; copies it
    // unless that was done today. A copy that fails, as on a full disk, is told once a day in
    // the status bar and does not hinder the work: the change itself has a way back and a
    // disk that is really full refuses it anyway.
    void beforeChange(const QString& journal, const QString& file);
    // Before an action that changes much. Where the copy fails the user is asked whether to
    // go on without one; false when not. `action` follows "перед", as "импортом занятий".
    bool beforeAction(const QString& journal, const QString& file, const QString& action);

    // Returns when nothing is left to compress.
    void finish() { m_pool.waitForDone(); }

private:
    void copy(const QString& journal, const QString& file, const QString& reason);
    void compressLater(const ArchivedCopy& plain, const QString& journal);
    void compressLeftovers();

    Archive m_archive;
    Prompt& m_prompt;
    StatusLine& m_status;
    QHash<QString, QDate> m_lastDay; // by journal: when the copy of the day was seen to
    QThreadPool m_pool;              // one thread, so that pruning meets no compressing
};

} // namespace shell
