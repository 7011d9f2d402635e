#include "cli/terminalprompt.h"

namespace cli {

bool TerminalPrompt::question(const QString& text, shell::Answer preset)
{
    const bool yes = m_assumeYes || preset == shell::Answer::Yes;
    m_notices << text.toStdString() << (yes ? " - да" : " - нет") << '\n';
    return yes;
}

shell::Answer TerminalPrompt::saveQuestion(const QString&)
{
    return shell::Answer::Yes;
}

} // namespace cli
