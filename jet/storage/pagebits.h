#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/types.h"

#include <cstddef>

// Bitmaps of usage maps: bit b of byte k, b counted from the lowest.
namespace jet::pagebits {

// A bitmap page (type 05) has four bytes before its bitmap.
inline constexpr std::size_t kBitmapStart = 4;
inline constexpr PageNumber kPagesPerBitmap = (kPageSize - kBitmapStart) * 8;

inline bool test(ByteView bits, std::size_t bit)
{
    return (bits[bit / 8] >> (bit % 8) & 1) != 0;
}

inline void set(ByteSpan bits, std::size_t bit, bool value)
{
    const auto mask = static_cast<std::uint8_t>(1u << (bit % 8));
    std::uint8_t& byte = bits[bit / 8];
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
}

// Lowest set bit at or above `from`; bits.size() * 8 when there is none.
inline std::size_t next(ByteView bits, std::size_t from)
{
    const std::size_t count = bits.size() * 8;
    while (from < count) {
        if (from % 8 == 0 && bits[from / 8] == 0)
            from += 8;
        else if (test(bits, from))
            return from;
        else
            ++from;
    }
    return count;
}

} // namespace jet::pagebits
