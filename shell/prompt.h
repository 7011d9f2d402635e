#pragma once

#include "data/messages.h"

namespace shell {

enum class Answer { Yes, No, Cancel };

// The one door for messages and questions to the user: boxes in the program, the terminal
// in jurnalctl, a script in tests.
class Prompt : public data::Messages
{
public:
    // critical() and information() come from data::Messages.
    virtual void exclamation(const QString& text) = 0; // a refusal or a failed validation
    // A Yes/No question; `preset` is the default button. True when answered Yes.
    virtual bool question(const QString& text, Answer preset = Answer::No) = 0;
    // A question before something that is not easily undone: a warning sign, No the default.
    virtual bool confirm(const QString& text) { return question(text, Answer::No); }
    // Offers one way on, named on its button, beside going back, which is the default. True
    // when it was taken.
    virtual bool offer(const QString& text, const QString& action)
    {
        return question(text + QStringLiteral("\n\n") + action + u'?', Answer::No);
    }
    // Save (Yes), do not save (No) or go back (Cancel), asked before work would be lost.
    virtual Answer saveQuestion(const QString& text) = 0;
};

} // namespace shell
