#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace jet {

using ByteView = std::span<const std::uint8_t>;
using ByteSpan = std::span<std::uint8_t>;

// Little-endian reads and writes. Require offset + size <= bytes.size(); callers check
// offsets that come from a file before they use them.
inline std::uint16_t get16(ByteView b, std::size_t at)
{
    return static_cast<std::uint16_t>(b[at] | (b[at + 1] << 8));
}
inline std::uint32_t get24(ByteView b, std::size_t at)
{
    return static_cast<std::uint32_t>(b[at] | (b[at + 1] << 8) | (b[at + 2] << 16));
}
inline std::uint32_t get32(ByteView b, std::size_t at)
{
    return get24(b, at) | (static_cast<std::uint32_t>(b[at + 3]) << 24);
}
inline std::uint64_t get64(ByteView b, std::size_t at)
{
    return get32(b, at) | (static_cast<std::uint64_t>(get32(b, at + 4)) << 32);
}
inline double getDouble(ByteView b, std::size_t at)
{
    const std::uint64_t bits = get64(b, at);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}
inline void put16(ByteSpan b, std::size_t at, std::uint16_t v)
{
    b[at] = static_cast<std::uint8_t>(v);
    b[at + 1] = static_cast<std::uint8_t>(v >> 8);
}
inline void put24(ByteSpan b, std::size_t at, std::uint32_t v)
{
    put16(b, at, static_cast<std::uint16_t>(v));
    b[at + 2] = static_cast<std::uint8_t>(v >> 16);
}
inline void put32(ByteSpan b, std::size_t at, std::uint32_t v)
{
    put16(b, at, static_cast<std::uint16_t>(v));
    put16(b, at + 2, static_cast<std::uint16_t>(v >> 16));
}
inline void put64(ByteSpan b, std::size_t at, std::uint64_t v)
{
    put32(b, at, static_cast<std::uint32_t>(v));
    put32(b, at + 4, static_cast<std::uint32_t>(v >> 32));
}
inline void putDouble(ByteSpan b, std::size_t at, double v)
{
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    put64(b, at, bits);
}

} // namespace jet
