#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace jet::compact {

// Thrown when the caller's progress function says no.
struct Cancelled
{};

// Tells the caller how far the work is. It has parts, each of which is given its share of
// the hundred percent.
class Progress
{
public:
    explicit Progress(std::function<bool(int)> tell)
        : m_tell(std::move(tell))
    {}

    // The part that begins now ends at so many percent.
    void begin(int end)
    {
        m_start = m_end;
        m_end = end;
        say(m_start);
    }
    // Throws Cancelled. Requires done <= all.
    void at(std::size_t done, std::size_t all)
    {
        if (all != 0)
            say(m_start + static_cast<int>(static_cast<std::size_t>(m_end - m_start) * done / all));
    }

private:
    void say(int percent)
    {
        if (percent == m_last || !m_tell)
            return;
        m_last = percent;
        if (!m_tell(percent))
            throw Cancelled{};
    }

    std::function<bool(int)> m_tell;
    int m_start = 0, m_end = 0, m_last = -1;
};

} // namespace jet::compact
