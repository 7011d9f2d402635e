#include "app/quitsignals.h"

#ifndef Q_OS_WIN
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace app {

#ifdef Q_OS_WIN

// Windows asks through the session's end, which Qt reports by itself.
QuitSignals::QuitSignals(QObject* parent)
    : QObject(parent)
{}

QuitSignals::~QuitSignals() = default;

#else

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A handler of signals may reach nothing but what stands here: [0] is written, [1] read.
int sockets[2] = {-1, -1};

extern "C" void wake(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(sockets[0], &byte, 1);
}

void handle(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : kSignals) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

QuitSignals::QuitSignals(QObject* parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets) != 0) {
        return; // signals then end the program at once, as they do by themselves
    }
    auto* notifier = new QSocketNotifier(sockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        [[maybe_unused]] const auto count = ::read(sockets[1], &byte, 1);
        emit quitWanted();
    });
    handle(&wake);
}

QuitSignals::~QuitSignals()
{
    handle(SIG_DFL);
    for (int& socket : sockets) {
        ::close(socket);
        socket = -1;
    }
}

#endif

} // namespace app
