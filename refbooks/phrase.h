#pragma once

#include <QString>
#include <QStringView>

namespace shell {
class Wording;
}

namespace refbooks {

// A text of the reference books in the words of both kinds of institution. The wording's table
// replaces word by word: pronouns, endings and words within words ("параметры") of a whole
// sentence would go wrong, and such a sentence brings its school form along.
struct Phrase
{
    QStringView college;
    QStringView school = {}; // empty: the table's words do

    // With the places %1, %2 still to be filled: names of people and rows are never reworded.
    QString in(const shell::Wording& wording) const;
};

} // namespace refbooks
