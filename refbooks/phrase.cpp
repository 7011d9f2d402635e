#include "refbooks/phrase.h"

#include "refbooks/worded.h"
#include "shell/wording.h"

namespace refbooks {

QString Phrase::in(const shell::Wording& wording) const
{
    if (!wording.isSchool() || school.isEmpty())
        return wordedMessage(wording, college.toString());
    return school.toString();
}

} // namespace refbooks
