#pragma once

#include "shell/prompt.h"
#include "shell/statusline.h"

#include <QString>

#include <ostream>

namespace cli {

// Notices go to a stream, refusals are kept for the caller to fail with; questions are
// answered with their default, or with Yes when the command line says so.
class TerminalPrompt final : public shell::Prompt
{
public:
    explicit TerminalPrompt(std::ostream& notices, bool assumeYes = false)
        : m_notices(notices)
        , m_assumeYes(assumeYes)
    {}

    // The last refusal, "" if there was none.
    const QString& refusal() const { return m_refusal; }

    void critical(const QString& text) override { m_refusal = text; }
    void exclamation(const QString& text) override { m_refusal = text; }
    void information(const QString& text) override { m_notices << text.toStdString() << '\n'; }
    bool question(const QString& text, shell::Answer preset) override;
    shell::Answer saveQuestion(const QString& text) override;

private:
    std::ostream& m_notices;
    bool m_assumeYes;
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
