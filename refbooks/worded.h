#pragma once

#include <QString>

namespace shell {
class Wording;
}

namespace refbooks {

// A caption of the reference books in the institution's words.
QString worded(const shell::Wording& wording, const QString& text);
// A message: every named thing in it is put into the institution's words. It may hold
// placeholders (%1), into which names are placed afterwards, since a group called
// "Группа 1" keeps its name in a school.
QString wordedMessage(const shell::Wording& wording, const QString& text);

} // namespace refbooks
