#pragma once

#include "shell/prompt.h"

#include <QStringList>

#include <utility>

namespace imports {

// Keeps what a check says about one row. Its questions are doubts, not refusals: the row is taken
// and the doubt told.
class CapturingPrompt final : public shell::Prompt
{
public:
    QString takeRefusal() { return std::exchange(m_refusal, {}); }
    QStringList takeDoubts() { return std::exchange(m_doubts, {}); }

    void critical(const QString& text) override { m_refusal = text; }
    void exclamation(const QString& text) override { m_refusal = text; }
    void information(const QString&) override {}
    bool question(const QString& text, shell::Answer) override
    {
        QString doubt = text;
        m_doubts << doubt.remove(QStringLiteral(" Сохранить?"));
        return true;
    }
    shell::Answer saveQuestion(const QString&) override { return shell::Answer::Yes; }

private:
    QString m_refusal;
    QStringList m_doubts;
};

} // namespace imports
