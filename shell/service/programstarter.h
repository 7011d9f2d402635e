#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace shell {

// The door to other programs: the desktop's in the program, a list of what was asked in tests.
class ProgramStarter
{
public:
    virtual ~ProgramStarter() = default;

    // The path of the first of the programs that is installed, "" for none.
    virtual QString find(const QStringList& programs) const = 0;
    // Starts the program and leaves it to itself; false when it cannot be started.
    virtual bool start(const QString& program, const QStringList& arguments) = 0;
    // As start(), and calls `failed` once when the program ends with a failure.
    virtual void startWatched(const QString& program, const QStringList& arguments,
                              std::function<void()> failed) = 0;
    // Opens an address with the program that the desktop has for its kind; false for none.
    virtual bool open(const QUrl& address) = 0;
};

} // namespace shell
