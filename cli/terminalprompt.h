#pragma once

#include "shell/prompt.h"
#include "shell/statusline.h"

#include <QString>
#include <QStringList>

#include <exception>
#include <iosfwd>

namespace cli {

// Keeps notices until the command is done, since a command that fails says one line only;
// questions are answered with their default, or with Yes when the command line says so.
class TerminalPrompt final : public shell::Prompt
{
public:
    explicit TerminalPrompt(std::ostream& notices, bool assumeYes = false)
        : m_stream(notices)
        , m_assumeYes(assumeYes)
    {}
    TerminalPrompt(const TerminalPrompt&) = delete;
    TerminalPrompt& operator=(const TerminalPrompt&) = delete;
    // Prints the notices unless an exception ends the command.
    ~TerminalPrompt() override;

    // Why something was not done: the last refusal, else the last notice, else "".
    QString refusal() const;
    bool refused() const { return !m_refusal.isEmpty(); }

    void critical(const QString& text) override { m_refusal = text; }
    void exclamation(const QString& text) override { m_refusal = text; }
    void information(const QString& text) override { m_notices << text; }
    bool question(const QString& text, shell::Answer preset) override;
    shell::Answer saveQuestion(const QString& text) override;

private:
    std::ostream& m_stream;
    bool m_assumeYes;
    int m_exceptions = std::uncaught_exceptions();
    QStringList m_notices;
    QString m_refusal;
};

// Keeps the last status text.
class LastStatus final : public shell::StatusLine
{
public:
    void show(const QString& text) override { m_text = text; }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};

} // namespace cli
