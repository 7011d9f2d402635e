#include "tests/refbooks_forms/listwindow.h"

#include "refbooks/toolbar.h"
#include "shell/session.h"
#include "tests/shell_forms/accessible.h"
#include "tests/support/workbook.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>

using namespace Qt::StringLiterals;
using namespace refbooks;
using shell::Answer;

namespace {

TEST_F(ListWindow, ShowsEveryBookWithItsCommands)
{
    for (int code = 0; code < kBookCodes; ++code) {
        if (catalogue()[static_cast<std::size_t>(code)].table.empty())
            continue;
        const auto book = static_cast<Book>(code);
        open(book);
        QStringList expected, found;
        for (const ToolbarButton& button : toolbarButtons(book, shell::Wording()))
            expected << QString::fromLatin1(button.key.data());
        for (const QAction* action : named<QToolBar>(u"Toolbar1"_s)->actions()) {
            if (!action->objectName().isEmpty())
                found << action->objectName();
            if (action->isSeparator())
                continue;
            EXPECT_FALSE(action->icon().pixmap(24).toImage().isNull());
            EXPECT_FALSE(action->icon().isNull()) << code << action->text().toStdString();
        }
        EXPECT_EQ(found, expected + QStringList({u"keyRefresh"_s, u"keyExport"_s})) << code;
        EXPECT_EQ(withoutAccessibleName(*window), "") << code;
        EXPECT_TRUE(window->windowTitle().startsWith(bookTitle(book, shell::Wording())));
        const bool filters = book == Book::Workload || book == Book::Students;
        EXPECT_EQ(named<QComboBox>(u"cboSecond"_s)->isVisible(), filters) << code;
    }
}

TEST_F(ListWindow, AddsEditsCopiesAndDeletesByKeysAlone)
{
    open(Book::Departments);
    EXPECT_EQ(count(), u"Строк: 0"_s);
    named<QLineEdit>(u"txtFind"_s)->setFocus(); // Ins works from every part of the window
    for (const QString& name : {u"Физики"_s, u"Истории"_s}) {
        inDialog([&](QDialog&) {
            type(name);
            press(Qt::Key_Return);
        });
        press(Qt::Key_Insert);
    }
    EXPECT_EQ(shown(), (QStringList{u"Истории"_s, u"Физики"_s}));
    EXPECT_EQ(selected(), QStringList{u"Истории"_s}) << "the row stored";
    inDialog([](QDialog&) {
        type(u"Химии"_s); // over the selected text
        press(Qt::Key_Return);
    });
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), (QStringList{u"Физики"_s, u"Химии"_s}));
    EXPECT_EQ(selected(), QStringList{u"Химии"_s});
    inDialog([](QDialog& dialog) { dialog.reject(); });
    press(Qt::Key_D, Qt::ControlModifier);
    press(Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(count(), u"Строк: 2    Выделено: 2"_s);
    expectQuestion(u"Удалить выделенные строки?"_s, Answer::No);
    press(Qt::Key_Delete);
    EXPECT_EQ(shown().size(), 2);
    press(Qt::Key_Home);
    expectQuestion(u"Удалить выделенную строку?"_s);
    press(Qt::Key_Delete);
    EXPECT_EQ(status.last(), u"Удалено строк: 1"_s);
    EXPECT_EQ(selected(), QStringList{u"Химии"_s}) << "the next row";
    reopen();
    EXPECT_EQ(rows("SELECT NAIM FROM SPKAF;"), QStringList{u"Химии"_s});
}

TEST_F(ListWindow, DeletesTheRowsThatMayGoOfAClickedSelection)
{
    const auto used = add("SPOTD", {{"NAIM", "Занятая"}, {"SOKR", "А"}});
    add("SPOTD", {{"NAIM", "Б"}, {"SOKR", "Б"}});
    add("SPOTD", {{"NAIM", "В"}, {"SOKR", "В"}});
    add("SPGRUP", {{"NAIM", "А-1"}, {"IDO", used}});
    open(Book::Specialities);
    const auto at = [this](int row) {
        return list->visualRect(list->model()->index(row, 1)).center();
    };
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier, at(2));
    EXPECT_EQ(selected(1).size(), 2);
    expectQuestion(u"Удалить выделенные строки?"_s);
    expectQuestion(u"Невозможно удалить специальность \"Занятая\", так как она используется в "
                   "справочнике групп.\n\nУдалить остальные выделенные строки?"_s);
    click(u"keyDel"_s);
    EXPECT_EQ(rows("SELECT SOKR FROM SPOTD;"), (QStringList{u"А"_s, u"Б"_s}));
    inDialog([](QDialog& dialog) {
        EXPECT_TRUE(dialog.windowTitle().contains(u"Б"_s)) << dialog.windowTitle().toStdString();
        dialog.reject();
    });
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at(1));
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at(1));
}

TEST_F(ListWindow, FindsSortsAndNarrows)
{
    for (const auto& [name, note] : {std::pair("Волков А.А.", "физика"),
                                     {"Белов Б.Б.", "химия"},
                                     {"Вол Ю.Ю.", "химия"},
                                     {"Абрамов В.В.", ""}})
        add("SPPREP", {{"FAMIO", name}, {"MEMO", note}});
    open(Book::Teachers);
    const auto names = [this] {
        QStringList found;
        for (const QString& line : shown())
            found << line.section(u'|', 1, 1).section(u' ', 0, 0);
        return found.join(u' ');
    };
    EXPECT_EQ(names(), u"Абрамов Белов Вол Волков"_s);
    type(u"вол"_s);
    EXPECT_EQ(selected(1), QStringList{u"Вол Ю.Ю."_s});
    type(u"к"_s);
    EXPECT_EQ(selected(1), QStringList{u"Волков А.А."_s});
    EXPECT_EQ(status.last(), u"Поиск: волк"_s);
    type(u"х"_s);
    EXPECT_EQ(status.last(), u"Поиск: волкх - не найдено"_s);
    for (const QString& order : {u"Абрамов Белов Вол Волков"_s, u"Волков Вол Белов Абрамов"_s,
                                 u"Абрамов Белов Вол Волков"_s}) {
        clickHeader(1);
        EXPECT_EQ(names(), order);
        EXPECT_EQ(selected(1), QStringList{u"Волков А.А."_s}) << "the selection moves along";
    }
    press(Qt::Key_F, Qt::ControlModifier);
    type(u"хим бел"_s);
    EXPECT_EQ(names(), u"Белов"_s);
    EXPECT_EQ(count(), u"Строк: 1 из 4"_s);
    press(Qt::Key_Delete); // a letter's key, not the command
    press(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), list);
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_EQ(names(), u"Абрамов Белов Вол Волков"_s);
    EXPECT_EQ(selected(1), QStringList{u"Белов Б.Б."_s});
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"\tБелов Б.Б.\tхимия\n\tВол Ю.Ю.\tхимия\n"_s);
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(
        u"Таб. №\tФамилия И.О.\tПримечание\n\tБелов"_s));
}

TEST_F(ListWindow, RefreshesOnF3AndWhenTheOptionsChange)
{
    open(Book::Teachers);
    add("SPPREP", {{"FAMIO", "Белов Б.Б."}});
    EXPECT_EQ(shown().size(), 0);
    press(Qt::Key_F3);
    EXPECT_EQ(shown().size(), 1);
    add("SPPREP", {{"FAMIO", "Волков А.А."}});
    window->run(shell::JournalAction::Refresh); // F5
    EXPECT_EQ(shown().size(), 2);
    add("SPPREP", {{"FAMIO", "Гусев А.А."}});
    session.saveSettings(session.settings());
    EXPECT_EQ(shown().size(), 3);
    session.closeJournal();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ListWindow, KeepsWidthsAndFilterPositions)
{
    const auto group = add("SPGRUP", {{"NAIM", "А-1"}});
    add("SPGRUP", {{"NAIM", "Б-1"}});
    add("SPSTUD", {{"FAM", "Белов"}, {"IDG", group}});
    add("SPSTUD", {{"FAM", "Волков"}, {"IDG", group}, {"IDGG", 1}});
    open(Book::Students);
    EXPECT_EQ(shown(), QStringList()) << "until a group is chosen";
    auto* box = named<QComboBox>(u"cboFirst"_s);
    box->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(box->currentText(), u"А-1"_s);
    EXPECT_EQ(selected(), QStringList{u"Белов"_s});
    named<QComboBox>(u"cboSecond"_s)->setFocus();
    press(Qt::Key_Down); // no subgroup counts as 0
    EXPECT_EQ(selected(3), QStringList{u"0"_s});
    EXPECT_EQ(shown().size(), 1);
    list->setColumnWidth(1, 321);
    open(Book::Students);
    EXPECT_EQ(named<QComboBox>(u"cboFirst"_s)->currentText(), u"А-1"_s);
    EXPECT_EQ(named<QComboBox>(u"cboSecond"_s)->currentText(), u"Все подгруппы"_s);
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(list->columnWidth(1), 321);
    open(Book::Teachers);
    EXPECT_NE(list->columnWidth(1), 321);
}

TEST_F(ListWindow, LetsARoleDoWhatItMay)
{
    add("SPGRUP", {{"NAIM", "А-1"}});
    open(Book::Groups);
    EXPECT_FALSE(enabled(u"keyImp"_s)) << "nobody imports";
    signIn(shell::Role::User);
    EXPECT_EQ(
        (std::vector{enabled(u"keyAdd"_s), enabled(u"keyEdit"_s), enabled(u"keyCopy"_s),
                     enabled(u"keyDel"_s), enabled(u"keyRefresh"_s), enabled(u"keyExport"_s)}),
        (std::vector{false, true, false, false, true, true}));
    press(Qt::Key_Delete);
    press(Qt::Key_Insert); // a box or dialog would fail the test
    inDialog([](QDialog&) { press(Qt::Key_Escape); });
    press(Qt::Key_Return);
    imports = true;
    signIn(shell::Role::Operator);
    open(Book::Groups);
    click(u"keyImp"_s);
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(rows("SELECT NAIM FROM SPGRUP;").size(), 2);
}

TEST_F(ListWindow, WritesWhatIsShownToAFile)
{
    add("SPPRED", {{"KOD", "0042"}, {"NAIM", "Физика"}, {"MEMO", "Общая\r\nфизика"}});
    add("SPPRED", {{"KOD", "7"}, {"NAIM", "Алгебра"}});
    add("SPPRED", {{"KOD", "8"}, {"NAIM", "Химия"}});
    open(Book::Disciplines);
    clickHeader(1);
    clickHeader(1);
    press(Qt::Key_F, Qt::ControlModifier);
    type(u"и"_s);
    press(Qt::Key_Down);
    chooser.answer = folder.filePath(u"список.xlsx"_s);
    press(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(chooser.suggested, folder.path() + u"/Дисциплины.xlsx"_s);
    const Workbook book = Workbook::read(chooser.answer);
    EXPECT_EQ(book.rows,
              (QList<QStringList>{{u"Код"_s, u"Наименование"_s, u"Полное наименование"_s},
                                  {u"8"_s, u"Химия"_s},
                                  {u"0042"_s, u"Физика"_s, u"Общая физика"_s}}));
    chooser.answer = folder.filePath(u"список.csv"_s);
    click(u"keyExport"_s);
    QFile csv(chooser.answer);
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_TRUE(csv.readAll().endsWith(u"0042;Физика;Общая физика\r\n"_s.toUtf8()));
    chooser.answer = folder.filePath(u"нет/список.csv"_s);
    prompt.expectMatching(Box::Critical, u"^Список не записан\\. Ошибка: нет папки "_s);
    click(u"keyExport"_s);
}

} // namespace
