#include "tests/support/scriptedprompt.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

ScriptedPrompt::~ScriptedPrompt()
{
    for (const Step& step : m_script)
        ADD_FAILURE() << step.box << " was expected and not shown: " << step.text.toStdString();
}

void ScriptedPrompt::expect(Box box, const QString& text, shell::Answer answer)
{
    m_script.push_back({box, text, answer});
}

void ScriptedPrompt::expectDefault(Box box, const QString& text, shell::Answer preset,
                                   shell::Answer answer)
{
    m_script.push_back({box, text, answer, true, preset});
}

void ScriptedPrompt::expectMatching(Box box, const QString& pattern, shell::Answer answer)
{
    m_script.push_back({.box = box, .text = pattern, .answer = answer, .isPattern = true});
}

void ScriptedPrompt::critical(const QString& text)
{
    next(Box::Critical, text);
}

void ScriptedPrompt::exclamation(const QString& text)
{
    next(Box::Exclamation, text);
}

void ScriptedPrompt::information(const QString& text)
{
    next(Box::Information, text);
}

bool ScriptedPrompt::question(const QString& text, shell::Answer preset)
{
    const Step step = next(Box::Question, text);
    if (step.checkPreset) {
        EXPECT_EQ(step.preset, preset) << "default button of: " << text.toStdString();
    }
    return step.answer == shell::Answer::Yes;
}

shell::Answer ScriptedPrompt::saveQuestion(const QString& text)
{
    return next(Box::SaveQuestion, text).answer;
}

ScriptedPrompt::Step ScriptedPrompt::next(Box box, const QString& text)
{
    if (m_script.empty()) {
        ADD_FAILURE() << box << " was not expected: " << text.toStdString();
        return {box, text, shell::Answer::No};
    }
    const Step step = m_script.front();
    m_script.pop_front();
    EXPECT_EQ(step.box, box);
    if (step.isPattern) {
        EXPECT_TRUE(QRegularExpression(step.text).match(text).hasMatch())
            << text.toStdString() << " does not match " << step.text.toStdString();
    } else {
        EXPECT_EQ(step.text.toStdString(), text.toStdString());
    }
    return step;
}

std::ostream& operator<<(std::ostream& out, Box box)
{
    constexpr const char* kNames[] = {"critical box", "exclamation box", "information box",
                                      "question", "save question"};
    return out << kNames[static_cast<int>(box)];
}
