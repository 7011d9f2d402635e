#pragma once

#include <QList>

class QLabel;

namespace shell {
class Wording;
}

namespace journals {

// Puts the captions of selectors into the institution's words. One that changes gets a new
// access key, free of those of the others and of the main menu.
void wordCaptions(const QList<QLabel*>& labels, const shell::Wording& wording);

} // namespace journals
