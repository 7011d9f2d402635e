#pragma once

#include "journals/attendance.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QDate>

#include <optional>

// A group with two disciplines; November 2022, lessons of two hours, by workload.
class AttendanceFixture : public testing::Test
{
protected:
    AttendanceFixture()
        : groupKey(journal.group("ИС-21"))
        , mathsKey(journal.discipline("Математика"))
        , physicsKey(journal.discipline("Физика"))
        , attendance(journal.database(), shell::Wording(), prompt, status)
    {
        journal.options(false, 2);
        selection.group = journals::GroupId{groupKey};
        selection.discipline = journals::DisciplineId{mathsKey};
        selection.month = {2022, 11};
    }

    journals::AttendanceSheet load()
    {
        auto sheet = attendance.load(selection);
        EXPECT_TRUE(sheet.has_value()) << status.last().toStdString();
        return sheet.value_or(journals::AttendanceSheet());
    }
    int student(const std::string& surname, int subgroup = -1, const std::string& expelledBy = "")
    {
        return journal.student(groupKey, surname, "Иван", "Иванович", subgroup, expelledBy);
    }

    const QDate day{2022, 11, 12};

    SmallJournal journal;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    int groupKey;
    int mathsKey;
    int physicsKey;
    journals::Attendance attendance;
    journals::AttendanceSelection selection;
};

inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}
