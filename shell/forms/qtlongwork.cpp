#include "shell/forms/qtlongwork.h"

#include <QApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <exception>
#include <memory>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kShownAfterMilliseconds = 500;
constexpr int kRefreshMilliseconds = 50;

struct State
{
    std::atomic<int> percent = 0;
    std::atomic<bool> cancelled = false;
    std::exception_ptr failure; // read when the thread has ended
};

// Lets windows repaint while the user's keys and clicks wait for their turn.
void waitShortly(const QThread& thread)
{
    QEventLoop loop;
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kShownAfterMilliseconds, &loop, &QEventLoop::quit);
    if (thread.isRunning()) {
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
}

void waitInBox(const QThread& thread, const QString& title, State& state)
{
    QProgressDialog box(title, u"Отмена"_s, 0, 100, QApplication::activeWindow());
    box.setObjectName(u"longWork"_s);
    box.setWindowTitle(QApplication::applicationDisplayName());
    box.setWindowModality(Qt::ApplicationModal);
    box.setAutoClose(false);
    box.setAutoReset(false);
    box.setMinimumDuration(0);
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &box, [&] {
        if (!state.cancelled) {
            box.setValue(state.percent);
        }
    });
    QObject::connect(&box, &QProgressDialog::canceled, &box, [&] {
        state.cancelled = true;
        box.setLabelText(u"Отмена..."_s);
        box.setCancelButton(nullptr);
        box.show(); // until the work has really ended
    });
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    timer.start(kRefreshMilliseconds);
    box.show();
    if (thread.isRunning()) {
        loop.exec();
    }
}

} // namespace

void QtLongWork::run(const QString& title, const std::function<void(const Progress&)>& body)
{
    State state;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            body([&state](int percent) {
                state.percent = percent;
                return !state.cancelled;
            });
        } catch (...) {
            state.failure = std::current_exception();
        }
    }));
    thread->start();
    waitShortly(*thread);
    if (thread->isRunning()) {
        waitInBox(*thread, title, state);
    }
    thread->wait();
    if (state.failure) {
        std::rethrow_exception(state.failure);
    }
}

} // namespace shell
