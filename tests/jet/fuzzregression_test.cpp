#include "fuzz/targets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Replays the inputs kept in fuzz/regressions: each once crashed, hung or spoiled a file.

namespace jet {
namespace {

using Target = void (*)(ByteView);

std::vector<std::filesystem::path> inputsOf(const std::string& target)
{
    const std::filesystem::path folder = std::filesystem::path(JURNAL_FUZZ_REGRESSIONS) / target;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    return files;
}

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void replay(const std::string& target, Target run)
{
    const auto inputs = inputsOf(target);
    EXPECT_FALSE(inputs.empty());
    for (const auto& path : inputs)
        EXPECT_NO_THROW(run(bytesOf(path))) << path.filename();
}

TEST(FuzzRegression, DamagedFilesAreReadOrRefused)
{
    replay("read", fuzz::readDamagedFile);
}

TEST(FuzzRegression, DamagedFilesAreChangedOrRefused)
{
    replay("change", fuzz::changeDamagedFile);
}

TEST(FuzzRegression, DamagedFilesAreCompactedOrRefused)
{
    replay("compact", fuzz::compactDamagedFile);
}

TEST(FuzzRegression, StatementsLeaveASoundFile)
{
    replay("sql", fuzz::runStatements);
}

} // namespace
} // namespace jet
