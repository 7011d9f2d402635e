#pragma once

#include "shell/prompt.h"
#include "shell/statusline.h"

#include <QStringList>

#include <deque>
#include <ostream>

enum class Box { Critical, Exclamation, Information, Question, SaveQuestion };

// A Prompt with a script. Each box must be the next expected one, with that very text; any
// other fails the running test at once. The destructor fails when the script is not done.
//
//     prompt.expect(Box::Question, u"Удалить выделенную строку?"_s, shell::Answer::Yes);
//     ...
//     EXPECT_TRUE(prompt.done());
class ScriptedPrompt final : public shell::Prompt
{
public:
    ~ScriptedPrompt() override;

    void expect(Box box, const QString& text, shell::Answer answer = shell::Answer::Yes);
    // As expect(), and the question must come with this default button.
    void expectDefault(Box box, const QString& text, shell::Answer preset, shell::Answer answer);
    // A box whose text matches a regular expression, where the engine words part of it.
    void expectMatching(Box box, const QString& pattern, shell::Answer answer = shell::Answer::Yes);
    bool done() const { return m_script.empty(); }

    void critical(const QString& text) override;
    void exclamation(const QString& text) override;
    void information(const QString& text) override;
    bool question(const QString& text, shell::Answer preset) override;
    shell::Answer saveQuestion(const QString& text) override;

private:
    struct Step
    {
        Box box;
        QString text;
        shell::Answer answer;
        bool checkPreset = false;
        shell::Answer preset = shell::Answer::No;
        bool isPattern = false;
    };
    Step next(Box box, const QString& text);

    std::deque<Step> m_script;
};

// Remembers every status text.
class RecordingStatusLine final : public shell::StatusLine
{
public:
    void show(const QString& text) override { texts << text; }
    QString last() const { return texts.isEmpty() ? QString() : texts.last(); }

    QStringList texts;
};

std::ostream& operator<<(std::ostream& out, Box box);
