#include "jet/storage/check/header.h"

#include "jet/storage/rc4.h"

#include <cmath>
#include <string>

namespace jet::check {
namespace {

constexpr std::uint32_t kRegionKey = 0x6B39DAC7; // RC4 key bytes C7 DA 39 6B
constexpr std::size_t kRegion = 0x18;
constexpr std::size_t kRegionSize = 128;
constexpr std::size_t kSecondMap = 0x1C;
constexpr std::size_t kSystemTables = 0x20; // four pages
constexpr std::size_t kCreated = 0x72;
constexpr std::size_t kFormatMark = 0x98;
constexpr std::size_t kFormatText = 0x9C;
constexpr std::uint32_t kFormatMarkValue = 0x654;
constexpr std::uint32_t kFormatTextValue = 0x00302E34; // "4.0"
constexpr std::size_t kCommitWords = 0xE00;
constexpr double kMostDays = 2958466; // 31 December 9999

// A word of 0 is left behind by a program that died while it wrote the file; 1 likewise.
void checkCommitWords(ByteView page, Findings& findings)
{
    for (std::size_t at = kCommitWords; at < kPageSize; at += 2) {
        if (get16(page, at) <= 1) {
            findings.harmful("", "заголовок файла: файл помечен как недописанный (место "
                                     + std::to_string((at - kCommitWords) / 2) + ")");
            return;
        }
    }
}

} // namespace

void checkHeader(Pager& pager, Findings& findings)
{
    const PageRef stored = pager.read(0);
    checkCommitWords(stored.bytes(), findings);
    Bytes plain(stored.bytes().begin(), stored.bytes().end());
    applyRc4(kRegionKey, ByteSpan(plain).subspan(kRegion, kRegionSize));
    if (RowPointer::unpack(get32(plain, kSecondMap)) != RowPointer{1, 1})
        findings.harmful("", "заголовок файла: неверно указана вторая общая карта размещения");
    for (std::uint32_t i = 0; i < 4; ++i) {
        if (get32(plain, kSystemTables + std::size_t{4} * i) != 2 + i)
            findings.harmful("", "заголовок файла: неверно указана страница системной таблицы");
    }
    if (get32(plain, kFormatMark) != kFormatMarkValue
        || get32(plain, kFormatText) != kFormatTextValue)
        findings.harmful("", "заголовок файла: нет приметы формата");
    // Also false for a number that is none. The keys of all owners and users follow from it.
    if (!(std::abs(getDouble(plain, kCreated)) < kMostDays))
        findings.harmful("", "заголовок файла: недопустимая дата создания");
}

} // namespace jet::check
