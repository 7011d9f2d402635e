#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

// What the user does in the dialog that the next command opens. The dialog must be closed by
// the steps; one left open fails the test and is cancelled.
template <class Dialog = QDialog>
void inNextDialog(std::function<void(Dialog&)> steps)
{
    QTimer::singleShot(0, qApp, [steps = std::move(steps)] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr) << "the expected dialog did not open";
        steps(*dialog);
        EXPECT_FALSE(dialog->isVisible()) << "the dialog is still open";
        dialog->close();
    });
}
