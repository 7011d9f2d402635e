#pragma once

#include "jet/storage/bytes.h"

#include <algorithm>

namespace jet::fuzz {

// Takes numbers off the front of a fuzzer's input; behind its end there are zeros.
class Input
{
public:
    explicit Input(ByteView bytes)
        : m_bytes(bytes)
    {}
    bool atEnd() const { return m_bytes.empty(); }
    std::uint8_t u8()
    {
        const ByteView taken = take(1);
        return taken.empty() ? std::uint8_t{0} : taken[0];
    }
    std::uint16_t u16()
    {
        const std::uint8_t low = u8();
        return static_cast<std::uint16_t>(low | (u8() << 8));
    }
    // Fewer at the end.
    ByteView take(std::size_t count)
    {
        const ByteView taken = m_bytes.first(std::min(count, m_bytes.size()));
        m_bytes = m_bytes.subspan(taken.size());
        return taken;
    }
    ByteView rest() { return take(m_bytes.size()); }

private:
    ByteView m_bytes;
};

} // namespace jet::fuzz
