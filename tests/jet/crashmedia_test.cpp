// Real files that cannot be written, read or found: every refusal says why, and changes nothing.
#include "jet/error.h"
#include "jet/storage/journal.h"
#include "tests/jet/crashworkload.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/mount.h>
#endif

#include <array>
#include <fstream>
#include <functional>

namespace jet::test {
namespace {

using Content = std::vector<std::uint8_t>;
using std::filesystem::perms;

void write(const std::filesystem::path& path, const Content& bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

struct Refusal
{
    int fault = -1; // of the Error, -1 when nothing was refused
    std::string text;
    bool says(std::string_view words) const { return text.find(words) != std::string::npos; }
};

std::ostream& operator<<(std::ostream& out, const Refusal& refusal)
{
    return out << refusal.fault << " " << refusal.text;
}

Refusal refusalOf(const std::function<void()>& action)
{
    try {
        action();
        return {};
    } catch (const Error& error) {
        return {static_cast<int>(error.fault()), error.what()};
    }
}

// The same by a process without the superuser's rights.
Refusal refusalWithoutRights(const std::function<void()>& action)
{
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(65534) != 0)
            _exit(1);
        const Refusal refusal = refusalOf(action);
        const bool told =
            ::write(ends[1], &refusal.fault, sizeof refusal.fault) == sizeof refusal.fault
            && ::write(ends[1], refusal.text.data(), refusal.text.size())
                   == static_cast<ssize_t>(refusal.text.size());
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    Refusal refusal;
    EXPECT_EQ(read(ends[0], &refusal.fault, sizeof refusal.fault),
              static_cast<ssize_t>(sizeof refusal.fault));
    std::array<char, 2000> buffer{};
    for (ssize_t got = 1; got > 0;) {
        got = read(ends[0], buffer.data(), buffer.size());
        refusal.text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return refusal;
}

class Media : public testing::Test
{
protected:
    static void SetUpTestSuite() { interrupted() = halfWritten(); }
    static Interrupted& interrupted()
    {
        static Interrupted left;
        return left;
    }
    ~Media() override { std::filesystem::permissions(folder / "", perms::owner_all); }

    void putFile() const
    {
        write(path, interrupted().before);
        std::filesystem::permissions(path, static_cast<perms>(0666));
        std::filesystem::permissions(folder / "", static_cast<perms>(0777));
    }
    void putInterrupted() const
    {
        putFile();
        write(path, interrupted().file);
        write(journalPath(path), interrupted().journal);
    }
    static void insert(Database& db) { crashSteps().front().run(db); }
    void open(OpenMode mode = OpenMode::Exclusive) const { Database::open(path, mode); }
    void openAndInsert() const { insert(*Database::open(path)); }

    void expectRefused(const Refusal& refusal, Fault fault, std::string_view words) const
    {
        EXPECT_EQ(refusal.fault, static_cast<int>(fault)) << refusal;
        EXPECT_TRUE(refusal.says(words)) << refusal;
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "base.mdb";
};

TEST_F(Media, AFolderWithoutRightsIsNamedBeforeAnythingIsChanged)
{
    putFile();
    std::filesystem::permissions(folder / "", static_cast<perms>(0555));
    const Refusal refusal = refusalWithoutRights([&] { openAndInsert(); });
    expectRefused(refusal, Fault::Permission, "нельзя создать журнал отката");
    EXPECT_TRUE(refusal.says("файл прежний")) << refusal;
    EXPECT_EQ(bytesOf(path), interrupted().before);
}

TEST_F(Media, AReadOnlyFileOpensForReadingOnly)
{
    putFile();
    std::filesystem::permissions(path, static_cast<perms>(0444));
    expectRefused(refusalWithoutRights([&] { open(); }), Fault::Permission, "нет прав доступа");
    EXPECT_EQ(refusalWithoutRights([&] { open(OpenMode::ReadOnly); }).fault, -1);
}

// What is half-written is not shown, even to those who only want to read.
TEST_F(Media, AHotJournalBesideAReadOnlyFileIsARefusal)
{
    putInterrupted();
    std::filesystem::permissions(path, static_cast<perms>(0444));
    const Refusal refusal = refusalWithoutRights([&] { open(OpenMode::ReadOnly); });
    expectRefused(refusal, Fault::Permission, "прервана");
    EXPECT_EQ(bytesOf(path), interrupted().file);
    EXPECT_EQ(bytesOf(journalPath(path)), interrupted().journal);
    std::filesystem::permissions(path, static_cast<perms>(0666));
    EXPECT_EQ(refusalWithoutRights([&] { open(OpenMode::ReadOnly); }).fault, -1);
    EXPECT_EQ(bytesOf(path), interrupted().before);
}

TEST_F(Media, AJournalThatCannotBeReadIsARefusal)
{
    putInterrupted();
    std::filesystem::permissions(journalPath(path), static_cast<perms>(0000));
    for (const OpenMode mode : {OpenMode::ReadOnly, OpenMode::Exclusive})
        expectRefused(refusalWithoutRights([&] { open(mode); }), Fault::Permission,
                      "прочитать его нельзя");
    std::filesystem::remove(journalPath(path));
    std::filesystem::create_directory(journalPath(path));
    for (const OpenMode mode : {OpenMode::ReadOnly, OpenMode::Exclusive})
        expectRefused(refusalOf([&] { open(mode); }), Fault::Io, "прочитать его нельзя");
    EXPECT_EQ(bytesOf(path), interrupted().file);
    EXPECT_TRUE(std::filesystem::is_directory(journalPath(path)));
}

TEST_F(Media, WhatIsNoDatabaseFileIsNamed)
{
    expectRefused(refusalOf([&] { open(); }), Fault::NotFound, "не найден");
    write(path, {});
    const Refusal empty = refusalOf([&] { open(); });
    EXPECT_EQ(empty.fault, static_cast<int>(Fault::NotADatabase)) << empty;
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    for (const OpenMode mode : {OpenMode::ReadOnly, OpenMode::Exclusive})
        EXPECT_EQ(refusalOf([&] { open(mode); }).fault, static_cast<int>(Fault::NotADatabase));
}

TEST_F(Media, AFileThatVanishesIsMissedBeforeTheNextChange)
{
    const std::filesystem::path other = folder / "other.mdb";
    const std::function<void()> losses[] = {
        [&] { std::filesystem::remove(path); },
        [&] { std::filesystem::rename(path, other); },
        [&] {
            write(other, interrupted().before);
            std::filesystem::rename(other, path); // another file takes its place
        },
    };
    for (const auto& lose : losses) {
        putFile();
        const auto db = Database::open(path);
        lose();
        for (int attempt = 0; attempt < 2; ++attempt)
            expectRefused(refusalOf([&] { insert(*db); }), Fault::NotFound,
                          "изменения не записаны");
        EXPECT_FALSE(std::filesystem::exists(journalPath(path)));
        for (const auto& left : {path, other}) {
            if (std::filesystem::exists(left)) {
                EXPECT_EQ(bytesOf(left), interrupted().before);
            }
        }
        std::filesystem::remove(other);
    }
}

#ifdef __linux__

// A small disk of its own.
class SmallDisk : public Media
{
protected:
    void SetUp() override
    {
        disk = folder / "disk";
        std::filesystem::create_directory(disk);
        if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=512k") != 0)
            GTEST_SKIP() << "file systems cannot be mounted here";
        mounted = true;
        path = disk / "base.mdb";
    }
    ~SmallDisk() override
    {
        if (mounted)
            umount(disk.c_str());
    }

    std::filesystem::path disk;
    bool mounted = false;
};

TEST_F(SmallDisk, FillsUpWithoutHarm)
{
    write(path, interrupted().before);
    std::string content;
    Refusal refusal;
    {
        const auto db = Database::open(path);
        int rows = 0;
        do {
            content = contentText(*db);
            const std::string number = std::to_string(5000 + ++rows);
            refusal = refusalOf([&] {
                db->execute("INSERT INTO STUD (FAM, NOM, PRIM) VALUES (\"Полный\", " + number
                            + ", \"" + std::string(6000, 'x') + number + "\")");
            });
        } while (refusal.fault < 0 && rows < 1000);
        EXPECT_GT(rows, 5);
        EXPECT_EQ(contentText(*db), content);
    }
    expectRefused(refusal, Fault::DiskFull, "нет места");
    EXPECT_FALSE(std::filesystem::exists(journalPath(path)));
    const auto db = Database::open(path);
    EXPECT_EQ(contentText(*db), content);
    EXPECT_EQ(harmfulFindings(*db), "");
}

TEST_F(SmallDisk, ThatIsReadOnlyIsNamed)
{
    write(path, interrupted().before);
    const auto remount = [&](unsigned long flags) {
        ASSERT_EQ(mount("tmpfs", disk.c_str(), "tmpfs", MS_REMOUNT | flags, ""), 0);
    };
    remount(MS_RDONLY);
    expectRefused(refusalOf([&] { open(); }), Fault::Permission, "только для чтения");
    EXPECT_EQ(refusalOf([&] { open(OpenMode::ReadOnly); }).fault, -1);
    remount(0);
    write(path, interrupted().file);
    write(journalPath(path), interrupted().journal);
    remount(MS_RDONLY);
    const Refusal refusal = refusalOf([&] { open(OpenMode::ReadOnly); });
    expectRefused(refusal, Fault::Permission, "прервана");
    EXPECT_TRUE(refusal.says("только для чтения")) << refusal;
}

#endif

} // namespace
} // namespace jet::test
