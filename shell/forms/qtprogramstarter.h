#pragma once

#include "shell/service/programstarter.h"

namespace shell {

// Starts programs of this computer.
class QtProgramStarter final : public ProgramStarter
{
public:
    QString find(const QStringList& programs) const override;
    bool start(const QString& program, const QStringList& arguments) override;
    void startWatched(const QString& program, const QStringList& arguments,
                      std::function<void()> failed) override;
    bool open(const QUrl& address) override;
};

} // namespace shell
