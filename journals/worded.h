#pragma once

#include <QString>

namespace shell {
class Wording;
}

namespace journals {

// A text of the journals in the institution's words. The wording's table replaces letters
// wherever they stand; texts that it would spoil ("студента", "параметрах", "подгруппу") have
// their school form here.
QString worded(const shell::Wording& wording, const QString& text);

} // namespace journals
