#include "jet/error.h"
#include "jet/storage/header.h"
#include "jet/storage/pager.h"
#include "jet/storage/rc4.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <cstring>

namespace jet {
namespace {

using test::sampleFile;

double knownDate()
{
    const std::uint8_t bytes[] = {0x3E, 0x85, 0xD3, 0x3B, 0x3E, 0xAB, 0xE4, 0x40};
    return getDouble(bytes, 0);
}

// Bytes 010-09F of a file that the engine of Access made with this date.
constexpr std::uint8_t kKnownBytes[] = {
    0x20, 0x44, 0x42, 0x00, 0x01, 0x00, 0x00, 0x00, 0xB5, 0x6E, 0x03, 0x62, 0x60, 0x09, 0xC2, 0x55,
    0xE9, 0xA9, 0x67, 0x72, 0x40, 0x3F, 0x00, 0x9C, 0x7E, 0x9F, 0x90, 0xFF, 0x85, 0x9A, 0x31, 0xC5,
    0x79, 0xBA, 0xED, 0x30, 0xBC, 0xDF, 0xCC, 0x9D, 0x63, 0xD9, 0xE4, 0xC3, 0x9F, 0x46, 0xFB, 0x8A,
    0xBC, 0x4E, 0xDF, 0x5E, 0xEC, 0x37, 0x04, 0xE1, 0x9C, 0xFA, 0x9F, 0xFB, 0x28, 0xE6, 0x4A, 0x13,
    0x8A, 0x60, 0x0D, 0x31, 0x7B, 0x36, 0xAC, 0xD7, 0xDF, 0xB1, 0x2E, 0x51, 0x13, 0x43, 0x96, 0x0A,
    0xB1, 0x33, 0x6D, 0xC4, 0x79, 0x5B, 0xCB, 0x10, 0x7C, 0x2A, 0x19, 0xD7, 0x7C, 0x99, 0x08, 0x1F,
    0x98, 0xFD, 0x2C, 0xCA, 0x99, 0xAF, 0x52, 0x95, 0x84, 0x66, 0x5F, 0x95, 0xF8, 0xD0, 0x89, 0x24,
    0x85, 0x67, 0xC6, 0x1F, 0x27, 0x44, 0xD2, 0xEE, 0xCF, 0x65, 0xED, 0xFF, 0x07, 0xC7, 0x46, 0xA1,
    0x78, 0x16, 0x0C, 0xED, 0xE9, 0x2D, 0x62, 0xD4, 0x54, 0x06, 0x00, 0x00, 0x34, 0x2E, 0x30, 0x00};

Bytes knownPage()
{
    DatabaseHeader header;
    header.created = {knownDate()};
    return encodeHeader(header);
}

TEST(Header, EqualsTheEnginesBytes)
{
    const Bytes page = knownPage();
    EXPECT_EQ(std::memcmp(page.data() + 0x10, kKnownBytes, sizeof kKnownBytes), 0);
    EXPECT_EQ(get16(page, 0xE00), 0x0101);
    EXPECT_EQ(get16(page, 0xFFE), 0x0100);
}

TEST(Header, ReadsBackWhatItWrote)
{
    DatabaseHeader header;
    header.created = {knownDate()};
    header.databaseKey = 0xA7B773E0;
    header.codePage = 1251;
    header.collation = 0x0419;
    const DatabaseHeader read = decodeHeader(encodeHeader(header));
    EXPECT_EQ(read.databaseKey, 0xA7B773E0u);
    EXPECT_EQ(read.codePage, 1251);
    EXPECT_EQ(read.collation, 0x0419);
    EXPECT_EQ(read.created.days, knownDate());
}

TEST(Header, DerivesTheKeyOfTheSids)
{
    EXPECT_EQ(decodeHeader(knownPage()).sidKey, 0x3853837Eu);
}

TEST(Rc4, CodesAPageByKeyAndNumber)
{
    Bytes page = {0xC6, 0xE6, 0x51, 0xA6, 0x64, 0xD6, 0x25, 0x2E};
    applyRc4(0xA7B773E0 ^ 1, page);
    EXPECT_EQ(page, (Bytes{0x01, 0x01, 0x64, 0x0F, 0x01, 0x00, 0x00, 0x00}));
}

TEST(Header, RefusesWhatIsNoJet4File)
{
    const auto damaged = [](std::size_t offset, std::uint8_t value) {
        Bytes page = knownPage();
        page[offset] = value;
        return page;
    };
    const struct
    {
        const char* what;
        Bytes page;
        Fault fault;
    } cases[] = {
        {"empty file", {}, Fault::NotADatabase},
        {"a few bytes", {0, 1, 0, 0, 'S'}, Fault::NotADatabase},
        {"another signature", damaged(1, 2), Fault::NotADatabase},
        {"another name", damaged(6, 'x'), Fault::NotADatabase},
        {"Jet 3", damaged(0x14, 0), Fault::UnsupportedVersion},
        {"ACE", damaged(0x14, 2), Fault::UnsupportedVersion},
        {"global map elsewhere", damaged(0x19, 0), Fault::Damaged},
        {"password", damaged(0x42, 0), Fault::PasswordProtected},
    };
    for (const auto& c : cases) {
        try {
            decodeHeader(c.page);
            ADD_FAILURE() << c.what;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), c.fault) << c.what;
        }
    }
}

TEST(Header, EveryCutOfTheFirstPageIsRefused)
{
    const Bytes page = knownPage();
    for (std::size_t size = 0; size < page.size(); size += 7)
        EXPECT_THROW(decodeHeader(ByteView(page).first(size)), Error) << size;
}

TEST(Header, SamplesOfOtherKindsAreRefusedByKind)
{
    const struct
    {
        const char* name;
        Fault fault;
    } cases[] = {{"test-v1997.mdb", Fault::UnsupportedVersion},
                 {"access2010.accdb", Fault::UnsupportedVersion},
                 {"not-access-lmdb.mdb", Fault::NotADatabase},
                 {"with-password-v2003.mdb", Fault::PasswordProtected}};
    for (const auto& c : cases) {
        const auto sample = sampleFile(c.name);
        if (!sample)
            GTEST_SKIP();
        try {
            Pager::open(FileSystem::system(), *sample, true);
            ADD_FAILURE() << c.name;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), c.fault) << c.name << ": " << error.what();
        }
    }
}

TEST(Header, SamplesOpenAndTheirPagesDecode)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP();
    for (const auto& sample : samples) {
        const auto pager = Pager::open(FileSystem::system(), sample, true);
        EXPECT_EQ(pager->read(1).type(), PageType::Data) << sample;
        EXPECT_EQ(pager->read(2).type(), PageType::Definition) << sample;
    }
    const auto encoded = sampleFile("db-enc.mdb");
    ASSERT_TRUE(encoded);
    EXPECT_NE(Pager::open(FileSystem::system(), *encoded, true)->header().databaseKey, 0u);
    const auto cyrillic = sampleFile("system-1251.mdw");
    ASSERT_TRUE(cyrillic);
    const auto workgroup = Pager::open(FileSystem::system(), *cyrillic, true);
    EXPECT_TRUE(workgroup->header().workgroupFile);
    EXPECT_EQ(workgroup->header().codePage, 1251);
    EXPECT_EQ(workgroup->header().collation, 0x0419);
}

} // namespace
} // namespace jet
