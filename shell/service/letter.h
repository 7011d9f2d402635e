#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <functional>

namespace shell {

class LongWork;
class ProgramStarter;
class Prompt;

// A "mailto:" address with the program's details in the body; whom it goes to is left to the
// user, since every institution has its own support.
QUrl supportLetter();

// A copy of a journal on its way into a letter.
struct LetterCopy
{
    QString path;
    QString journal; // the file as the user knows it
};

// Archives the journal's file, proven by reading it back, in a folder of its own below `folder`,
// which is made for the user alone. Empty path when cancelled. Throws jet::Error.
LetterCopy copyForLetter(const QString& journal, const QString& file, const QString& folder,
                         LongWork& work);
// Removes copies that were made more than a day before `now`. They outlive the program that
// made them: mail programs read an attachment as late as when the letter is sent.
void removeOldLetterCopies(const QString& folder, const QDateTime& now);

// Opens a letter with the copy in it. Where the desktop has no program that does, or it fails,
// `showCopy` is to show the copy in the file manager and the user is told to attach it.
void writeLetter(const LetterCopy& copy, ProgramStarter& starter, Prompt& prompt,
                 const std::function<bool(const QString& path)>& showCopy);

} // namespace shell
