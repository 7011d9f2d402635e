#include "jet/database.h"
#include "shell/forms/frmoption.h"
#include "shell/forms/frmworkdate.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/mainwindow.h"
#include "tests/shell_forms/modal.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

using namespace Qt::StringLiterals;
using shell::frmOption;

namespace {

template <class Widget>
Widget& in(QDialog& dialog, const QString& name)
{
    return *dialog.findChild<Widget*>(name);
}

void press(QDialog& dialog, const QString& button)
{
    QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
}

class Options : public MainWindow
{
protected:
    void startWithFile() { start(newJournal(u"a.mdb"_s)); }
    // RASP as it stands in the file.
    jet::Value stored(const std::string& field)
    {
        return session.database().rows("SELECT " + field + " FROM RASP;").at(0).at(0);
    }
};

TEST_F(Options, StoreEveryControlInTheSettingsRow)
{
    startWithFile();
    inNextDialog<frmOption>([](auto& dialog) {
        in<QLineEdit>(dialog, u"txtNaim"_s).setText(u"Колледж \"Заря\""_s);
        in<QLineEdit>(dialog, u"txtAdres"_s).clear();
        in<QLineEdit>(dialog, u"txtRuk1_0"_s).setText(u"Директор"_s);
        in<QLineEdit>(dialog, u"txtRuk1_1"_s).setText(u"А.Б. Ёлкин"_s);
        in<QLineEdit>(dialog, u"txtDol1_0"_s).setText(u"Секретарь"_s);
        in<QLineEdit>(dialog, u"txtDol1_1"_s).setText(u"В.Г. Дубова"_s);
        in<QCheckBox>(dialog, u"RukCH"_s).setChecked(true);
        in<QCheckBox>(dialog, u"dolCH"_s).setChecked(true);
        in<QDateEdit>(dialog, u"DT0"_s).setDate({2026, 2, 3});
        in<QDateEdit>(dialog, u"DT1_0"_s).setDate({2025, 9, 1});
        in<QDateEdit>(dialog, u"DT1_1"_s).setDate({2026, 6, 30});
        in<QCheckBox>(dialog, u"Ch1_0"_s).setChecked(true);
        in<QCheckBox>(dialog, u"Ch1_1"_s).setChecked(true);
        in<QSpinBox>(dialog, u"Text12"_s).setValue(2);
        press(dialog, u"cmdOK"_s);
    });
    trigger(u"mnuNastroiki"_s);
    EXPECT_EQ(stored("NAIM").toText(), "Колледж \"Заря\"");
    EXPECT_EQ(stored("ADR").toText(), "нет");
    EXPECT_EQ(stored("DIR_D").toText(), "Директор");
    EXPECT_EQ(stored("DIR_FIO").toText(), "А.Б. Ёлкин");
    EXPECT_EQ(stored("OTV_D").toText(), "Секретарь");
    EXPECT_EQ(stored("OTV_FIO").toText(), "В.Г. Дубова");
    EXPECT_TRUE(stored("DIR_P").toBool());
    EXPECT_TRUE(stored("OTV_P").toBool());
    EXPECT_EQ(stored("DATR").toText(), "03.02.2026");
    EXPECT_EQ(stored("DATN").toText(), "01.09.2025");
    EXPECT_EQ(stored("DATK").toText(), "30.06.2026");
    EXPECT_TRUE(stored("Uroki").toBool());
    EXPECT_TRUE(stored("AvtSave").toBool());
    EXPECT_FALSE(stored("LockOR").toBool());
    EXPECT_EQ(stored("MNJ").toInteger(), 2);
    EXPECT_EQ(session.hoursPerLesson(), 2);
    EXPECT_EQ(session.workingDate(), QDate(2026, 2, 3));
    inNextDialog<frmOption>([](auto& dialog) {
        EXPECT_EQ(in<QLineEdit>(dialog, u"txtAdres"_s).text(), u"нет"_s);
        dialog.reject();
    });
    trigger(u"mnuNastroiki"_s);
}

TEST_F(Options, ShowAnEmptyWorkingDateAsTheFirstOf2000AndCancelWithoutATrace)
{
    startWithFile();
    ASSERT_TRUE(stored("DATR").isNull());
    inNextDialog<frmOption>([](auto& dialog) {
        EXPECT_EQ(withoutAccessibleName(dialog), "");
        EXPECT_EQ(in<QDateEdit>(dialog, u"DT0"_s).text(), u"01.01.2000"_s);
        in<QLineEdit>(dialog, u"txtNaim"_s).setText(u"Другое"_s);
        press(dialog, u"cmdCancel"_s);
    });
    trigger(u"mnuNastroiki"_s);
    EXPECT_TRUE(stored("DATR").isNull());
    EXPECT_NE(stored("NAIM").toText(), "Другое");
}

TEST_F(Options, RefuseAYearThatEndsBeforeItBegins)
{
    startWithFile();
    prompt.expect(Box::Exclamation, u"Учебный период начинается позже, чем заканчивается."_s);
    inNextDialog<frmOption>([](auto& dialog) {
        in<QDateEdit>(dialog, u"DT1_0"_s).setDate({2026, 9, 1});
        in<QDateEdit>(dialog, u"DT1_1"_s).setDate({2026, 6, 30});
        press(dialog, u"cmdOK"_s);
        EXPECT_TRUE(dialog.isVisible());
        dialog.reject();
    });
    trigger(u"mnuNastroiki"_s);
}

TEST_F(Options, KeepHoursOfALessonBetweenOneAndSixAndTextsWithinTheirFields)
{
    startWithFile();
    inNextDialog<frmOption>([](auto& dialog) {
        auto& hours = in<QSpinBox>(dialog, u"Text12"_s);
        hours.setValue(0);
        EXPECT_EQ(hours.value(), 1);
        hours.setValue(7);
        EXPECT_EQ(hours.value(), 6);
        EXPECT_EQ(in<QLineEdit>(dialog, u"txtNaim"_s).maxLength(), 100);
        EXPECT_EQ(in<QLineEdit>(dialog, u"txtRuk1_1"_s).maxLength(), 50);
        EXPECT_EQ(in<QLineEdit>(dialog, u"txtAdres"_s).maxLength(), 255);
        EXPECT_FALSE(in<QCheckBox>(dialog, u"chkLogClear"_s).isEnabled());
        EXPECT_FALSE(in<QSpinBox>(dialog, u"txtRefresh"_s).isEnabled());
        dialog.reject();
    });
    trigger(u"mnuNastroiki"_s);
}

TEST_F(Options, SwitchTheWordingForTheNextStart)
{
    startWithFile();
    inNextDialog<frmOption>([](auto& dialog) {
        in<QRadioButton>(dialog, u"optSchool"_s).setChecked(true);
        press(dialog, u"cmdOK"_s);
    });
    trigger(u"mnuNastroiki"_s);
    EXPECT_TRUE(settings.wording().isSchool());
    EXPECT_FALSE(session.wording().isSchool()) << "in force from the next start";
}

TEST_F(Options, AskTheWorkingDateWhereTheFileWantsIt)
{
    const QString path = newJournal(u"a.mdb"_s);
    {
        const auto journal = data::Journal::openAndCheck(path, false, prompt);
        journal->database().execute("UPDATE RASP SET LockOR = True;");
    }
    start();
    ASSERT_TRUE(window->files().open(path));
    inNextDialog<shell::frmWorkDate>([](auto& dialog) {
        in<QDateEdit>(dialog, u"DT0"_s).setDate({2026, 3, 4});
        dialog.accept();
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return session.workingDate() == QDate(2026, 3, 4); }));
    EXPECT_EQ(stored("DATR").toText(), "04.03.2026");
}

} // namespace
