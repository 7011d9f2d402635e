#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace jet {

inline constexpr std::size_t kPageSize = 4096;

using PageNumber = std::uint32_t;

// Names a row of a data page; on disk one u32: (page << 8) | row. Also a row's identity
// for indexes and for SQLite's rowid.
struct RowPointer
{
    PageNumber page = 0;
    std::uint8_t row = 0;

    static RowPointer unpack(std::uint32_t packed)
    {
        return {packed >> 8, static_cast<std::uint8_t>(packed)};
    }
    std::uint32_t packed() const { return (page << 8) | row; }
    bool isNull() const { return page == 0; }
    // NOLINTNEXTLINE(modernize-use-nullptr): a false alarm on defaulted comparisons
    friend auto operator<=>(const RowPointer&, const RowPointer&) = default;
};

// First byte of a page.
enum class PageType : std::uint8_t {
    Header = 0x00,
    Data = 0x01,
    Definition = 0x02,
    IndexNode = 0x03,
    IndexLeaf = 0x04,
    UsageBitmap = 0x05,
    FreedDefinition = 0x08,
    FreedData = 0x09,
};

} // namespace jet

template <>
struct std::hash<jet::RowPointer>
{
    std::size_t operator()(const jet::RowPointer& p) const noexcept { return p.packed(); }
};
