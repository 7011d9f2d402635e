#include "jet/error.h"
#include "jet/storage/file.h"
#include "jet/storage/pager.h"
#include "tests/jet/smalldatabase.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

#include <fstream>
#include <functional>

namespace jet {
namespace {

FileSystem& files()
{
    return FileSystem::system();
}

Fault faultOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.fault();
    }
    ADD_FAILURE() << "nothing was refused";
    return Fault::Io;
}

TEST(SystemFiles, RefuseByKind)
{
    const test::TemporaryFolder folder;
    EXPECT_EQ(faultOf([&] { files().open(folder / "absent.mdb", FileMode::ReadWrite); }),
              Fault::NotFound);
    EXPECT_EQ(faultOf([&] { files().open(folder / "", FileMode::ReadWrite); }),
              Fault::NotADatabase);
    EXPECT_EQ(faultOf([&] { files().open(folder / "", FileMode::ReadOnly); }), Fault::NotADatabase);
    files().open(folder / "new.mdb", FileMode::Create);
    EXPECT_EQ(faultOf([&] { files().open(folder / "new.mdb", FileMode::Create); }), Fault::Exists);
    files().remove(folder / "new.mdb");
    EXPECT_FALSE(files().exists(folder / "new.mdb"));
    EXPECT_NO_THROW(files().remove(folder / "new.mdb"));
}

TEST(SystemFiles, ReadBackWhatWasWritten)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "имя с пробелом.mdb";
    const Bytes bytes = {1, 2, 3, 4, 5};
    {
        const auto file = files().open(path, FileMode::Create);
        file->write(3, bytes);
        file->truncate(7);
        file->sync();
        files().syncDirectory(path.parent_path());
    }
    const auto file = files().open(path, FileMode::ReadOnly);
    Bytes read(7);
    ASSERT_EQ(file->size(), 7u);
    file->read(0, read);
    EXPECT_EQ(read, (Bytes{0, 0, 0, 1, 2, 3, 4}));
    EXPECT_EQ(faultOf([&] { file->read(1, read); }), Fault::Damaged);
}

TEST(SystemFiles, ASecondOpenerIsRefused)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    const auto open = [&](FileMode mode) { return files().open(path, mode); };
    {
        const auto writer = open(FileMode::Create);
        EXPECT_EQ(faultOf([&] { open(FileMode::ReadWrite); }), Fault::Locked);
        EXPECT_EQ(faultOf([&] { open(FileMode::ReadOnly); }), Fault::Locked);
    }
    const auto reader = open(FileMode::ReadOnly);
    EXPECT_NO_THROW(open(FileMode::ReadOnly));
    EXPECT_EQ(faultOf([&] { open(FileMode::ReadWrite); }), Fault::Locked);
}

#ifndef _WIN32

// Runs the body in another process and gives its exit status.
int inChild(const std::function<int()>& body)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(body());
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int faultStatus(const std::function<void()>& action)
{
    try {
        action();
        return 100;
    } catch (const Error& error) {
        return static_cast<int>(error.fault());
    }
}

TEST(SystemFiles, AnotherProcessIsRefusedUntilTheFileIsClosed)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    auto pager = Pager::create(files(), path, test::smallImage(3));
    const auto openElsewhere = [&](bool readOnly) {
        return inChild([&] { return faultStatus([&] { Pager::open(files(), path, readOnly); }); });
    };
    EXPECT_EQ(openElsewhere(false), static_cast<int>(Fault::Locked));
    EXPECT_EQ(openElsewhere(true), static_cast<int>(Fault::Locked));
    pager.reset();
    EXPECT_EQ(openElsewhere(false), 100);
}

// What another program does that locks byte ranges, as Samba does for its clients.
int lockElsewhere(const std::filesystem::path& path, const std::function<int()>& body)
{
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT, 0666);
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = 0x10000001;
    range.l_len = 1;
    EXPECT_EQ(fcntl(descriptor, F_SETLK, &range), 0);
    const int status = inChild(body);
    ::close(descriptor);
    return status;
}

TEST(SystemFiles, ByteRangeLocksOfOtherProgramsAreRespected)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    Pager::create(files(), path, test::smallImage(3));
    const auto open = [&] { return faultStatus([&] { Pager::open(files(), path, false); }); };
    EXPECT_EQ(lockElsewhere(path, open), static_cast<int>(Fault::Locked));
    EXPECT_EQ(lockElsewhere(folder / "base.ldb", open), static_cast<int>(Fault::Locked));
    // Left over by a crash: nobody holds it.
    EXPECT_TRUE(files().exists(folder / "base.ldb"));
    EXPECT_EQ(open(), 100);
}

TEST(SystemFiles, AJournalIsFoundThroughALink)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    Pager::create(files(), path, test::smallImage(3));
    std::filesystem::create_symlink(path, folder / "link.mdb");
    const auto pager = Pager::open(files(), folder / "link.mdb", false);
    EXPECT_EQ(pager->path(), std::filesystem::canonical(path));
}

TEST(SystemFiles, MissingRightsAreNamed)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    Pager::create(files(), path, test::smallImage(3));
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(0444));
    std::filesystem::permissions(folder / "", static_cast<std::filesystem::perms>(0555));
    const auto openUnprivileged = [&](bool readOnly) {
        return inChild([&] {
            // The superuser has all rights, so the child becomes somebody else.
            if (geteuid() == 0 && setuid(65534) != 0)
                return 101;
            return faultStatus([&] { Pager::open(files(), path, readOnly); });
        });
    };
    EXPECT_EQ(openUnprivileged(false), static_cast<int>(Fault::Permission));
    EXPECT_EQ(openUnprivileged(true), 100);
    std::filesystem::permissions(folder / "", std::filesystem::perms::owner_all);
}

TEST(SystemFiles, AFullDiskLeavesTheFileAsItWas)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "base.mdb";
    Pager::create(files(), path, test::smallImage(3));
    const auto before = test::bytesOf(path);
    const int status = inChild([&] {
        const auto pager = Pager::open(files(), path, false);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {40000, 40000}; // the journal fits, the longer file does not
        setrlimit(RLIMIT_FSIZE, &limit);
        pager->beginTransaction();
        pager->modify(2)[100] = 77;
        for (int i = 0; i < 10; ++i)
            pager->append();
        return faultStatus([&] { pager->commit(); });
    });
    EXPECT_EQ(status, static_cast<int>(Fault::DiskFull));
    EXPECT_EQ(test::bytesOf(path), before);
    EXPECT_FALSE(files().exists(folder / "base.mdb-journal"));
}

#endif

TEST(SystemFiles, OpeningAndClosingChangesNothing)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP();
    const test::TemporaryFolder folder;
    for (const auto& sample : samples) {
        const auto copy = test::copyOf(sample, folder);
        const auto before = test::bytesOf(copy);
        {
            const auto pager = Pager::open(files(), copy, false);
            pager->beginTransaction();
            for (PageNumber page = 0; page < pager->pageCount(); ++page)
                pager->modify(page); // written with its own bytes
            pager->commit();
        }
        EXPECT_EQ(test::bytesOf(copy), before) << sample;
    }
}

TEST(SystemFiles, EveryPageOfAnEncodedFileSurvivesAChangeAndBack)
{
    const auto sample = test::sampleFile("db-enc.mdb");
    if (!sample)
        GTEST_SKIP();
    const test::TemporaryFolder folder;
    const auto copy = test::copyOf(*sample, folder);
    const auto before = test::bytesOf(copy);
    for (int round = 0; round < 2; ++round) {
        const auto pager = Pager::open(files(), copy, false);
        pager->beginTransaction();
        for (PageNumber page = 1; page < pager->pageCount(); ++page)
            pager->modify(page)[2000] ^= 0x55;
        pager->commit();
        EXPECT_EQ(test::bytesOf(copy) == before, round == 1);
    }
}

} // namespace
} // namespace jet
