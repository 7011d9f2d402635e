#include "tests/support/outsidecheckers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

namespace jet::test {

namespace {

std::string shellQuoted(const std::string& word)
{
    std::string quoted = "'";
    for (const char c : word) {
        if (c == '\'')
            quoted += "'\\''";
        else
            quoted += c;
    }
    return quoted + "'";
}

struct Outcome
{
    int status;
    std::string output;
};

Outcome run(const std::string& program, const std::vector<std::string>& arguments)
{
    std::string command = shellQuoted(program);
    for (const std::string& argument : arguments)
        command += ' ' + shellQuoted(argument);
    command += " 2>&1";
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return {-1, "popen"};
    std::array<char, 4096> buffer;
    while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), got);
    const int status = pclose(pipe);
    return {status < 0 ? status : (status >> 8) & 0xFF, output};
}

bool isInstalled(const std::string& program)
{
    return run("sh", {"-c", "command -v " + program}).status == 0;
}

std::optional<std::filesystem::path> structuralChecker()
{
    const auto folder = sharedFolder();
    if (!folder || !isInstalled("python3"))
        return std::nullopt;
    const std::filesystem::path checker = *folder / "tools" / "jet4_check.py";
    if (!std::filesystem::exists(checker))
        return std::nullopt;
    return checker;
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    std::random_device random;
    do {
        m_path = std::filesystem::temp_directory_path()
                 / ("jurnal-test-" + std::to_string(random()) + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryFolder::operator/(const std::filesystem::path& name) const
{
    return m_path / name;
}

std::optional<std::filesystem::path> sharedFolder()
{
    const char* folder = std::getenv("JURNAL_SHARED");
    if (!folder || !std::filesystem::is_directory(folder))
        return std::nullopt;
    return std::filesystem::path(folder);
}

std::optional<std::filesystem::path> sampleFile(const std::string& name)
{
    const auto folder = sharedFolder();
    if (!folder || !std::filesystem::exists(*folder / "samples" / name))
        return std::nullopt;
    return *folder / "samples" / name;
}

std::vector<std::filesystem::path> readableSamples()
{
    const char* const refused[] = {"access2010.accdb", "not-access-lmdb.mdb", "test-v1997.mdb",
                                   "with-password-v2003.mdb"};
    std::vector<std::filesystem::path> samples;
    const auto folder = sharedFolder();
    if (!folder || !std::filesystem::is_directory(*folder / "samples"))
        return samples;
    for (const auto& entry : std::filesystem::directory_iterator(*folder / "samples")) {
        const std::string extension = entry.path().extension().string();
        const bool database = extension == ".mdb" || extension == ".mdw";
        if (database
            && std::find(std::begin(refused), std::end(refused), entry.path().filename().string())
                   == std::end(refused))
            samples.push_back(entry.path());
    }
    std::sort(samples.begin(), samples.end());
    return samples;
}

std::filesystem::path copyOf(const std::filesystem::path& sample, const TemporaryFolder& folder,
                             const std::string& name)
{
    std::filesystem::path copy = folder / name;
    std::filesystem::copy_file(sample, copy, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(copy, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    return copy;
}

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes(std::filesystem::file_size(path));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

std::optional<std::string> structuralErrors(const std::filesystem::path& database)
{
    const auto checker = structuralChecker();
    if (!checker)
        return std::nullopt;
    const Outcome outcome = run("python3", {checker->string(), "--quiet", database.string()});
    if (outcome.status == 0)
        return "";
    return outcome.output.empty() ? "exit " + std::to_string(outcome.status) : outcome.output;
}

std::optional<std::string> structuralReport(const std::vector<std::filesystem::path>& databases)
{
    const auto checker = structuralChecker();
    if (!checker)
        return std::nullopt;
    std::vector<std::string> arguments = {checker->string()};
    for (const std::filesystem::path& database : databases)
        arguments.push_back(database.string());
    return run("python3", arguments).output;
}

std::optional<std::string> mdbtools(const std::string& program,
                                    const std::vector<std::string>& arguments)
{
    if (!isInstalled(program))
        return std::nullopt;
    const Outcome outcome = run(program, arguments);
    if (outcome.status == 0)
        return outcome.output;
    return outcome.output + "\nexit " + std::to_string(outcome.status) + "\n";
}

} // namespace jet::test
