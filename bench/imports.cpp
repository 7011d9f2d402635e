#include "bench/limits.h"
#include "bench/ratios.h"
#include "bench/workloads.h"

#include "data/convert.h"
#include "data/journal.h"
#include "data/messages.h"
#include "import/lessonimport.h"

#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace bench {

namespace {

class Refusing final : public data::Messages
{
public:
    void critical(const QString& text) override { throw std::runtime_error(text.toStdString()); }
    void information(const QString&) override {}
};

// Imports the lessons up to a key, which lose their project for it so that no period leaves
// them out, into an empty journal: from the timetable opened to the rows on disk.
int importUpTo(const fs::path& timetable, std::int64_t key, double limit)
{
    {
        const auto source = jet::Database::open(timetable);
        source->execute("UPDATE UROKI SET IDR = NULL WHERE ID <= " + std::to_string(key) + ';');
    }
    const fs::path target = timetable.parent_path() / "import.mdb";
    Refusing messages;
    auto journal = data::Journal::openAndCheck(data::fromPath(target), true, messages);
    const imports::Period period{{2000, 1, 1}, {2000, 1, 31}};
    std::int64_t lessons = 0;
    const double time = milliseconds(Clock::Wall, [&] {
        const auto opened =
            imports::Timetable::open(data::fromPath(timetable), journal->filePath());
        const auto choice = imports::chooseLessons(*opened, period);
        lessons = imports::importLessons(*opened, period, choice, journal->database())->lessons;
    });
    journal.reset();
    fs::remove(target);
    return report("import of " + std::to_string(lessons) + " lessons", time, limit, "ms");
}

} // namespace

int checkImport(OpenJournal& journal)
{
    constexpr std::int64_t kSome = 20000;
    constexpr std::int64_t kAll = INT32_MAX;
    journal.close();
    const fs::path timetable = journal.path().parent_path() / "timetable.mdb";
    fs::copy_file(journal.path(), timetable, fs::copy_options::overwrite_existing);
    const int missed = importUpTo(timetable, kSome, 3000) + importUpTo(timetable, kAll, 10000);
    fs::remove(timetable);
    return missed;
}

} // namespace bench
