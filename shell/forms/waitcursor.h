#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace shell {

// While it lives the pointer says that the program is at work.
class WaitCursor final
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace shell
