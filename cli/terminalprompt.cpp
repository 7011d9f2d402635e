#include "cli/terminalprompt.h"

#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

TerminalPrompt::~TerminalPrompt()
{
    if (std::uncaught_exceptions() > m_exceptions)
        return;
    for (const QString& notice : m_notices)
        m_stream << notice.toStdString() << '\n';
}

QString TerminalPrompt::refusal() const
{
    if (refused() || m_notices.isEmpty())
        return m_refusal;
    return m_notices.last();
}

bool TerminalPrompt::question(const QString& text, shell::Answer preset)
{
    const bool yes = m_assumeYes || preset == shell::Answer::Yes;
    m_notices << text + (yes ? u" - да"_s : u" - нет"_s);
    return yes;
}

shell::Answer TerminalPrompt::saveQuestion(const QString&)
{
    return shell::Answer::Yes;
}

} // namespace cli
