#pragma once

#include <QString>

namespace shell {
class Wording;
}

namespace reports {

// A text of the reports in the institution's words. Texts of several such words, or with forms
// that the wording's table does not hold, have their school form here.
QString worded(const shell::Wording& wording, const QString& text);

} // namespace reports
