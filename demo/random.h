#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace demo {

// A generator whose sequence is the same on every system, unlike the standard library's
// distributions. Algorithm: splitmix64 by Sebastiano Vigna (public domain).
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {}

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15u;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }
    // Whole number of low..high, both included. Requires low <= high.
    int between(int low, int high)
    {
        return low + static_cast<int>(next() % static_cast<std::uint64_t>(high - low + 1));
    }
    // 0 <= x < 1.
    double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
    bool chance(double probability) { return unit() < probability; }
    // Around `mean`, nearly normal (sum of four uniform numbers).
    double around(double mean, double spread)
    {
        return mean + spread * (unit() + unit() + unit() + unit() - 2.0);
    }
    std::string_view pick(std::span<const std::string_view> list)
    {
        return list[next() % list.size()];
    }

private:
    std::uint64_t m_state;
};

} // namespace demo
