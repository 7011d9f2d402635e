#include "shell/forms/qtprompt.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QTranslator>

using namespace Qt::StringLiterals;
using shell::Answer;

namespace {

// Presses a key in the box that the next call shows, and keeps what the box said.
class Desk final
{
public:
    explicit Desk(Qt::Key key)
    {
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this, key] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return;
            }
            m_timer.stop();
            text = box->text();
            format = box->textFormat();
            icon = box->icon();
            for (const auto* button : box->buttons()) {
                buttons << button->text().remove(u'&');
            }
            QTest::keyClick(box, key);
        });
        m_timer.start();
    }

    QString text;
    QStringList buttons;
    Qt::TextFormat format = Qt::AutoText;
    QMessageBox::Icon icon = QMessageBox::NoIcon;

private:
    QTimer m_timer;
};

} // namespace

TEST(QtPrompt, ReturnTakesTheDefaultAnswerAndEscapeTheHarmlessOne)
{
    const struct
    {
        Qt::Key key;
        Answer preset;
        bool expected;
    } rows[] = {
        {Qt::Key_Return, Answer::No, false},
        {Qt::Key_Return, Answer::Yes, true},
        {Qt::Key_Escape, Answer::Yes, false},
    };
    for (const auto& row : rows) {
        const Desk desk(row.key);
        shell::QtPrompt prompt;
        EXPECT_EQ(prompt.question(u"Удалить выделенную строку?"_s, row.preset), row.expected);
        EXPECT_EQ(desk.icon, QMessageBox::Question);
    }
}

TEST(QtPrompt, WarnsBeforeWhatIsNotEasilyUndone)
{
    shell::QtPrompt prompt;
    const Desk enter(Qt::Key_Return);
    EXPECT_FALSE(prompt.confirm(u"Удалить выделенную строку?"_s));
    EXPECT_EQ(enter.icon, QMessageBox::Warning);
}

TEST(QtPrompt, EscapeGoesBackWhenWorkWouldBeLost)
{
    shell::QtPrompt prompt;
    const Desk escape(Qt::Key_Escape);
    EXPECT_EQ(prompt.saveQuestion(u"Сохранить оценки?"_s), Answer::Cancel);
    const Desk enter(Qt::Key_Return);
    EXPECT_EQ(prompt.saveQuestion(u"Сохранить оценки?"_s), Answer::Yes);
}

TEST(QtPrompt, ShowsTextsAsTheyAreWithRussianButtons)
{
    QTranslator russian;
    if (!russian.load(u"qtbase_ru"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        GTEST_SKIP() << "Qt's Russian catalogue is not installed";
    }
    QApplication::installTranslator(&russian);
    shell::QtPrompt prompt;
    const Desk desk(Qt::Key_Escape);
    prompt.saveQuestion(u"Группа <b>ИС-21</b>"_s);
    EXPECT_EQ(desk.text, u"Группа <b>ИС-21</b>"_s);
    EXPECT_EQ(desk.format, Qt::PlainText);
    for (const QString& button : desk.buttons) {
        EXPECT_TRUE(button.at(0).script() == QChar::Script_Cyrillic) << button.toStdString();
    }
    QApplication::removeTranslator(&russian);
}
