#pragma once

#include "refbooks/forms/frmsd1.h"
#include "tests/refbooks/bookfixture.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <memory>

// The record dialog on an empty journal, worked with by keys alone.
class RecordDialog : public BookFixture
{
protected:
    using BookFixture::BookFixture;

    void open(refbooks::Book book, refbooks::RecordMode mode = refbooks::RecordMode::New,
              std::int64_t key = 0, const refbooks::ListFilter& filter = {})
    {
        auto record = refbooks::BookRecord::open(session, prompt, book, mode, key);
        ASSERT_NE(record, nullptr);
        record->preset(filter);
        dialog = std::make_unique<refbooks::frmSD1>(std::move(record), session, prompt);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    // One key goes where the window system would send it: to an open list, else to the focus.
    static void press(Qt::Key key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* target = QApplication::activePopupWidget();
        if (!target)
            target = QApplication::focusWidget();
        ASSERT_NE(target, nullptr);
        QTest::sendKeyEvent(QTest::Click, target, key, text, modifiers);
    }
    // "\t" is the Tab key, "\n" is Enter: pressed twice where typing has opened a list, of which
    // the first takes the only row.
    static void type(const QString& text)
    {
        for (const QChar letter : text) {
            if (letter == u'\t') {
                press(Qt::Key_Tab);
            } else if (letter == u'\n') {
                if (QApplication::activePopupWidget())
                    press(Qt::Key_Return);
                press(Qt::Key_Return);
            } else {
                press(static_cast<Qt::Key>(letter.toUpper().unicode()), letter);
            }
        }
    }
    // An Alt access key; a button that it presses acts a moment later.
    void alt(QChar letter)
    {
        while (QApplication::activePopupWidget())
            press(Qt::Key_Escape);
        QTest::sendKeyEvent(QTest::Click, dialog.get(),
                            static_cast<Qt::Key>(letter.toUpper().unicode()), letter,
                            Qt::AltModifier);
        const auto buttons = dialog->findChildren<QPushButton*>();
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return std::ranges::none_of(buttons, &QPushButton::isDown); }));
    }
    template <class Widget = QWidget>
    Widget* named(const char* name) const
    {
        return dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    static std::string focused()
    {
        const QWidget* widget = QApplication::focusWidget();
        return widget ? widget->objectName().toStdString() : "";
    }
    // The text selected in the control that has the focus.
    static QString selected()
    {
        const QWidget* widget = QApplication::focusWidget();
        const auto* line = qobject_cast<const QLineEdit*>(widget);
        return line ? line->selectedText() : widget->findChild<QLineEdit*>()->selectedText();
    }
    bool accepted() const { return !dialog->isVisible() && dialog->result() == QDialog::Accepted; }

    std::unique_ptr<refbooks::frmSD1> dialog;
};
