#include "data/journal.h"
#include "data/messages.h"
#include "tests/data/olderfile.h"
#include "tests/support/memoryfiles.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using data::Journal;
using jet::test::MemoryFiles;

namespace {

const QString kName = u"journal.mdb"_s;
const std::filesystem::path kPath = "journal.mdb";

class CountingMessages final : public data::Messages
{
public:
    void critical(const QString&) override { ++refusals; }
    void information(const QString&) override {}
    int refusals = 0;
};

// A file on which every step of the upgrade has work to do.
std::vector<std::uint8_t> oldFile()
{
    OlderFile file;
    file.removeAddedFields();
    file.field("SPOTD", "NAIM").size = 50;
    file.removeTable("USERS");
    file.write([](jet::Database& database) {
        database.execute("INSERT INTO SPOTD (NAIM) VALUES (\"Право  \")");
        database.execute("DELETE * FROM MONTH WHERE MN = 5");
    });
    return file.bytes();
}

} // namespace

TEST(Failure, AnUpgradeThatCannotBeWrittenLeavesTheOldFile)
{
    const auto old = oldFile();
    bool succeeded = false;
    int tried = 0;
    for (int n = 0; !succeeded; ++n, ++tried) {
        ASSERT_LT(n, 20'000);
        MemoryFiles files;
        files.setContent(kPath, old);
        files.failAt(n, MemoryFiles::Failure::Once, jet::Fault::DiskFull);
        CountingMessages messages;
        succeeded = Journal::openAndCheck(files, kName, false, messages) != nullptr;
        EXPECT_EQ(messages.refusals, succeeded ? 0 : 1) << "operation " << n;
        files.failNever();
        if (!succeeded) {
            EXPECT_TRUE(files.content(kPath) == old) << "operation " << n;
            EXPECT_NE(Journal::openAndCheck(files, kName, false, messages), nullptr)
                << "operation " << n;
        }
    }
    EXPECT_GT(tried, 10);
}

TEST(Failure, ACreationThatCannotBeWrittenLeavesNoFile)
{
    bool succeeded = false;
    int tried = 0;
    for (int n = 0; !succeeded; ++n, ++tried) {
        ASSERT_LT(n, 20'000);
        MemoryFiles files;
        files.failAt(n, MemoryFiles::Failure::Once, jet::Fault::DiskFull);
        CountingMessages messages;
        succeeded = Journal::openAndCheck(files, kName, true, messages) != nullptr;
        EXPECT_EQ(messages.refusals, succeeded ? 0 : 1) << "operation " << n;
        EXPECT_EQ(files.exists(kPath), succeeded) << "operation " << n;
    }
    EXPECT_GT(tried, 10);
}
