#include "jet/error.h"
#include "jet/storage/properties.h"
#include "jet/storage/store.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

TEST(Properties, OfEverySampleAreWrittenBackByteForByte)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP();
    int blobs = 0;
    for (const auto& sample : samples) {
        const auto store = Store::open(FileSystem::system(), sample, OpenMode::ReadOnly);
        Table& objects = store->table("MSysObjects");
        const int column = objects.definition().columnPosition("LvProp");
        for (TableScan scan = objects.scan(); scan.next();) {
            const Value value = scan.row().value(column);
            const Bytes* const blob = value.as<Bytes>();
            if (!blob)
                continue;
            EXPECT_EQ(Properties(*blob).encode(), *blob) << sample;
            ++blobs;
        }
    }
    EXPECT_GT(blobs, 50);
}

TEST(Properties, HoldFlagsAndTextsOfColumns)
{
    Properties properties;
    EXPECT_TRUE(properties.encode().empty());
    properties.addField({.name = "ФИО",
                         .type = FieldType::Text,
                         .required = true,
                         .allowZeroLength = true,
                         .defaultValue = "\"нет\""});
    properties.addField({.name = "IDG", .type = FieldType::Long});
    properties.setColumnFlag("Второе", "Required", false);
    Properties read(properties.encode());
    EXPECT_TRUE(read.columnFlag("фио", "required"));
    EXPECT_TRUE(read.columnFlag("ФИО", "AllowZeroLength"));
    EXPECT_EQ(read.columnText("ФИО", "DefaultValue"), "\"нет\"");
    EXPECT_FALSE(read.columnFlag("IDG", "Required"));
    EXPECT_FALSE(read.columnFlag("Второе", "Required"));
    EXPECT_EQ(read.columnText("Второе", "DefaultValue"), "");
    read.removeColumn("ФИО");
    EXPECT_FALSE(read.columnFlag("ФИО", "Required"));
    read.removeColumn("Второе");
    EXPECT_TRUE(read.encode().empty());
}

TEST(Properties, AreWrittenAsTheEngineOfAccessDoes)
{
    Properties properties;
    properties.addField({.name = "A", .type = FieldType::Long, .required = true});
    EXPECT_EQ(properties.encode(), (Bytes{'M', 'R', '2', 0,                          //
                                          24,  0,   0,   0, 0x80, 0, 16,  0,         // the names
                                          'R', 0,   'e', 0, 'q',  0, 'u', 0, 'i', 0, //
                                          'r', 0,   'e', 0, 'd',  0,                 //
                                          23,  0,   0,   0, 1,    0,                 // the column
                                          8,   0,   0,   0, 2,    0, 'A', 0,         //
                                          9,   0,   1,   1, 0,    0, 1,   0, 1}));
}

TEST(Properties, DamageIsRefused)
{
    Properties properties;
    properties.addField({.name = "A", .required = true, .defaultValue = "1"});
    const Bytes blob = properties.encode();
    for (std::size_t size = 1; size < blob.size(); ++size) {
        // Cut between two blocks it is a shorter list.
        if (size == 4 || size == 4 + get32(blob, 4))
            continue;
        EXPECT_THROW(Properties(ByteView(blob).first(size)), Error) << size;
    }
    for (std::size_t at = 0; at < blob.size(); ++at) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            Bytes damaged = blob;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ flip);
            try {
                Properties(damaged).columnText("A", "DefaultValue");
            } catch (const Error& error) {
                EXPECT_EQ(error.fault(), Fault::Damaged);
            }
        }
    }
}

} // namespace
} // namespace jet
