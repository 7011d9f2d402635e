#pragma once

#include <algorithm>

namespace shell {

// How long to wait after wrong passwords, so that nobody can try many of them. The first two
// slips cost nothing, then the wait doubles.
class RetryDelay final
{
public:
    // Counts one wrong entry and gives the seconds until the next may be made: 0, 0, 1, 2, 4
    // ... 60.
    int wrongEntry()
    {
        constexpr int kFree = 2;
        constexpr int kLongest = 60;
        ++m_wrong;
        return m_wrong <= kFree ? 0 : std::min(kLongest, 1 << std::min(m_wrong - kFree - 1, 6));
    }

private:
    int m_wrong = 0;
};

} // namespace shell
