#include "fuzz/bases.h"
#include "fuzz/targets.h"
#include "fuzz/walk.h"
#include "jet/database.h"
#include "tests/support/memoryfiles.h"

#include <string_view>

namespace jet::fuzz {

namespace {

constexpr int kSteps = 40000;
constexpr int kMaxStatements = 8;

// True when the statement changed something.
bool runStatement(Database& database, std::string_view text)
{
    if (attempt([&] { database.execute(text); }))
        return true;
    readRows(database, std::string(text));
    return false;
}

} // namespace

void runStatements(ByteView input)
{
    const StepLimit limit(kSteps);
    test::MemoryFiles files;
    files.setContent(kFile, bases()[0].pages);
    auto database = Database::open(files, kFile, OpenMode::Exclusive);
    std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
    bool changed = false;
    for (int count = 0; count < kMaxStatements && !text.empty(); ++count) {
        const std::size_t end = text.find('\n');
        changed |= runStatement(*database, text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    database.reset();
    if (changed)
        reopen(files, true);
}

} // namespace jet::fuzz
