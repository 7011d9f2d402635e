#include "bench/workloads.h"

#include "bench/peer.h"
#include "bench/reports.h"
#include "bench/truancy.h"

#include "data/journal.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "journals/attendance.h"
#include "journals/gradebook.h"
#include "shell/prompt.h"
#include "shell/statusline.h"
#include "shell/wording.h"

#include <QString>

#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace bench {

namespace {

constexpr int kLookups = 100;
constexpr int kInserts = 20'000;

// Any message means that the benchmark does not do what it says.
class Silent final : public shell::Prompt, public shell::StatusLine
{
public:
    void critical(const QString& text) override { refuse(text); }
    void information(const QString& text) override { refuse(text); }
    void exclamation(const QString& text) override { refuse(text); }
    bool question(const QString& text, shell::Answer) override
    {
        refuse(text);
        return false;
    }
    shell::Answer saveQuestion(const QString& text) override
    {
        refuse(text);
        return shell::Answer::Cancel;
    }
    void show(const QString&) override {}

private:
    static void refuse(const QString& text) { throw std::runtime_error(text.toStdString()); }
};

void run(const std::string& command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error(command + " failed");
}

std::string insertText(int number, bool native)
{
    const std::string date = native ? "45931.0" : "#10/01/2025#";
    return "INSERT INTO POS (ID, DAT, UR, IDD, nuv, uv) VALUES (" + std::to_string(number % 3000)
           + ", " + date + ", 1, " + std::to_string(number % 80) + ", 1, 0);";
}

Comparison scan(Bench& bench, const std::string& table, const std::string& sums)
{
    const std::string sql = "SELECT " + sums + " FROM " + table + ";";
    return {"scan with a sum, " + table, "native SQLite", 1.5,
            [&bench, sql] { readAll(bench.journal.database(), sql); },
            [&bench, sql] { bench.peer.query(sql); }};
}

Comparison exportTable(Bench& bench, const std::string& table)
{
    const std::string file = "\"" + bench.journal.path().string() + "\"";
    const std::string ours = "\"" + bench.jurnalctl.string() + "\" sql " + file
                             + " \"SELECT * FROM " + table + ";\" --csv >/dev/null";
    const std::string peers = "mdb-export " + file + " " + table + " >/dev/null";
    // The file is locked while open here.
    return {
        "export of " + table + " as CSV", "mdb-export", 0.2, [ours] { run(ours); },
        [peers] { run(peers); },          Clock::Wall,  5,   [&bench] { bench.journal.close(); }};
}

Comparison month(Bench& bench)
{
    const auto ours = [&bench] { fillMonth(bench.journal.database()); };
    // The same questions: students, balance, cells of the month, lessons of the month.
    const auto peers = [&bench] {
        const std::string where = " WHERE s.IDG=7 AND (prikazOtch='' OR prikazOtch IS NULL)";
        bench.peer.query("SELECT * FROM SPSTUD s" + where + " ORDER BY FAM, IM, OTCH, ID");
        bench.peer.query("SELECT p.ID, sum(uv), sum(nuv) FROM POS p JOIN SPSTUD s ON p.ID=s.ID"
                         + where + " AND p.dat<46082 AND p.dat>=45901 GROUP BY p.ID");
        bench.peer.query("SELECT p.ID, p.dat, sum(uv), sum(nuv) FROM POS p JOIN SPSTUD s ON"
                         " p.ID=s.ID"
                         + where + " AND p.dat>=46082 AND p.dat<=46112 GROUP BY p.ID, p.dat");
        bench.peer.query("SELECT DAT FROM UROKI WHERE IDG=7 AND DAT>=46082 AND DAT<=46112");
    };
    return {"attendance month of one group", "native SQLite, indexed", 3.0, ours, peers};
}

Comparison lookups(Bench& bench)
{
    const auto sql = [](int i) {
        return "SELECT * FROM POS WHERE ID=" + std::to_string(1 + i * 29) + " AND UR=2;";
    };
    return {"100 look-ups in POS by student", "native SQLite, indexed", 3.0,
            [&bench, sql] {
                for (int i = 0; i < kLookups; ++i)
                    readAll(bench.journal.database(), sql(i));
            },
            [&bench, sql] {
                for (int i = 0; i < kLookups; ++i)
                    bench.peer.query(sql(i));
            }};
}

Comparison inserts(Bench& bench)
{
    return {"20,000 inserts in one transaction",
            "native SQLite",
            3.0,
            [&bench] {
                jet::Transaction transaction(bench.journal.database());
                for (int i = 0; i < kInserts; ++i)
                    bench.journal.database().execute(insertText(i, false));
                transaction.commit();
            },
            [&bench] {
                bench.peer.execute("BEGIN");
                for (int i = 0; i < kInserts; ++i)
                    bench.peer.execute(insertText(i, true));
                bench.peer.execute("COMMIT");
            },
            Clock::Wall,
            3};
}

Comparison durableMark(Bench& bench)
{
    return {"one durable mark",
            "native SQLite, synchronous",
            1.1,
            [&bench] { bench.journal.database().execute(insertText(1, false)); },
            [&bench] { bench.peer.execute(insertText(1, true)); },
            Clock::Wall,
            31};
}

Comparison opening(Bench& bench)
{
    const auto reopen = [&bench] {
        bench.journal.close();
        bench.journal.database();
    };
    const auto scanColdly = [&bench, reopen] {
        reopen();
        readAll(bench.journal.database(), "SELECT Sum(uv) FROM POS;");
        readAll(bench.journal.database(), "SELECT Sum(OC) FROM USP;");
        readAll(bench.journal.database(), "SELECT Sum(UR) FROM UROKI;");
    };
    return {"opening and checking the file",
            "opening and scanning it",
            0.1,
            reopen,
            scanColdly,
            Clock::Processor,
            5};
}

} // namespace

OpenJournal::OpenJournal(std::filesystem::path path)
    : m_path(std::move(path))
{}

OpenJournal::~OpenJournal() = default;

jet::Database& OpenJournal::database()
{
    Silent silent;
    if (!m_journal)
        m_journal =
            data::Journal::openAndCheck(QString::fromStdString(m_path.string()), false, silent);
    return m_journal->database();
}

void OpenJournal::close()
{
    m_journal.reset();
}

void fillMonth(jet::Database& database)
{
    Silent silent;
    journals::Attendance attendance(database, shell::Wording(), silent, silent);
    journals::AttendanceSelection selection;
    selection.group = journals::GroupId{7};
    selection.month = {2026, 3};
    if (!attendance.load(selection))
        throw std::runtime_error("the sheet was refused");
}

void fillGrades(jet::Database& database, journals::GradeMode mode, bool allDisciplines)
{
    Silent silent;
    journals::GradeBook book(database, shell::Wording(), silent, silent);
    journals::GradeSelection selection;
    selection.group = journals::GroupId{7};
    selection.month = {2026, 3};
    selection.year = journals::studyPeriod(data::readSettingsRow(database));
    selection.mode = mode;
    selection.allDisciplines = allDisciplines;
    const auto disciplines = book.disciplines(selection);
    if (!disciplines.empty())
        selection.discipline = disciplines.front().key;
    if (!book.load(selection))
        throw std::runtime_error("the sheet was refused");
}

void readAll(jet::Database& database, const std::string& sql)
{
    auto recordset = database.query(sql);
    const int columns = static_cast<int>(recordset.columns().size());
    while (recordset.next()) {
        for (int column = 0; column < columns; ++column)
            (void)recordset.isNull(column);
    }
}

std::vector<Comparison> comparisons(Bench& bench)
{
    std::vector<Comparison> all = {scan(bench, "POS", "Sum(uv), Sum(nuv)"),
                                   scan(bench, "USP", "Sum(OC)"),
                                   exportTable(bench, "POS"),
                                   exportTable(bench, "USP"),
                                   opening(bench),
                                   month(bench),
                                   lookups(bench)};
    for (Comparison& cells : truancy(bench))
        all.push_back(std::move(cells));
    for (Comparison& report : reports(bench))
        all.push_back(std::move(report));
    all.push_back(durableMark(bench));
    all.push_back(inserts(bench));
    return all;
}

} // namespace bench
