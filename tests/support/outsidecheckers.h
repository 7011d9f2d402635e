#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace jet::test {

// A folder of its own below the system's temporary one, removed at the end.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();
    std::filesystem::path operator/(const std::filesystem::path& name) const;

private:
    std::filesystem::path m_path;
};

// The folder of shared test material ($JURNAL_SHARED), nothing where it is absent.
std::optional<std::filesystem::path> sharedFolder();
// $JURNAL_SHARED/samples/NAME, nothing where it is absent.
std::optional<std::filesystem::path> sampleFile(const std::string& name);
// All sample files that are Jet 4 databases this engine opens.
std::vector<std::filesystem::path> readableSamples();
// A writable copy of a sample in the folder.
std::filesystem::path copyOf(const std::filesystem::path& sample, const TemporaryFolder& folder,
                             const std::string& name = "copy.mdb");
std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path);

// What jet4_check.py finds wrong with a file, "" when it finds no error; nothing when the
// checker or Python is absent.
//
//     EXPECT_EQ(structuralErrors(path).value_or(""), "");
std::optional<std::string> structuralErrors(const std::filesystem::path& database);
// All that jet4_check.py says about the files, with a line "FILE: ... N errors, N warnings"
// for each; nothing when the checker or Python is absent.
std::optional<std::string> structuralReport(const std::vector<std::filesystem::path>& databases);

// Standard output of a program of mdbtools ("mdb-export", "mdb-tables", "mdb-ver",
// "mdb-schema", ...), nothing when it is absent. A failing program gives its output and
// the line "exit N".
std::optional<std::string> mdbtools(const std::string& program,
                                    const std::vector<std::string>& arguments);

} // namespace jet::test
