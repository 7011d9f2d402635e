#pragma once

#include "shell/prompt.h"

namespace shell {

// Messages and questions as boxes above the active window. The buttons are Russian through
// Qt's own catalogue; texts are shown as they are, never as markup.
class QtPrompt final : public Prompt
{
public:
    void critical(const QString& text) override;
    void information(const QString& text) override;
    void exclamation(const QString& text) override;
    bool question(const QString& text, Answer preset) override;
    bool confirm(const QString& text) override;
    bool offer(const QString& text, const QString& action) override;
    Answer saveQuestion(const QString& text) override;
};

} // namespace shell
