#pragma once

#include "data/journal.h"
#include "jet/database.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <memory>
#include <string>

// A journal file of its own for one test, empty but for the rows every new file has. It lies
// in a folder that goes with the object. The methods that add rows give their keys.
//
//     SmallJournal journal;
//     const int group = journal.group("ИС-21");
//     const int student = journal.student(group, "Иванов", "Иван", "Иванович");
class SmallJournal
{
public:
    SmallJournal();
    ~SmallJournal();
    SmallJournal(const SmallJournal&) = delete;
    SmallJournal& operator=(const SmallJournal&) = delete;

    data::Journal& journal() { return *m_journal; }
    jet::Database& database() { return m_journal->database(); }
    QString path() const;

    // Hands the open journal to a session; path() stays valid, the rest may not be called
    // until reopen().
    std::unique_ptr<data::Journal> release() { return std::move(m_journal); }
    // Closes the file and opens it again, as storage tests do before they look.
    void reopen();

    // RASP: whether journals work from the lessons, and the hours of one lesson.
    void options(bool useTimetable, int hoursPerLesson);
    // RASP: the study year.
    void studyYear(QDate first, QDate last);

    int group(const std::string& name);
    // An empty order means enrolled; a subgroup below 0 is stored as NULL.
    int student(int group, const std::string& surname, const std::string& name,
                const std::string& patronymic, int subgroup = -1,
                const std::string& expelledBy = "");
    int discipline(const std::string& name);
    int workload(int group, int discipline, QDate first, QDate last, int subgroup = 0);
    int lesson(int group, int discipline, QDate date, int number, int subgroup = 0);
    void absence(int student, int discipline, QDate date, int lesson, int excused, int unexcused);
    enum class Grade { Current, Monthly, Final };
    void grade(int student, int discipline, QDate date, int grade, Grade kind = Grade::Current);
    void holiday(int day, int month);

    // The rows of POS as "student discipline date lesson uv/nuv", sorted; NULL shows as "-".
    static QStringList absences(jet::Database& database);
    QStringList absences() { return absences(database()); }
    // The rows of USP as "student discipline date grade kind", sorted; the kind is "т" for a
    // current, "м" for a monthly and "и" for a final grade.
    static QStringList grades(jet::Database& database);
    QStringList grades() { return grades(database()); }

private:
    std::filesystem::path m_folder;
    std::unique_ptr<data::Journal> m_journal;
};

// While it lives no file can be written, as on a full disk.
class FailingWrites
{
public:
    FailingWrites();
    ~FailingWrites();
    FailingWrites(const FailingWrites&) = delete;
    FailingWrites& operator=(const FailingWrites&) = delete;
    // False where the system has no such limit.
    static bool possible();
};
