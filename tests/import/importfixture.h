#pragma once

#include "data/convert.h"
#include "import/lessonimport.h"
#include "tests/import/timetablefile.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QStringList>

// A journal of its own and what an import brings into it.
class ImportFixture : public testing::Test
{
protected:
    using Lines = std::vector<std::string>;

    // Imports from the file, which must succeed, and reopens the journal.
    imports::ImportCounts import(const QString& path, const shell::Progress& progress = {})
    {
        const auto before = jet::test::bytesOf(data::toPath(path));
        const auto timetable = imports::Timetable::open(path, journal.path());
        const auto choice = imports::chooseLessons(*timetable, period);
        const auto tried = imports::tryImport(*timetable, period, choice, journal.database());
        const auto counts =
            imports::importLessons(*timetable, period, choice, journal.database(), progress);
        EXPECT_TRUE(counts);
        EXPECT_EQ(tried.books, counts->books) << "a trial foretells the import";
        EXPECT_EQ(jet::test::bytesOf(data::toPath(path)), before) << "the source is only read";
        journal.reopen();
        return *counts;
    }
    // Each row as its fields joined by blanks, NULL as "-".
    static Lines rows(jet::Database& database, const std::string& select)
    {
        Lines lines;
        for (const auto& row : database.rows(select)) {
            QStringList fields;
            for (const jet::Value& value : row)
                fields << (value.isNull() ? QStringLiteral("-") : data::toText(value));
            lines.push_back(fields.join(u' ').toStdString());
        }
        return lines;
    }
    Lines rows(const std::string& select) { return rows(journal.database(), select); }
    static const imports::RowCounts& of(const imports::ImportCounts& counts, imports::Book book)
    {
        return counts.books[static_cast<std::size_t>(book)];
    }

    SmallJournal journal;
    imports::Period period{{2024, 10, 1}, {2024, 10, 31}};
};
