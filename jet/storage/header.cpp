#include "jet/storage/header.h"

#include "jet/error.h"
#include "jet/storage/filekind.h"
#include "jet/storage/rc4.h"
#include "jet/storage/types.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

namespace jet {

namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t kRegionKey = 0x6B39DAC7; // RC4 key bytes C7 DA 39 6B
constexpr std::size_t kRegion = 0x18;
constexpr std::size_t kRegionSize = 128;

constexpr std::size_t kName = 0x04;
constexpr std::size_t kVersion = 0x14;
constexpr std::size_t kGlobalMap = 0x18;
constexpr std::size_t kSystemTables = 0x20;
constexpr std::size_t kCodePage = 0x3C;
constexpr std::size_t kDatabaseKey = 0x3E;
constexpr std::size_t kPassword = 0x42;
constexpr std::size_t kPasswordSize = 40;
constexpr std::size_t kBuildNumber = 0x6A;
constexpr std::size_t kCollation = 0x6E;
constexpr std::size_t kCreated = 0x72;
constexpr std::size_t kFormatMark = 0x98;
constexpr std::size_t kCommitWords = 0xE00;

constexpr std::array<std::uint8_t, 8> kMark = {0x54, 0x06, 0, 0, 0x34, 0x2E, 0x30, 0};

bool startsWith(ByteView bytes, std::size_t at, std::string_view text)
{
    return at + text.size() <= bytes.size()
           && std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         [](char c, std::uint8_t b) { return static_cast<std::uint8_t>(c) == b; });
}

std::uint32_t passwordMask(double created)
{
    const double whole = std::trunc(created);
    if (!(std::abs(whole) < 2147483648.0))
        return 0;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(whole));
}

bool hasPassword(ByteView plain)
{
    const std::uint32_t mask = passwordMask(getDouble(plain, kCreated));
    for (std::size_t at = 0; at < kPasswordSize; at += 4) {
        if (get32(plain, kPassword + at) != mask)
            return true;
    }
    return false;
}

// A running hash over every second byte from 042 on, shift = index mod 24, the password's
// bytes counting as zero when there is none.
std::uint32_t sidKeyOf(ByteView plain)
{
    std::uint32_t key = get32(plain, kCreated);
    for (unsigned i = 20; i < 28; ++i)
        key ^= static_cast<std::uint32_t>(plain[kPassword + 2 * i]) << (i % 24);
    return key;
}

void requireJet4(ByteView page)
{
    switch (kindOf(page)) {
    case FileKind::Jet4:
        return;
    case FileKind::Jet3:
        throw Error(Fault::UnsupportedVersion, "это файл Access 95/97 (Jet 3)");
    case FileKind::Ace:
        throw Error(Fault::UnsupportedVersion,
                    "это файл " + aceProgram(page)
                        + " (.accdb), а нужен файл Access 2000-2003 (.mdb); сохраните его в Access "
                          "в формате Access 2000 или 2002-2003");
    case FileKind::Foreign:
        throw Error(Fault::NotADatabase, "это не файл базы данных Access, а " + foreignName(page));
    }
}

} // namespace

DatabaseHeader decodeHeader(ByteView page)
{
    requireJet4(page);
    if (page.size() < kPageSize)
        throw Error(Fault::Damaged, "файл базы данных обрезан: нет и первой страницы");
    Bytes plain(page.begin(), page.end());
    applyRc4(kRegionKey, ByteSpan(plain).subspan(kRegion, kRegionSize));
    if (RowPointer::unpack(get32(plain, kGlobalMap)) != RowPointer{1, 0})
        throw Error(Fault::Damaged, "заголовок файла базы данных повреждён", 0);
    if (hasPassword(plain))
        throw Error(Fault::PasswordProtected,
                    "файл базы данных защищён паролем; снимите пароль в Access");
    DatabaseHeader header;
    header.databaseKey = get32(plain, kDatabaseKey);
    header.codePage = get16(plain, kCodePage);
    header.buildNumber = get32(plain, kBuildNumber);
    header.collation = get16(plain, kCollation);
    header.created = {getDouble(plain, kCreated)};
    header.workgroupFile = startsWith(page, kName, "Jet System DB"sv);
    header.sidKey = sidKeyOf(plain);
    return header;
}

Bytes encodeHeader(const DatabaseHeader& header)
{
    Bytes page(kPageSize, 0);
    page[1] = 1;
    const std::string_view name = header.workgroupFile ? "Jet System DB  "sv : "Standard Jet DB"sv;
    std::copy(name.begin(), name.end(), page.begin() + kName);
    page[kVersion] = 1;
    put32(page, kGlobalMap, RowPointer{1, 0}.packed());
    put32(page, kGlobalMap + 4, RowPointer{1, 1}.packed());
    for (unsigned i = 0; i < 4; ++i)
        put32(page, kSystemTables + std::size_t{4} * i, 2 + i);
    put16(page, kCodePage, header.codePage);
    put32(page, kDatabaseKey, header.databaseKey);
    for (std::size_t at = 0; at < kPasswordSize; at += 4)
        put32(page, kPassword + at, passwordMask(header.created.days));
    put32(page, kBuildNumber, header.buildNumber);
    put16(page, kCollation, header.collation);
    putDouble(page, kCreated, header.created.days);
    std::copy(kMark.begin(), kMark.end(), page.begin() + kFormatMark);
    // Slot 0 is the exclusive opener's, who has just committed once.
    put16(page, kCommitWords, 0x0101);
    for (std::size_t slot = 1; slot < 256; ++slot)
        put16(page, kCommitWords + 2 * slot, 0x0100);
    applyRc4(kRegionKey, ByteSpan(page).subspan(kRegion, kRegionSize));
    return page;
}

} // namespace jet
