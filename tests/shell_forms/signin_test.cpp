#include "jet/database.h"
#include "shell/access/programpassword.h"
#include "shell/forms/frmlogin.h"
#include "shell/forms/frmloginmulti.h"
#include "shell/forms/frmpassword.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/shell_forms/modal.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using shell::Setting;

namespace {

void enterPassword(QDialog& dialog, const QString& password)
{
    auto* line = dialog.findChild<QLineEdit*>(u"txtPassword"_s);
    line->clear();
    line->insert(password);
    QTest::keyClick(line, Qt::Key_Return);
}

class SignIn : public MainWindow
{
protected:
    QString lockedJournal()
    {
        const QString path = newJournal(u"locked.mdb"_s);
        const auto journal = data::Journal::openAndCheck(path, false, prompt);
        journal->database().execute("UPDATE USERS SET PSSW = \"1\" WHERE ROLE = 0;");
        return path;
    }
};

TEST_F(SignIn, AsksNobodyInAFileWithoutPasswords)
{
    start(newJournal(u"a.mdb"_s));
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.user().role, shell::Role::Administrator);
}

TEST_F(SignIn, OpensALockedFileOnlyWithThePassword)
{
    const QString path = lockedJournal();
    start();
    prompt.expect(Box::Exclamation, u"Файл базы данных не был открыт."_s);
    inNextDialog<shell::frmLoginMulti>([](auto& dialog) { dialog.reject(); });
    EXPECT_FALSE(window->files().open(path));
    EXPECT_FALSE(session.isOpen());

    prompt.expect(Box::Exclamation, u"Неверный пароль, введите заново!"_s);
    inNextDialog<shell::frmLoginMulti>([](auto& dialog) {
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        EXPECT_EQ(dialog.template findChild<QComboBox*>(u"cmbUser"_s)->currentText(),
                  u"Администратор"_s);
        enterPassword(dialog, u"2"_s);
        EXPECT_TRUE(dialog.isVisible());
        enterPassword(dialog, u"1"_s);
    });
    EXPECT_TRUE(window->files().open(path));
    EXPECT_TRUE(session.isOpen());
    EXPECT_EQ(settings.text(Setting::Login), u"Администратор"_s);
}

TEST_F(SignIn, LimitsTheCommandsOfAUser)
{
    const QString path = lockedJournal();
    start();
    inNextDialog<shell::frmLoginMulti>([](auto& dialog) {
        dialog.template findChild<QComboBox*>(u"cmbUser"_s)->setCurrentText(u"Пользователь"_s);
        enterPassword(dialog, {});
    });
    ASSERT_TRUE(window->files().open(path));
    EXPECT_FALSE(action(u"mnuNastroiki"_s)->isEnabled());
    EXPECT_TRUE(action(u"mnuposechaemost"_s)->isEnabled());

    inNextDialog<shell::frmLoginMulti>([](auto& dialog) {
        dialog.template findChild<QComboBox*>(u"cmbUser"_s)->setCurrentText(u"Администратор"_s);
        enterPassword(dialog, u"1"_s);
    });
    trigger(u"mnuUserChange"_s);
    EXPECT_TRUE(action(u"mnuNastroiki"_s)->isEnabled());
}

TEST_F(SignIn, MakesOneWaitAfterSeveralWrongPasswords)
{
    const QString stored = shell::protectedPassword(u"да"_s);
    shell::frmLogin dialog(stored, prompt);
    dialog.show();
    for (int i = 0; i < 3; ++i) {
        prompt.expect(Box::Exclamation, u"Неверный пароль, введите заново!"_s);
        enterPassword(dialog, u"нет"_s);
    }
    auto* button = dialog.findChild<QPushButton*>(u"cmdOK"_s);
    EXPECT_FALSE(button->isEnabled());
    EXPECT_EQ(dialog.findChild<QLabel*>(u"lblWait"_s)->text(), u"Следующая попытка через 1 с"_s);
    enterPassword(dialog, u"да"_s); // comes too early
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return button->isEnabled(); }));
    enterPassword(dialog, u"да"_s);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(SignIn, SetsAndRemovesTheProgramPassword)
{
    start();
    const auto type = [this](const QString& first, const QString& second, bool closes) {
        inNextDialog<shell::frmPassword>([=](auto& dialog) {
            dialog.template findChild<QLineEdit*>(u"txtPassword"_s)->setText(first);
            dialog.template findChild<QLineEdit*>(u"txtAgain"_s)->setText(second);
            QTest::mouseClick(dialog.template findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
            EXPECT_EQ(dialog.isVisible(), !closes);
            dialog.reject();
        });
        trigger(u"mnuToolsLock"_s);
    };
    prompt.expect(Box::Exclamation, u"Повторный ввод неверен."_s);
    type(u"а"_s, u"б"_s, false);
    EXPECT_EQ(settings.text(Setting::Password), QString());
    prompt.expect(Box::Information, u"Пароль установлен."_s);
    type(u"а"_s, u"а"_s, true);
    EXPECT_TRUE(shell::isPassword(u"а"_s, settings.text(Setting::Password)));
    prompt.expect(Box::Information, u"Пароль снят."_s);
    type({}, {}, true);
    EXPECT_TRUE(shell::frmLogin::pass(settings, prompt));
}

} // namespace
