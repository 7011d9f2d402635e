#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace jet::test {
namespace {

bool isExpected(const Finding& finding, const Damage& damage, const Place& place)
{
    return finding.severity == damage.severity && finding.table == damage.table
           && finding.page == place.page && finding.row == place.row
           && finding.text.find(damage.text) != std::string::npos;
}

// The number in front of `word` in the last line about a file.
int countOf(const std::string& line, const std::string& word)
{
    const auto end = line.find(' ' + word);
    const auto begin = line.rfind(' ', end - 1);
    return std::stoi(line.substr(begin + 1, end - begin - 1));
}

void expectAgreement(const std::vector<std::filesystem::path>& files,
                     const std::vector<Damage>& damages)
{
    const auto report = structuralReport(files);
    if (!report)
        return;
    for (std::size_t i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(damages[i].what);
        std::istringstream lines(*report);
        std::string line;
        while (std::getline(lines, line) && !line.starts_with(files[i].string() + ": ")) {
        }
        ASSERT_FALSE(line.empty()) << *report;
        if (damages[i].outside != Outside::Nothing) {
            const bool error = damages[i].outside == Outside::Error;
            EXPECT_GT(countOf(line, error ? "errors" : "warnings"), 0) << line;
        }
    }
}

} // namespace

std::string describe(const std::vector<Finding>& findings)
{
    std::string out;
    for (const Finding& f : findings) {
        out += (f.severity == Severity::Harmful ? "harmful " : "harmless ") + f.table + ", page "
               + std::to_string(f.page) + ", row " + std::to_string(f.row) + ": " + f.text + "\n";
    }
    return out;
}

void expectFound(const std::function<std::vector<Damage>(const CheckedFile&)>& damages)
{
    for (const bool encoded : {false, true}) {
        CheckedFile file(encoded);
        ASSERT_EQ(describe(file.check()), "");
        const TemporaryFolder folder;
        std::vector<std::filesystem::path> files;
        const std::vector<Damage> all = damages(file);
        for (const Damage& damage : all) {
            SCOPED_TRACE(std::string(encoded ? "encoded: " : "plain: ") + damage.what);
            Place place;
            file.damage([&](Pager& pager) { place = damage.change(pager); });
            const std::vector<Finding> found = file.check();
            EXPECT_TRUE(std::ranges::any_of(
                found, [&](const Finding& f) { return isExpected(f, damage, place); }))
                << "page " << place.page << ", row " << place.row << ", but:\n"
                << describe(found);
            const bool onlyHarmless = std::ranges::all_of(
                found, [](const Finding& f) { return f.severity == Severity::Harmless; });
            EXPECT_EQ(onlyHarmless, damage.severity == Severity::Harmless) << describe(found);
            files.push_back(folder / (std::to_string(files.size()) + ".mdb"));
            if (!encoded)
                file.saveAs(files.back());
        }
        if (!encoded)
            expectAgreement(files, all);
    }
}

} // namespace jet::test
