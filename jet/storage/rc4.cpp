#include "jet/storage/rc4.h"

#include <array>
#include <utility>

namespace jet {

void applyRc4(std::uint32_t key, ByteSpan bytes)
{
    std::array<std::uint8_t, 256> state;
    for (unsigned i = 0; i < state.size(); ++i)
        state[i] = static_cast<std::uint8_t>(i);
    std::uint8_t j = 0;
    for (unsigned i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + (key >> (8 * (i % 4)) & 0xFF));
        std::swap(state[i], state[j]);
    }
    std::uint8_t i = 0;
    j = 0;
    for (std::uint8_t& byte : bytes) {
        ++i;
        const std::uint8_t a = state[i];
        j = static_cast<std::uint8_t>(j + a);
        const std::uint8_t b = state[j];
        state[i] = b;
        state[j] = a;
        byte = static_cast<std::uint8_t>(byte ^ state[static_cast<std::uint8_t>(a + b)]);
    }
}

} // namespace jet
