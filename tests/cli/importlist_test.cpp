#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using jet::test::TemporaryFolder;

TEST(ImportList, TakesAListIntoABook)
{
    const TemporaryFolder folder;
    const std::string file = (folder / "a.mdb").string(), source = (folder / "a.csv").string();
    ASSERT_EQ(jurnalctl({"create", file}).status, 0);
    std::ofstream(source) << "Кто;Номер;Табельный номер\nИванов И.И.;7;x\n;8;y\n";
    const std::vector<std::string> command = {"import", "spprep", file, source, "--json"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), command.begin(), command.end());
        return jurnalctl(more);
    };
    EXPECT_EQ(with({}).status, 1) << "no column has the name";
    EXPECT_EQ(with({"--map", "Что=Фамилия И.О."}).status, 1);
    EXPECT_EQ(with({"--map", "Кто=Возраст"}).status, 1);
    EXPECT_EQ(with({"--existing", "replace"}).status, 2);
    const std::vector<std::string> mapped = {"--map", "Кто=Фамилия И.О.", "--map", "Номер=Таб. №"};
    auto dry = mapped;
    dry.push_back("--dry-run");
    const std::string teachers = "SELECT FAMIO, TABNOM FROM SPPREP;";
    EXPECT_EQ(with(dry).json()["added"], 1);
    EXPECT_EQ(jurnalctl({"sql", file, teachers, "--csv"}).out.find("Иванов"), std::string::npos);
    const auto report = with(mapped).json();
    EXPECT_EQ(report["added"], 1);
    EXPECT_EQ(report["refused"], 1);
    EXPECT_EQ(report["rows"][0]["row"], 3);
    EXPECT_NE(jurnalctl({"sql", file, teachers, "--csv"}).out.find("Иванов И.И.,7"),
              std::string::npos);
    EXPECT_EQ(jurnalctl({"import", "18", file, source}).status, 1);
}

} // namespace
