#include "tests/support/smalljournal.h"

#include "data/convert.h"
#include "data/messages.h"
#include "data/settingsrow.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

class ThrowingMessages final : public data::Messages
{
public:
    void critical(const QString& text) override { throw std::runtime_error(text.toStdString()); }
    void information(const QString&) override {}
};

// A process that was killed may have left folders behind, and its number may come again.
fs::path freshFolder()
{
    static std::atomic<int> number = 0;
    const auto name = "journal-" + std::to_string(QCoreApplication::applicationPid()) + "-";
    for (;;) {
        fs::path folder = fs::temp_directory_path() / (name + std::to_string(++number));
        if (fs::create_directory(folder))
            return folder;
    }
}

std::unique_ptr<data::Journal> opened(const fs::path& path, bool create)
{
    ThrowingMessages messages;
    return data::Journal::openAndCheck(data::fromPath(path), create, messages);
}

// Creating a journal takes longer than copying one: it is done once a process.
struct Template
{
    Template()
        : folder(freshFolder())
    {
        opened(folder / "empty.mdb", true);
    }
    ~Template()
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    fs::path folder;
};

using Values = std::vector<std::pair<std::string, jet::Value>>;

int added(jet::Database& database, std::string_view table, const Values& values)
{
    return static_cast<int>(database.insert(table, values));
}

std::string orDash(const jet::Value& value)
{
    return value.isNull() ? "-" : value.toText();
}

} // namespace

SmallJournal::SmallJournal()
    : m_folder(freshFolder())
{
    static const Template empty;
    fs::copy_file(empty.folder / "empty.mdb", m_folder / "journal.mdb");
    reopen();
}

SmallJournal::~SmallJournal()
{
    m_journal.reset();
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

QString SmallJournal::path() const
{
    return data::fromPath(m_folder / "journal.mdb");
}

void SmallJournal::reopen()
{
    m_journal.reset();
    m_journal = opened(m_folder / "journal.mdb", false);
}

void SmallJournal::options(bool useTimetable, int hoursPerLesson)
{
    data::SettingsRow row = m_journal->settings();
    row.useTimetable = useTimetable;
    row.hoursPerLesson = hoursPerLesson;
    data::writeSettingsRow(database(), row);
}

void SmallJournal::studyYear(QDate first, QDate last)
{
    data::SettingsRow row = m_journal->settings();
    row.yearBegin = first;
    row.yearEnd = last;
    data::writeSettingsRow(database(), row);
}

int SmallJournal::group(const std::string& name)
{
    return added(database(), "SPGRUP", {{"NAIM", name}});
}

int SmallJournal::student(int group, const std::string& surname, const std::string& name,
                          const std::string& patronymic, int subgroup,
                          const std::string& expelledBy)
{
    Values values = {{"IDG", group}, {"FAM", surname}, {"IM", name}, {"OTCH", patronymic}};
    if (subgroup >= 0)
        values.emplace_back("IDGG", subgroup);
    if (!expelledBy.empty())
        values.emplace_back("prikazOtch", expelledBy);
    return added(database(), "SPSTUD", values);
}

int SmallJournal::discipline(const std::string& name)
{
    return added(database(), "SPPRED", {{"NAIM", name}});
}

int SmallJournal::workload(int group, int discipline, QDate first, QDate last, int subgroup)
{
    return added(database(), "SPNAGR",
                 {{"IDG", group},
                  {"IDD", discipline},
                  {"DATNN", data::toJet(first)},
                  {"DATKK", data::toJet(last)},
                  {"IDGG", subgroup}});
}

int SmallJournal::lesson(int group, int discipline, QDate date, int number, int subgroup)
{
    return added(database(), "UROKI",
                 {{"IDG", group},
                  {"IDD", discipline},
                  {"DAT", data::toJet(date)},
                  {"UR", number},
                  {"IDGG", subgroup}});
}

void SmallJournal::absence(int student, int discipline, QDate date, int lesson, int excused,
                           int unexcused)
{
    added(database(), "POS",
          {{"ID", student},
           {"IDD", discipline},
           {"dat", data::toJet(date)},
           {"UR", lesson},
           {"uv", excused},
           {"nuv", unexcused}});
}

void SmallJournal::grade(int student, int discipline, QDate date, int grade, Grade kind)
{
    added(database(), "USP",
          {{"ID", student},
           {"IDD", discipline},
           {"DAT", data::toJet(date)},
           {"OC", grade},
           {"it", kind == Grade::Final},
           {"TEK", kind == Grade::Current}});
}

void SmallJournal::holiday(int day, int month)
{
    added(database(), "HOLI", {{"DAY", day}, {"MN", month}});
}

QStringList SmallJournal::absences(jet::Database& database)
{
    QStringList lines;
    for (const auto& row : database.rows("SELECT ID, IDD, dat, UR, uv, nuv FROM POS;"))
        lines << QString::fromStdString(orDash(row[0]) + " " + orDash(row[1]) + " " + orDash(row[2])
                                        + " " + orDash(row[3]) + " " + orDash(row[4]) + "/"
                                        + orDash(row[5]));
    lines.sort();
    return lines;
}

QStringList SmallJournal::grades(jet::Database& database)
{
    QStringList lines;
    for (const auto& row : database.rows("SELECT ID, IDD, DAT, OC, it, TEK FROM USP;"))
        lines << QString::fromStdString(orDash(row[0]) + " " + orDash(row[1]) + " " + orDash(row[2])
                                        + " " + orDash(row[3])
                                        + (row[5].toBool()   ? " т"
                                           : row[4].toBool() ? " и"
                                                             : " м"));
    lines.sort();
    return lines;
}

#ifdef _WIN32

FailingWrites::FailingWrites() = default;
FailingWrites::~FailingWrites() = default;

bool FailingWrites::possible()
{
    return false;
}

#else

namespace {

void limitFileSize(rlim_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

FailingWrites::FailingWrites()
{
    std::signal(SIGXFSZ, SIG_IGN); // the write gives EFBIG instead
    limitFileSize(0);
}

FailingWrites::~FailingWrites()
{
    limitFileSize(RLIM_INFINITY);
    std::signal(SIGXFSZ, SIG_DFL);
}

bool FailingWrites::possible()
{
    return true;
}

#endif
