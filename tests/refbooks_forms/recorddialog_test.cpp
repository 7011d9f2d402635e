#include "tests/refbooks_forms/recorddialog.h"

#include "tests/shell_forms/accessible.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

const QString kAsk = u"Сохранить изменения?"_s;

TEST_F(RecordDialog, TypeAStudentFindingTheGroupByAPartOfItsName)
{
    add("SPGRUP", {{"NAIM", "ИС-11"}});
    const auto group = add("SPGRUP", {{"NAIM", "Механики-21"}});
    open(Book::Students);
    EXPECT_EQ(dialog->windowTitle(), u"Студент: Новая"_s);
    type(u"Ёлкина\tАнна\t\tНИК\t1\t\t5.3.08\t"_s);
    EXPECT_EQ(named<QComboBox>("IDG")->currentText(), u"Механики-21"_s);
    EXPECT_EQ(named<QLineEdit>("D_R")->text(), u"05.03.2008"_s);
    type(u"ул. Мира\tтел.\t\tстароста\n"_s);
    ASSERT_TRUE(accepted());
    EXPECT_EQ(rows("SELECT ID FROM SPSTUD;"), QStringList{QString::number(dialog->key())});
    reopen();
    EXPECT_EQ(
        rows("SELECT FAM, IM, OTCH, IDG, IDGG, POL, D_R, ADR, TEL, DOC, MEMO FROM SPSTUD;"),
        QStringList{u"Ёлкина Анна - %1 1 0 05.03.2008 ул. Мира тел. - староста"_s.arg(group)});
}

TEST_F(RecordDialog, LeadBackToTheFieldThatFailedWithItsTextSelected)
{
    add("SPOTD", {{"KOD", "09"}, {"NAIM", "Системы"}, {"SOKR", "ИС"}});
    open(Book::Specialities);
    prompt.expect(Box::Exclamation, u"Необходимо обязательно заполнить поле \"Сокращение\"."_s);
    type(u"10\tСистемы\n"_s);
    EXPECT_EQ(focused(), "Sokr");
    prompt.expect(Box::Exclamation,
                  u"Значение \"Системы\" поля \"Наименование\" уже имеется в другой строке "
                  "справочника. Измените введенное значение."_s);
    type(u"СС\n"_s);
    EXPECT_EQ(focused(), "Naim");
    EXPECT_EQ(selected(), u"Системы"_s);
    type(u"Сети\n"_s); // over the selection
    EXPECT_TRUE(accepted());
    reopen();
    EXPECT_EQ(rows("SELECT KOD, NAIM, SOKR FROM SPOTD;"),
              (QStringList{u"09 Системы ИС"_s, u"10 Сети СС"_s}));
}

TEST_F(RecordDialog, HoldATextThatNamesNoRowOrNoDate)
{
    add("SPPREP", {{"FAMIO", "Иванова И.И."}});
    add("SPPREP", {{"FAMIO", "Иванов И.И."}});
    const QString noTeacher =
        u"В списке \"Преподаватель\" нет строки \"Ивано\". Выберите строку из списка."_s;
    const QString noDate =
        u"В поле \"Дата начала\" нужна дата вида 31.12.2026, а введено \"31.02.2026\"."_s;
    open(Book::Workload);
    auto* problem = named<QLabel>("lblProblem");
    type(u"Ивано"_s);
    EXPECT_FALSE(problem->isVisible()) << "while it is being typed";
    type(u"\t"_s);
    EXPECT_EQ(problem->text(), noTeacher);
    EXPECT_TRUE(problem->isVisible());
    prompt.expect(Box::Exclamation, noTeacher);
    type(u"\n"_s);
    EXPECT_EQ(focused(), "IDP");
    EXPECT_EQ(selected(), u"Ивано"_s);
    type(u"иванов и.и."_s);
    alt(u'н');
    EXPECT_EQ(focused(), "DATNN");
    EXPECT_FALSE(problem->isVisible());
    EXPECT_EQ(named<QComboBox>("IDP")->currentText(), u"Иванов И.И."_s);
    press(Qt::Key_A, {}, Qt::ControlModifier);
    prompt.expect(Box::Exclamation, noDate);
    type(u"31.02.2026\n"_s);
    EXPECT_EQ(selected(), u"31.02.2026"_s);
    prompt.expect(Box::SaveQuestion, kAsk, shell::Answer::Cancel);
    press(Qt::Key_Escape);
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(RecordDialog, PickARowOfTheListWithTheArrowKeys)
{
    add("SPPREP", {{"FAMIO", "Дубов А.А."}});
    const auto speciality = add("SPOTD", {{"KOD", "1"}, {"NAIM", "А"}, {"SOKR", "ИС"}});
    add("SPOTD", {{"KOD", "2"}, {"NAIM", "Б"}, {"SOKR", "ЭК"}});
    open(Book::Groups);
    press(Qt::Key_Down);
    type(u"\t2\tИС-21\tдуб"_s);
    press(Qt::Key_Down); // in the list of what matches
    press(Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    type(u"\n"_s);
    EXPECT_TRUE(accepted());
    reopen();
    EXPECT_EQ(rows("SELECT IDO, KURS, NAIM, IDP FROM SPGRUP;"),
              QStringList{u"%1 2 ИС-21 1"_s.arg(speciality)});
}

TEST_F(RecordDialog, StoreAUserWhosePasswordsAgree)
{
    open(Book::Users);
    prompt.expect(Box::Exclamation,
                  u"Пароль и подтверждение пароля не совпадают. Введите пароль заново."_s);
    type(u"Петрова\t\tтайна\tтайны\n"_s);
    EXPECT_EQ(focused(), "PSSW");
    EXPECT_EQ(named<QLineEdit>("PSSW")->echoMode(), QLineEdit::Password);
    type(u"секрет\tсекрет"_s);
    alt(u'р');
    press(Qt::Key_Up); // one role up, to the dispatcher
    press(Qt::Key_Return);
    EXPECT_TRUE(accepted());
    reopen();
    EXPECT_EQ(rows("SELECT NAIM, ROLE, PSSW FROM USERS WHERE NAIM='Петрова';"),
              QStringList{u"Петрова 1 секрет"_s});
}

TEST_F(RecordDialog, CopyAndEditARowAndTellWhatWasStored)
{
    add("SPAUD", {{"NAIM", "Зал"}, {"SOKR", "З"}});
    const auto room = add("SPKAUD", {{"KAUDI", "101"}, {"IDT", 1}, {"KOL", 30}});
    open(Book::Rooms, RecordMode::Copy, room);
    EXPECT_EQ(named("cmdMore"), nullptr);
    type(u"102\t\t\t830\t17.30\n"_s);
    ASSERT_TRUE(accepted());
    EXPECT_NE(dialog->key(), room);
    open(Book::Rooms, RecordMode::Edit, room);
    alt(u'в');
    type(u"25\n"_s);
    ASSERT_TRUE(accepted());
    EXPECT_EQ(dialog->key(), room);
    reopen();
    EXPECT_EQ(
        rows("SELECT KAUDI, IDT, KOL, Hour(TIM1) * 60 + Minute(TIM1), Hour(TIM2) FROM SPKAUD;")
            .join(u'/')
            .toStdString(),
        "101 1 25 - -/102 1 30 510 17");
}

TEST_F(RecordDialog, AskBeforeChangesAreLost)
{
    struct Case
    {
        QString typed;
        bool cancelButton;
        std::optional<shell::Answer> asked;
        bool open;
        int stored;
    };
    const Case cases[] = {
        {{}, false, {}, false, 0},
        {u"Сети"_s, false, shell::Answer::Cancel, true, 0},
        {u"Сети"_s, false, shell::Answer::No, false, 0},
        {u"Сети"_s, true, {}, false, 0},
        {u"Сети"_s, false, shell::Answer::Yes, false, 1},
    };
    for (const Case& sample : cases) {
        open(Book::Departments);
        type(sample.typed);
        if (sample.asked)
            prompt.expect(Box::SaveQuestion, kAsk, *sample.asked);
        if (sample.cancelButton)
            QTest::mouseClick(named<QPushButton>("cmdCancel"), Qt::LeftButton);
        else
            press(Qt::Key_Escape);
        EXPECT_TRUE(prompt.done());
        EXPECT_EQ(dialog->isVisible(), sample.open);
        EXPECT_EQ(session.database().rowCount("SPKAF"), sample.stored);
        EXPECT_EQ(accepted(), sample.stored == 1);
    }
}

TEST_F(RecordDialog, GoOnWithAnotherRowOfTheSameGroup)
{
    const auto group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    open(Book::Students, RecordMode::New, 0,
         {.kind = {}, .key = static_cast<int>(group), .subgroup = 2});
    type(u"Аист\tАнна"_s);
    alt(u'д');
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(focused(), "FAM");
    EXPECT_EQ(named<QLineEdit>("FAM")->text(), u""_s);
    EXPECT_EQ(dialog->findChildren<QLineEdit*>(u"FAM"_s).size(), 1);
    type(u"Бук\tБорис"_s);
    alt(u'д');
    const std::int64_t last = dialog->key();
    press(Qt::Key_Escape); // nothing is typed: no question
    EXPECT_TRUE(accepted()) << "the list must be read anew";
    reopen();
    EXPECT_EQ(rows("SELECT FAM, IDG, IDGG FROM SPSTUD ORDER BY FAM;"),
              (QStringList{u"Аист %1 2"_s.arg(group), u"Бук %1 2"_s.arg(group)}));
    EXPECT_EQ(rows("SELECT ID FROM SPSTUD WHERE FAM='Бук';"), QStringList{QString::number(last)});
}

TEST_F(RecordDialog, StayWithWhatIsTypedWhenTheDiskIsFull)
{
    if (!FailingWrites::possible())
        GTEST_SKIP() << "writes cannot be made to fail here";
    open(Book::LessonTypes);
    type(u"Лекция\tв зале"_s);
    {
        const FailingWrites full;
        prompt.expectMatching(Box::Critical, u"^Запись не сохранена\\. Ошибка: "_s);
        type(u"\n"_s);
    }
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(named<QPlainTextEdit>("MEMO")->toPlainText(), u"в зале"_s);
    type(u"\n"_s);
    EXPECT_TRUE(accepted());
    reopen();
    EXPECT_EQ(rows("SELECT NAIM, MEMO FROM SPTIPZ WHERE NAIM='Лекция';"),
              QStringList{u"Лекция в зале"_s});
}

TEST_F(RecordDialog, CutANoteAtItsLengthAndKeepLinesOut)
{
    open(Book::LessonTypes);
    type(u"\t"_s);
    auto* note = named<QPlainTextEdit>("MEMO");
    QTest::keyClicks(note, QString(149, u'a'));
    press(Qt::Key_Home, {}, Qt::ControlModifier);
    type(u"БВ"_s);
    EXPECT_EQ(note->toPlainText(), u"Б"_s + QString(149, u'a'));
}

TEST_F(RecordDialog, ShowARowThatMayNotBeChanged)
{
    const auto group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const auto student =
        add("SPSTUD", {{"FAM", "Дуб"}, {"IM", "Ян"}, {"IDG", group}, {"POL", true}});
    signIn(shell::Role::User);
    open(Book::Students, RecordMode::Edit, student);
    EXPECT_EQ(named<QLineEdit>("IDG")->text(), u"ИС-21"_s);
    EXPECT_EQ(named<QLineEdit>("POL")->text(), u"М"_s);
    const auto buttons = dialog->findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 1);
    EXPECT_EQ(buttons.front()->text(), u"Закрыть"_s);
    for (int tab = 0; tab < 14; ++tab)
        type(u"щ\t"_s);
    press(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(rows("SELECT FAM, IM FROM SPSTUD;"), QStringList{u"Дуб Ян"_s});
}

// The access key of a label or a button.
QChar accessKey(const QString& text)
{
    const auto at = text.indexOf(u'&');
    return at < 0 ? QChar() : text[at + 1].toLower();
}

class EveryDialog : public RecordDialog, public testing::WithParamInterface<shell::Institution>
{
protected:
    EveryDialog()
        : RecordDialog(GetParam())
    {}
};

// Names for screen readers, access keys of their own, the order of Tab.
TEST_P(EveryDialog, CanBeUsedByKeysAndByEar)
{
    for (const BookInfo& info : catalogue()) {
        const auto book = static_cast<Book>(&info - catalogue().data());
        if (info.table.empty() || book == Book::Lessons)
            continue;
        SCOPED_TRACE(std::string(info.table));
        open(book);
        EXPECT_EQ(withoutAccessibleName(*dialog), "");
        QString keys;
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            if (label->buddy())
                keys += accessKey(label->text());
        for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>())
            if (!accessKey(button->text()).isNull())
                keys += accessKey(button->text());
        EXPECT_EQ(QSet<QChar>(keys.begin(), keys.end()).size(), keys.size()) << keys.toStdString();

        const auto fields = recordFields(book, session.wording());
        EXPECT_EQ(keys.size(), static_cast<qsizetype>(fields.size()) + 1) << keys.toStdString();
        for (const RecordField& field : fields) {
            EXPECT_EQ(QString::fromStdString(focused()).remove(u"Again"_s).toStdString(),
                      field.field);
            type(u"\t"_s);
        }
        EXPECT_EQ(focused(), "cmdMore");
    }
}

INSTANTIATE_TEST_SUITE_P(Both, EveryDialog,
                         testing::Values(shell::Institution::College, shell::Institution::School));

} // namespace
