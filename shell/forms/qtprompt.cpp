#include "shell/forms/qtprompt.h"

#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QMessageBox>
#include <QPushButton>

namespace shell {

namespace {

// A wait cursor set for long work would look wrong over a box that waits for the user.
class PlainCursor final
{
public:
    PlainCursor()
        : m_set(QApplication::overrideCursor() != nullptr)
    {
        if (m_set) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~PlainCursor()
    {
        if (m_set) {
            QApplication::restoreOverrideCursor();
        }
    }
    PlainCursor(const PlainCursor&) = delete;
    PlainCursor& operator=(const PlainCursor&) = delete;

private:
    bool m_set;
};

QMessageBox::StandardButton ask(QMessageBox::Icon icon, const QString& text,
                                QMessageBox::StandardButtons buttons,
                                QMessageBox::StandardButton preset,
                                QMessageBox::StandardButton escape)
{
    const PlainCursor cursor;
    QMessageBox box(icon, QApplication::applicationDisplayName(), text, buttons,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setDefaultButton(preset);
    box.setEscapeButton(escape);
    if (QAbstractButton* discard = box.button(QMessageBox::Discard))
        discard->setText(QStringLiteral("Н&е сохранять")); // Qt's word differs by desktop
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void tell(QMessageBox::Icon icon, const QString& text)
{
    ask(icon, text, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok);
}

} // namespace

void QtPrompt::critical(const QString& text)
{
    qCritical().noquote() << text; // for the error log
    tell(QMessageBox::Critical, text);
}

void QtPrompt::information(const QString& text)
{
    tell(QMessageBox::Information, text);
}

void QtPrompt::exclamation(const QString& text)
{
    tell(QMessageBox::Warning, text);
}

bool QtPrompt::question(const QString& text, Answer preset)
{
    return ask(QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No,
               preset == Answer::Yes ? QMessageBox::Yes : QMessageBox::No, QMessageBox::No)
           == QMessageBox::Yes;
}

bool QtPrompt::confirm(const QString& text)
{
    return ask(QMessageBox::Warning, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No,
               QMessageBox::No)
           == QMessageBox::Yes;
}

bool QtPrompt::offer(const QString& text, const QString& action)
{
    const PlainCursor cursor;
    QMessageBox box(QMessageBox::Warning, QApplication::applicationDisplayName(), text,
                    QMessageBox::Cancel, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QAbstractButton* taken = box.addButton(action, QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.setEscapeButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == taken;
}

Answer QtPrompt::saveQuestion(const QString& text)
{
    const auto buttons = QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;
    switch (ask(QMessageBox::Question, text, buttons, QMessageBox::Save, QMessageBox::Cancel)) {
    case QMessageBox::Save:
        return Answer::Yes;
    case QMessageBox::Discard:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

} // namespace shell
