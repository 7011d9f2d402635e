#pragma once

#include "shell/prompt.h"

#include <QString>

#include <exception>

namespace shell {

// Carries out what the user started and stops every exception there: nothing thrown may
// leave a Qt slot. A failure is told as `sentence`, then "Ошибка: " and the error text.
// True when the body ran to its end.
template <class Body>
bool runCommand(Prompt& prompt, const QString& sentence, Body body)
{
    try {
        body();
        return true;
    } catch (const std::exception& error) {
        prompt.critical(
            QStringLiteral("%1 Ошибка: %2").arg(sentence, QString::fromUtf8(error.what())));
    } catch (...) {
        prompt.critical(QStringLiteral("%1 Ошибка: причина неизвестна.").arg(sentence));
    }
    return false;
}

// Carries out a command of the file menu, whose body gives false when it failed or was
// cancelled: it then ends with its sentence. True when it was done.
template <class Body>
bool finishCommand(Prompt& prompt, const QString& sentence, Body body)
{
    bool done = false;
    if (runCommand(prompt, sentence, [&] { done = body(); }) && !done) {
        prompt.exclamation(sentence);
    }
    return done;
}

} // namespace shell
