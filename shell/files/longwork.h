#pragma once

#include <QString>

#include <functional>

namespace shell {

// Called now and then with a number that grows to 100; false cancels. May be called from
// another thread than the one that began the work.
using Progress = std::function<bool(int percent)>;

// Where work that may last runs: behind a progress box with a cancel button in the program,
// at once in tests and scripts.
class LongWork
{
public:
    virtual ~LongWork() = default;
    // Runs `body` to its end and passes on what it throws. `body` may not touch windows or
    // the open journal.
    virtual void run(const QString& title,
                     const std::function<void(const Progress& progress)>& body) = 0;
};

// Runs the work where it stands.
class PlainWork final : public LongWork
{
public:
    void run(const QString&, const std::function<void(const Progress&)>& body) override
    {
        body([](int) { return true; });
    }
};

} // namespace shell
