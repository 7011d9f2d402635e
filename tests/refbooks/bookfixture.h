#pragma once

#include "data/convert.h"
#include "shell/session.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A session on a journal of its own, in which an administrator works with the reference books.
class BookFixture : public testing::Test
{
protected:
    using Values = std::vector<std::pair<std::string, jet::Value>>;

    explicit BookFixture(shell::Institution institution = shell::Institution::College)
        : session(shell::Wording(institution))
    {
        session.openJournal(journal.release());
    }

    // Closes the file and opens it again, so that only what is stored is seen.
    void reopen()
    {
        session.closeJournal();
        journal.reopen();
        session.openJournal(journal.release());
    }

    std::int64_t add(std::string_view table, const Values& values)
    {
        return session.database().insert(table, values);
    }
    // Each row as its fields joined by blanks, NULL as "-".
    QStringList rows(const std::string& select)
    {
        QStringList lines;
        for (const auto& row : session.database().rows(select)) {
            QStringList fields;
            for (const jet::Value& value : row)
                fields << (value.isNull() ? QStringLiteral("-") : data::toText(value));
            lines << fields.join(u' ');
        }
        return lines;
    }
    void signIn(shell::Role role, std::int64_t id = 2)
    {
        session.signIn({id, QStringLiteral("Петрова"), role});
    }
    // A question whose default is No, as all of the reference books are.
    void expectQuestion(const QString& text, shell::Answer answer = shell::Answer::Yes)
    {
        prompt.expectDefault(Box::Question, text, shell::Answer::No, answer);
    }

    SmallJournal journal;
    shell::Session session;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
};
