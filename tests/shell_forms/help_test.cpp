#include "shell/forms/frmhelp.h"

#include "shell/forms/manualview.h"
#include "shell/service/helppage.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <set>

using namespace Qt::StringLiterals;

namespace {

class Help : public MainWindow
{
protected:
    void open(const QString& command)
    {
        trigger(command);
        form = window->findChild<shell::frmHelp*>();
        ASSERT_NE(form, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == form; }));
        manual = form->findChild<shell::ManualView*>();
        contents = form->findChild<QTreeWidget*>();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(form->focusWidget(), key, modifiers);
    }

    shell::frmHelp* form = nullptr;
    shell::ManualView* manual = nullptr;
    QTreeWidget* contents = nullptr;
};

} // namespace

TEST_F(Help, OpensAtThePageThatTheCommandIsAbout)
{
    start();
    const std::pair<QString, QString> pages[] = {
        {u"mnuSpravUD"_s, shell::helppage::kRemoteHelp},
        {u"mnuBrowser"_s, shell::helppage::kStart},
    };
    for (const auto& [command, anchor] : pages) {
        open(command);
        EXPECT_EQ(manual->source().fragment(), anchor);
        EXPECT_EQ(manual->anchorInSight(), anchor);
        ASSERT_NE(contents->currentItem(), nullptr);
        EXPECT_EQ(contents->currentItem()->data(0, Qt::UserRole).toString(), anchor);
    }
    EXPECT_EQ(window->findChildren<shell::frmHelp*>().size(), 1);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(manual->anchorInSight(), shell::helppage::kRemoteHelp);
    QTest::mouseClick(form->findChild<QToolButton*>(u"cmdForward"_s), Qt::LeftButton);
    EXPECT_EQ(manual->anchorInSight(), shell::helppage::kStart);
    press(Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(Help, OpensByF1)
{
    start();
    QTest::keyClick(window.get(), Qt::Key_F1);
    form = window->findChild<shell::frmHelp*>();
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(withoutAccessibleName(*form), "");
}

TEST_F(Help, FindsTextInBothDirectionsAndBeginsAnew)
{
    start();
    open(u"mnuHelpManual"_s);
    press(Qt::Key_F, Qt::ControlModifier);
    auto* line = form->findChild<QLineEdit*>(u"txtSearch"_s);
    ASSERT_TRUE(line->hasFocus());
    line->setText(u"пропуск"_s);
    press(Qt::Key_Return);
    const int first = manual->textCursor().selectionStart();
    EXPECT_EQ(manual->textCursor().selectedText().toLower(), u"пропуск"_s);
    press(Qt::Key_F3);
    EXPECT_GT(manual->textCursor().selectionStart(), first);
    press(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(manual->textCursor().selectionStart(), first);
    press(Qt::Key_F3, Qt::ShiftModifier); // nothing above: on from the end
    EXPECT_GT(manual->textCursor().selectionStart(), first);

    line->setText(u"нет такого слова"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(form->findChild<QLabel*>(u"lblFound"_s)->text(), u"Не найдено."_s);
    EXPECT_TRUE(manual->textCursor().hasSelection()); // the place is kept
}

TEST_F(Help, ContentsLeadToEveryHeading)
{
    start();
    open(u"mnuHelpManual"_s);
    ASSERT_GT(contents->topLevelItemCount(), 4);
    for (QTreeWidgetItemIterator at(contents); *at; ++at) {
        const QString anchor = (*at)->data(0, Qt::UserRole).toString();
        contents->setCurrentItem(*at);
        QTest::keyClick(contents, Qt::Key_Return);
        EXPECT_EQ(manual->source().fragment(), anchor);
        const auto* bar = manual->verticalScrollBar();
        EXPECT_TRUE(manual->anchorInSight() == anchor || bar->value() == bar->maximum())
            << anchor.toStdString();
    }
}

TEST(Manual, HasEveryPageThatIsLinkedToAndNoTwoOfOneName)
{
    const shell::ManualView view;
    std::set<QString> anchors;
    for (const auto& heading : view.headings()) {
        EXPECT_TRUE(anchors.insert(heading.anchor).second) << heading.anchor.toStdString();
    }
    EXPECT_TRUE(anchors.contains(shell::helppage::kStart));
    EXPECT_TRUE(anchors.contains(shell::helppage::kRemoteHelp));
    QFile file(u":/help/manual.md"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression link(u"\\]\\(#([^)]+)\\)"_s);
    for (const auto& match : link.globalMatch(text)) {
        EXPECT_TRUE(anchors.contains(match.captured(1))) << match.captured(1).toStdString();
    }
}
