// A real process that writes a real file is killed at random moments.
#include "jet/error.h"
#include "jet/storage/journal.h"
#include "tests/jet/crashworkload.h"
#include "tests/jet/numberedsteps.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

namespace jet::test {
namespace {

class Kill : public testing::Test
{
protected:
    Kill()
        : path(folder / "killed.mdb")
        , model(Database::create(memory, "model.mdb", {}))
    {
        makeNumberedDatabase(*Database::create(path));
        makeNumberedDatabase(*model);
    }

    static int kills()
    {
        const char* const text = std::getenv("JURNAL_CRASH_KILLS");
        const int asked = text ? std::atoi(text) : 0;
        return asked > 0 ? asked : 40;
    }

    void killOnce(bool whileWriting, std::chrono::microseconds delay);
    void advanceModel(int number);
    void lookFromTwoProcesses(const std::string& before, const std::string& after);
    void verify(const std::string& before, const std::string& after);

    TemporaryFolder folder;
    std::filesystem::path path;
    MemoryFiles memory;
    std::unique_ptr<Database> model; // what the acknowledged steps give
    int done = 0;                    // the last step that the model has
    int acknowledged = 0, withJournal = 0, wholeUnacknowledged = 0, refusedLookers = 0;
};

// Starts the writer after step `from`, kills it, when asked for not before it has written
// something, and gives the last step that it reported.
int reportedUntilKilled(const std::filesystem::path& path, int from, bool whileWriting,
                        std::chrono::microseconds delay)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        return -1;
    const std::string next = std::to_string(from + 1);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(JET_CRASH_CHILD, "jet_crash_child", path.c_str(), next.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    int last = from;
    const auto readNumber = [&] {
        int number = 0;
        if (read(ends[0], &number, sizeof number) != sizeof number)
            return false;
        EXPECT_EQ(number, last + 1);
        last = number;
        return true;
    };
    if (whileWriting)
        readNumber();
    std::this_thread::sleep_for(delay);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;
    while (readNumber())
        ;
    close(ends[0]);
    return last;
}

void Kill::advanceModel(int number)
{
    while (done < number)
        runNumberedStep(*model, ++done);
}

// Whoever opens the file while another process recovers it sees a whole state or nothing.
void Kill::lookFromTwoProcesses(const std::string& before, const std::string& after)
{
    std::array<pid_t, 2> lookers{};
    for (pid_t& looker : lookers) {
        looker = fork();
        if (looker != 0)
            continue;
        try {
            const std::string seen = contentText(*Database::open(path, OpenMode::ReadOnly));
            _exit(seen == before || seen == after ? 0 : 1);
        } catch (const Error& error) {
            _exit(error.fault() == Fault::Locked ? 2 : 3);
        }
    }
    for (const pid_t looker : lookers) {
        int status = 0;
        waitpid(looker, &status, 0);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 1 && WEXITSTATUS(status) != 3)
            << status;
        refusedLookers += WEXITSTATUS(status) == 2 ? 1 : 0;
    }
}

void Kill::verify(const std::string& before, const std::string& after)
{
    const auto db = Database::open(path);
    const std::string content = contentText(*db);
    ASSERT_TRUE(content == before || content == after) << "after step " << done - 1;
    ASSERT_EQ(harmfulFindings(*db), "");
    if (content == after) {
        ++wholeUnacknowledged;
        return;
    }
    runNumberedStep(*db, done); // the model has it already
}

void Kill::killOnce(bool whileWriting, std::chrono::microseconds delay)
{
    const int last = reportedUntilKilled(path, done, whileWriting, delay);
    ASSERT_GE(last, done);
    acknowledged += last - done;
    advanceModel(last);
    const std::string before = contentText(*model);
    advanceModel(last + 1);
    const std::string after = contentText(*model);
    withJournal += std::filesystem::exists(journalPath(path)) ? 1 : 0;
    lookFromTwoProcesses(before, after);
    verify(before, after);
}

TEST_F(Kill, LosesNothingThatWasAcknowledged)
{
    std::mt19937 random(std::random_device{}());
    for (int round = 0; round < kills(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        // Some die early: while they open the file and roll back what the last one left.
        const bool whileWriting = round % 3 != 0;
        killOnce(whileWriting, std::chrono::microseconds(random() % 60000));
        if (HasFatalFailure())
            return;
        if (round % 20 == 19) {
            EXPECT_EQ(structuralErrors(path).value_or(""), "");
        }
    }
    EXPECT_GT(acknowledged, 0);
    std::cout << "  kills " << kills() << ", steps acknowledged " << acknowledged
              << ", journals left " << withJournal << ", done but not acknowledged "
              << wholeUnacknowledged << ", second openers refused " << refusedLookers << '\n';
}

} // namespace
} // namespace jet::test
