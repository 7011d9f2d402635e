#include "jet/storage/rc4.h"

#include <array>
#include <utility>

namespace jet {

void applyRc4(std::uint32_t key, ByteSpan bytes)
{
    // Words instead of bytes: a processor passes them on from a store to the next load sooner,
    // and decoding pages is most of what a cold scan does.
    std::array<std::uint32_t, 256> state;
    for (std::uint32_t i = 0; i < state.size(); ++i)
        state[i] = i;
    std::uint32_t j = 0;
    for (std::uint32_t i = 0; i < state.size(); ++i) {
        j = (j + state[i] + (key >> (8 * (i % 4)))) & 0xFF;
        std::swap(state[i], state[j]);
    }
    std::uint32_t i = 0;
    j = 0;
    for (std::uint8_t& byte : bytes) {
        i = (i + 1) & 0xFF;
        const std::uint32_t a = state[i];
        j = (j + a) & 0xFF;
        const std::uint32_t b = state[j];
        state[i] = b;
        state[j] = a;
        byte = static_cast<std::uint8_t>(byte ^ state[(a + b) & 0xFF]);
    }
}

} // namespace jet
