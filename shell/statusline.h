#pragma once

#include <QString>

namespace shell {

// Where progress is told: the main window's status bar, nothing in jurnalctl, a list in tests.
class StatusLine
{
public:
    virtual ~StatusLine() = default;
    virtual void show(const QString& text) = 0;
};

} // namespace shell
