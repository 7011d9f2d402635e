#include "reports/forms/frmdocument.h"
#include "tests/reports_forms/documentfixture.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/workbook.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QGroupBox>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using reports::DocumentOption;
using reports::frmDocument;

namespace {

class DocumentDialog : public DocumentFixture
{
protected:
    using DocumentFixture::DocumentFixture;

    // Group ИС-21 with Иванов, absent twice in November 2025, and an empty group.
    void SetUp() override
    {
        const int group = file.group("ИС-21");
        file.group("ЭК-11");
        const int student = file.student(group, "Иванов", "Иван", "Иванович");
        maths = file.discipline("Математика");
        file.workload(group, maths, {2025, 9, 1}, {2026, 6, 30});
        file.absence(student, maths, {2025, 11, 12}, 1, 0, 2);
        file.absence(student, maths, {2025, 11, 20}, 1, 2, 0);
        file.options(false, 2);
        open();
        settings.setNumber(shell::Setting::JournalMonth, 11);
        settings.setNumber(shell::Setting::JournalYear, 2025);
    }
    void show(DocumentOption option)
    {
        dialog = std::make_unique<frmDocument>(option, parts());
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    template <class Widget>
    Widget* named(const char* name) const
    {
        return dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    void click(const char* name) const
    {
        auto* button = named<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }
    QString enabledInputs() const
    {
        struct Input
        {
            const char* widget;
            QString name;
        };
        const Input inputs[] = {{"cboMonth", u"месяц"_s},
                                {"spnYear", u"год"_s},
                                {"spnMonths", u"число"_s},
                                {"cboGroup", u"группа"_s},
                                {"cboDiscipline", u"предмет"_s},
                                {"cboStudent", u"студент"_s},
                                {"Op2_0", u"вид"_s},
                                {"Op3_0", u"прогулы"_s},
                                {"DTPicker1", u"начало"_s},
                                {"DTPicker2", u"конец"_s},
                                {"chkBalances", u"часы"_s}};
        QStringList enabled;
        for (const Input& input : inputs)
            if (named<QWidget>(input.widget)->isEnabled())
                enabled << input.name;
        return enabled.join(u' ');
    }

    int maths = 0;
    std::unique_ptr<frmDocument> dialog;
};

class SchoolDocumentDialog : public DocumentDialog
{
protected:
    SchoolDocumentDialog()
        : DocumentDialog(shell::Institution::School)
    {}
};

} // namespace

TEST_F(DocumentDialog, EnablesWhatTheDocumentTakes)
{
    show(DocumentOption::Summary);
    EXPECT_EQ(withoutAccessibleName(*dialog), "");
    EXPECT_TRUE(named<QRadioButton>("Op1_5")->hasFocus());
    EXPECT_EQ(enabledInputs(), u"месяц год число"_s);
    struct Case
    {
        const char* click;
        QString text, enabled;
    };
    const Case cases[] = {
        {"Op1_0", u"Ведомость посещаемости за месяц"_s, u"месяц год группа предмет часы"_s},
        {"Op1_1", u"Ведомость успеваемости за месяц"_s, u"месяц год группа"_s},
        {"Op1_2", u"Ведомость успеваемости по предметам"_s, u"месяц год группа предмет вид"_s},
        {"Op2_1", u"Периодическая"_s, u"группа предмет вид"_s},
        {"Op2_2", u"Сводная"_s, u"группа вид"_s},
        {"Op2_0", u"Текущая"_s, u"месяц год группа предмет вид"_s},
        {"Op1_3", u"Табель успеваемости за месяц"_s, u"месяц год группа студент"_s},
        {"Op1_4", u"Итоговый отчет"_s, u"группа"_s},
        {"Op1_5", u"Сводный отчет"_s, u"месяц год число"_s},
        {"Op1_6", u"Отчет по прогулам по преподавателям/группам"_s, u"месяц год прогулы"_s},
        {"Op3_1", u"По группам за месяц"_s, u"месяц год прогулы"_s},
        {"Op3_2", u"По преподавателям и группам за период"_s, u"прогулы начало конец"_s},
        {"Op1_7", u"Отчет по специальностям"_s, u""_s},
    };
    for (const Case& each : cases) {
        click(each.click);
        const auto* option = named<QRadioButton>(each.click);
        EXPECT_EQ(QString(option->text()).remove(u'&'), each.text);
        EXPECT_TRUE(option->isChecked());
        EXPECT_EQ(enabledInputs(), each.enabled) << each.text.toStdString();
    }
    EXPECT_FALSE(named<QPushButton>("cmdPdf")->isEnabled());
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_TRUE(dialog->wantsRanking());
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(DocumentDialog, KeepsEarlierWorkbooks)
{
    show(DocumentOption::Truancy);
    named<QRadioButton>("Op3_0")->setFocus();
    QTest::keyClick(named<QRadioButton>("Op3_0"), Qt::Key_Down); // by groups
    for (int time = 0; time < 2; ++time)
        QTest::keyClick(dialog.get(), Qt::Key_Return);
    const QString name = u"Отчет по прогулам 2025-11-01_2025-11-30"_s;
    EXPECT_EQ(written(), (QStringList{name + u" (2).xlsx"_s, name + u".xlsx"_s}));
    EXPECT_EQ(starter.opened,
              (QList<QUrl>{QUrl::fromLocalFile(folder.filePath(name + u".xlsx"_s)),
                           QUrl::fromLocalFile(folder.filePath(name + u" (2).xlsx"_s))}));
    EXPECT_TRUE(status.last().contains(name + u" (2).xlsx"_s));
    const auto book = Workbook::read(folder.filePath(name + u" (2).xlsx"_s));
    ASSERT_GT(book.rows.size(), 9);
    EXPECT_EQ(book.rows[7], (QStringList{u"ИС-21"_s, {}, u"=2"_s, u"=2"_s, {}, u"=2"_s, u"=2"_s}));
    EXPECT_EQ(book.rows[9].first(), u"ИТОГО"_s);
    EXPECT_TRUE(dialog->isVisible());

    named<QComboBox>("cboMonth")->setCurrentIndex(9);
    named<QSpinBox>("spnYear")->setValue(2024);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    show(DocumentOption::Card);
    EXPECT_EQ(named<QComboBox>("cboMonth")->currentText(), u"Октябрь"_s);
    EXPECT_EQ(named<QSpinBox>("spnYear")->value(), 2024);
}

TEST_F(DocumentDialog, MakesTheDocumentOfOneGroupAndStudent)
{
    show(DocumentOption::Card);
    auto* groups = named<QComboBox>("cboGroup");
    auto* students = named<QComboBox>("cboStudent");
    EXPECT_EQ(students->count(), 1);
    QTest::keyClick(groups, Qt::Key_Down);
    EXPECT_EQ(groups->currentText(), u"ИС-21"_s);
    ASSERT_EQ(students->count(), 2);
    students->setCurrentIndex(1);
    click("cmdCreate");
    ASSERT_EQ(written().size(), 1);
    const auto book = Workbook::read(folder.filePath(written().first()));
    QString all;
    for (const QStringList& row : book.rows)
        all += row.join(u' ');
    EXPECT_TRUE(all.contains(u"Иванов"_s)) << all.toStdString();

    dialog->close();
    show(DocumentOption::Final); // the group is kept
    EXPECT_EQ(named<QComboBox>("cboGroup")->currentText(), u"ИС-21"_s);
}

TEST_F(DocumentDialog, WritesACardForEachStudent)
{
    for (const char* name : {"\"Иван\", \"Петрович\"", "\"Игорь\", \"Павлович\""}) // И. П.
        session.database().execute("INSERT INTO SPSTUD (IDG, FAM, IM, OTCH) VALUES (1, \"Петров\", "
                                   + std::string(name) + ");");
    show(DocumentOption::Card);
    click("chkEach");
    click("cmdCreate");
    EXPECT_EQ(written(), QStringList()) << "they have a folder of their own";
    const QDir cards(folder.filePath(u"Табель успеваемости 2025-11"_s));
    const QString name = u"Табель успеваемости 2025-11 %1.xlsx"_s;
    EXPECT_EQ(cards.entryList(QDir::Files, QDir::Name),
              (QStringList{name.arg(u"Иванов И. И."_s), name.arg(u"Петров И. П. (2)"_s),
                           name.arg(u"Петров И. П."_s)}));
    EXPECT_TRUE(status.last().startsWith(u"Сохранено файлов: 3 из 3, в папке: "_s));
    EXPECT_EQ(chooser.revealed, cards.filePath(name.arg(u"Петров И. П. (2)"_s)));
    click("cmdPdf");
    EXPECT_EQ(QDir(cards.path() + u" (2)"_s).entryList({u"*.pdf"_s}).size(), 3);

    named<QComboBox>("cboGroup")->setCurrentIndex(1);
    named<QComboBox>("cboStudent")->setCurrentIndex(1);
    EXPECT_FALSE(named<QAbstractButton>("chkEach")->isEnabled()) << "one student is one file";
    named<QComboBox>("cboStudent")->setCurrentIndex(0);
    documents = folder.filePath(u"a.txt"_s);
    QFile blocking(documents);
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    prompt.expectMatching(Box::Critical, u"^Печатная форма Табеля выполнена, но не сохранена в "
                                         "файле\\. Ошибка: папку нельзя создать.*"_s);
    click("cmdCreate");
}

TEST_F(DocumentDialog, OffersAnotherPlaceWhenTheFileCannotBeWritten)
{
    show(DocumentOption::Truancy);
    documents = folder.filePath(u"missing"_s);
    chooser.answer = folder.filePath(u"other.xlsx"_s);
    prompt.expectMatching(Box::Question, u"^Печатная форма Журнала выполнена, но не сохранена в "
                                         "файле\\. Ошибка: [^.]+.*Сохранить в другом месте.*"_s);
    click("cmdCreate");
    EXPECT_EQ(written(), QStringList{u"other.xlsx"_s});
    EXPECT_EQ(starter.opened.size(), 1);

    click("Op1_3");
    documents.clear();
    chooser.answer.clear();
    prompt.expectMatching(
        Box::Question,
        u"^Печатная форма Табеля выполнена, но не сохранена\\. Ошибка: папки нет.*"_s,
        shell::Answer::No);
    click("cmdCreate");
    EXPECT_EQ(written().size(), 1);
}

TEST_F(DocumentDialog, ShowsTheFolderWhereNoProgramOpensWorkbooks)
{
    starter.opens = false;
    show(DocumentOption::Attendance);
    prompt.expectMatching(Box::Question, u"(?s)^Документ сохранен в файле: .*не найдена.*"_s);
    click("cmdCreate");
    ASSERT_EQ(written().size(), 1);
    EXPECT_EQ(chooser.revealed, folder.filePath(written().first()));
}

TEST_F(DocumentDialog, SaysWhatIsMissing)
{
    show(DocumentOption::GradesSubject);
    prompt.expect(Box::Exclamation, u"Выберите предмет."_s);
    click("cmdCreate");
    EXPECT_TRUE(named<QComboBox>("cboDiscipline")->hasFocus());
    click("Op1_6");
    click("Op3_2");
    named<QDateEdit>("DTPicker1")->setDate({2025, 12, 1});
    named<QDateEdit>("DTPicker2")->setDate({2025, 11, 1});
    prompt.expect(Box::Exclamation, u"Начало периода не должно быть позже его конца."_s);
    click("cmdPrint");
    EXPECT_TRUE(named<QDateEdit>("DTPicker1")->hasFocus());
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(DocumentDialog, PrintsAndWritesPdf)
{
    show(DocumentOption::Truancy);
    chooser.answer = folder.filePath(u"a.pdf"_s);
    click("cmdPdf");
    QFile pdf(folder.filePath(u"a.pdf"_s));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    EXPECT_TRUE(chooser.suggested.endsWith(u"Отчет по прогулам 2025-11-01_2025-11-30.pdf"_s));

    chooser.answer = folder.filePath(u"missing/a.pdf"_s);
    prompt.expectMatching(Box::Critical, u"^Печатная форма Журнала выполнена, но не сохранена в "
                                         "файле\\. Ошибка: .*"_s);
    click("cmdPdf");

    QString title;
    inNextDialog<QPrintPreviewDialog>([&](QPrintPreviewDialog& preview) {
        title = preview.windowTitle();
        QTest::keyClick(&preview, Qt::Key_Escape);
    });
    click("cmdPrint");
    EXPECT_TRUE(title.contains(u"Отчет по прогулам"_s)) << title.toStdString();
}

TEST_F(SchoolDocumentDialog, SpeaksOfClasses)
{
    show(DocumentOption::Truancy);
    EXPECT_EQ(named<QRadioButton>("Op1_6")->text(), u"&Отчет по прогулам по учителям/классам"_s);
    EXPECT_EQ(named<QRadioButton>("Op3_2")->text(), u"По учителям и классам за период"_s);
    EXPECT_EQ(named<QGroupBox>("Op3")->title(), u"Прогулы по учителям/классам"_s);
    EXPECT_EQ(named<QComboBox>("cboGroup")->itemText(0), u"Все классы"_s);
    EXPECT_EQ(withoutAccessibleName(*dialog), "");
}
