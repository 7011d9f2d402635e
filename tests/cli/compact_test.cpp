#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <filesystem>

using jet::test::bytesOf;

TEST(CompactCommand, WritesANewFileAndSaysWhatIsInIt)
{
    const jet::test::TemporaryFolder folder;
    const std::string old = (folder / "журнал.mdb").string();
    const std::string fresh = (folder / "сжатый.mdb").string();
    ASSERT_EQ(jurnalctl({"create", old}).status, 0);
    const auto before = bytesOf(old);
    const auto result = jurnalctl({"compact", old, fresh});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("Размер был "), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("Таблиц: 24, записей: "), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find("Потерь"), std::string::npos) << result.out;
    EXPECT_TRUE(bytesOf(old) == before);
    EXPECT_EQ(jurnalctl({"tables", fresh}).out, jurnalctl({"tables", old}).out);
    EXPECT_EQ(jurnalctl({"compact", old, fresh}).status, 1);
    EXPECT_EQ(jurnalctl({"compact", old, fresh, "--encoded", "--plain"}).status, 2);
}

TEST(CompactCommand, RepairsOnlyWhenAsked)
{
    constexpr std::streamoff kPage = 4096;
    const jet::test::TemporaryFolder folder;
    const std::string old = (folder / "old.mdb").string();
    const std::string fresh = (folder / "new.mdb").string();
    ASSERT_EQ(jurnalctl({"create", old}).status, 0);
    std::filesystem::resize_file(old, std::filesystem::file_size(old) - kPage - 1);
    EXPECT_EQ(jurnalctl({"compact", old, fresh}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(fresh));
    const auto result = jurnalctl({"compact", old, fresh, "--repair"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("файл обрезан посреди страницы"), std::string::npos) << result.out;
    EXPECT_EQ(jet::test::structuralErrors(fresh).value_or(""), "");
}
