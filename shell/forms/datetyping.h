#pragma once

class QApplication;

namespace shell {

// Lets dates be typed into date boxes as they are written. A click selects the part of the date
// that it goes to, and Home the day, so that what is typed replaces it: a full box has no room
// for a digit. The point behind two digits says nothing, since the box has gone on by itself. And
// a date typed as a whole counts as it is: the box alone would make 30.05 of 31.05 while it still
// shows June.
void easeDateTyping(QApplication& program);

} // namespace shell
