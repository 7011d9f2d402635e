#pragma once

#include <QString>

namespace shell {
class Wording;
}

namespace imports {

// A text of the import in the institution's words. It may hold placeholders (%1), into which
// names are placed afterwards.
QString worded(const shell::Wording& wording, const QString& text);

} // namespace imports
