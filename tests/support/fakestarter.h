#pragma once

#include "shell/service/programstarter.h"

#include <utility>

// A computer with the programs that the test installs; it starts none and remembers what would
// have been started.
class FakeStarter final : public shell::ProgramStarter
{
public:
    QString find(const QStringList& programs) const override
    {
        for (const QString& program : programs) {
            if (installed.contains(program)) {
                return QStringLiteral("/usr/bin/") + program;
            }
        }
        return {};
    }
    bool start(const QString& program, const QStringList& arguments) override
    {
        started << program;
        given = arguments;
        return starts;
    }
    void startWatched(const QString& program, const QStringList& arguments,
                      std::function<void()> failed) override
    {
        start(program, arguments);
        whenFailed = std::move(failed);
    }
    bool open(const QUrl& address) override
    {
        opened << address;
        return opens;
    }

    QStringList installed;
    bool starts = true;
    bool opens = true;
    QStringList started;
    QStringList given;
    QList<QUrl> opened;
    std::function<void()> whenFailed;
};
