#include "reports/forms/lview.h"
#include "tests/reports_forms/documentfixture.h"
#include "tests/shell_forms/accessible.h"
#include "tests/shell_forms/modal.h"
#include "tests/support/workbook.h"

#include "data/convert.h"

#include <QAbstractBarSeries>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QDateEdit>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using shell::Setting;

namespace {

// Speciality Право with the groups П-1 (grades 5 and 3) and П-2 (grade 4), and Физика without
// groups; one absence, two lessons.
class RankingWindow : public DocumentFixture
{
protected:
    using DocumentFixture::DocumentFixture;

    void SetUp() override
    {
        const int law = speciality(u"Право"_s);
        speciality(u"Физика"_s);
        const int law1 = group(law, "П-1"), law2 = group(law, "П-2");
        const int five = file.student(law1, "Абаев", "А", "А");
        const int three = file.student(law1, "Борин", "Б", "Б");
        const int four = file.student(law2, "Вилков", "В", "В");
        const int subject = file.discipline("История");
        file.grade(five, subject, {2025, 10, 1}, 5, SmallJournal::Grade::Final);
        file.grade(three, subject, {2025, 10, 1}, 3, SmallJournal::Grade::Final);
        file.grade(four, subject, {2025, 10, 1}, 4, SmallJournal::Grade::Final);
        file.grade(four, subject, {2025, 10, 2}, 2, SmallJournal::Grade::Monthly);
        file.lesson(law1, subject, {2025, 10, 1}, 1);
        file.lesson(law2, subject, {2025, 10, 1}, 1);
        file.absence(three, subject, {2025, 10, 1}, 1, 0, 2);
        file.options(true, 2);
        settings.setText(Setting::RankingBegin, u"2025-09-01"_s);
        settings.setText(Setting::RankingEnd, u"2025-12-31"_s);
    }
    int speciality(const QString& name)
    {
        const std::string text = data::toUtf8(name);
        const std::vector<std::pair<std::string, jet::Value>> values{
            {"KOD", std::string("01")}, {"NAIM", text}, {"SOKR", std::string("С")}};
        return static_cast<int>(file.database().insert("SPOTD", values));
    }
    int group(int speciality, const std::string& name)
    {
        const int key = file.group(name);
        file.database().execute("UPDATE SPGRUP SET IDO=" + std::to_string(speciality)
                                + " WHERE IDG=" + std::to_string(key) + ";");
        return key;
    }
    void show()
    {
        open();
        window = std::make_unique<reports::LView>(parts());
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        window->setFocus(); // as the main window does
        first = named<QTableView>("Lv1");
        second = named<QTableView>("LV2");
    }
    template <class Widget>
    Widget* named(const char* name) const
    {
        return window->findChild<Widget*>(QString::fromLatin1(name));
    }
    static QStringList texts(const QTableView& list)
    {
        QStringList rows;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < list.model()->columnCount(); ++column)
                cells << list.model()->index(row, column).data().toString();
            rows << cells.join(u' ');
        }
        return rows;
    }
    // "title: name value, ...", from above.
    QString drawn(const char* view) const
    {
        const QChart* chart = named<QChartView>(view)->chart();
        if (chart->series().isEmpty())
            return {};
        const auto* set =
            qobject_cast<QAbstractBarSeries*>(chart->series().front())->barSets().front();
        const auto names =
            qobject_cast<QBarCategoryAxis*>(chart->axes(Qt::Vertical).front())->categories();
        QStringList bars;
        for (int i = set->count() - 1; i >= 0; --i)
            bars << names[i] + u' ' + QString::number(set->at(i));
        return chart->title() + u": "_s + bars.join(u", "_s);
    }
    static void clickHead(const QTableView& list, int column)
    {
        const QHeaderView* header =
            column == 0 ? list.findChild<QTableView*>(u"frozenColumns"_s)->horizontalHeader()
                        : list.horizontalHeader();
        constexpr int kInside = 20;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + kInside, kInside});
    }
    void choose(const char* button, int entry) const
    {
        named<QPushButton>(button)->menu()->actions()[entry]->trigger();
    }

    std::unique_ptr<reports::LView> window;
    QTableView* first = nullptr;
    QTableView* second = nullptr;
};

class SchoolRankingWindow : public RankingWindow
{
protected:
    SchoolRankingWindow()
        : RankingWindow(shell::Institution::School)
    {}
};

} // namespace

TEST_F(RankingWindow, ComparesSpecialitiesAndTheGroupsOfOne)
{
    show();
    EXPECT_EQ(withoutAccessibleName(*window), "");
    auto* begin = named<QDateEdit>("DTPicker1");
    EXPECT_EQ(begin->date(), QDate(2025, 9, 1));
    EXPECT_TRUE(begin->hasFocus());
    EXPECT_TRUE(texts(*first).isEmpty());
    EXPECT_EQ(drawn("MSChart2"), QString());
    EXPECT_TRUE(named<QLabel>("lblShown")->text().contains(u"нажмите \"Рассчитать\""_s));
    EXPECT_FALSE(named<QPushButton>("cmdExport")->isEnabled());

    QTest::keyClick(begin, Qt::Key_Return);
    // 3 grades, 2 of them high; 2 of 3 students without a 3; 2 lessons of 2 hours for 3 students.
    EXPECT_EQ(
        texts(*first),
        (QStringList{u"Право 2 3 1 1 1 0 66,7 1 2 66,7 1 66,7 1 1 4 12 2 0 2 83,3 83,3 1 4 1"_s,
                     u"Физика 0 0 0 0 0 0  2 0 0 2 0 2 0 0 0 0 0 0   2 8 2"_s}));
    EXPECT_EQ(texts(*second),
              (QStringList{u"П-1 2 2 1 0 1 0 50 2 1 50 2 50 2 1 2 4 2 0 2 50 50 2 8 2"_s,
                           u"П-2 1 1 0 1 0 0 100 1 1 100 1 100 1 0 2 2 0 0 0 100 100 1 4 1"_s}));
    EXPECT_EQ(drawn("MSChart2"), u"Место по уч. заведению: Право 1, Физика 2"_s);
    EXPECT_EQ(drawn("MSChart1"), u"Место по уч. заведению: П-1 2, П-2 1"_s);

    QTest::keyClick(first, Qt::Key_Down);
    EXPECT_TRUE(texts(*second).isEmpty());
    EXPECT_EQ(drawn("MSChart1"), QString());
    QTest::keyClick(first, Qt::Key_Up);
    EXPECT_EQ(second->model()->rowCount(), 2);

    named<QRadioButton>("optr_1")->click();
    EXPECT_TRUE(named<QLabel>("lblShown")->text().contains(u"итоговые оценки"_s));
    EXPECT_TRUE(named<QLabel>("lblShown")->text().endsWith(u"нажмите \"Рассчитать\"."_s));
    QTest::mouseClick(named<QPushButton>("cmdCount"), Qt::LeftButton);
    EXPECT_TRUE(texts(*second)[1].startsWith(u"П-2 1 1 0 0 0 1 0 "_s));
    EXPECT_EQ(settings.number(Setting::RankingOption), 1);

    begin->setDate({2026, 1, 1});
    prompt.expect(Box::Exclamation, u"Начало периода не должно быть позже его конца."_s);
    window->run(shell::JournalAction::Refresh);
    EXPECT_EQ(settings.text(Setting::RankingBegin), u"2025-09-01"_s) << "nothing was computed";
    EXPECT_EQ(second->model()->rowCount(), 2);
}

TEST_F(RankingWindow, AClickOnAHeadDrawsItsColumn)
{
    show();
    clickHead(*first, 2);
    EXPECT_EQ(drawn("MSChart2"), QString()) << "nothing to draw yet";
    window->run(shell::JournalAction::Refresh);
    EXPECT_EQ(drawn("MSChart2"), u"Количество оценок: Право 3, Физика 0"_s);
    clickHead(*second, 4);
    EXPECT_EQ(drawn("MSChart1"), u"4: П-1 0, П-2 1"_s);
    EXPECT_EQ(status.last(), u"На диаграмме: 4"_s);
    EXPECT_EQ(drawn("MSChart2"), u"Количество оценок: Право 3, Физика 0"_s);
    clickHead(*first, 0);
    EXPECT_EQ(drawn("MSChart2"), u"Место по уч. заведению: Право 1, Физика 2"_s);
    first->setCurrentIndex(first->model()->index(0, 7));
    QTest::keyClick(first, Qt::Key_Space);
    EXPECT_EQ(drawn("MSChart2"), u"% повышенных оценок: Право 66.7, Физика (нет данных) 0"_s);
    EXPECT_TRUE(first->model()
                    ->headerData(10, Qt::Horizontal, Qt::ToolTipRole)
                    .toString()
                    .contains(u"Тройка считается так же, как двойка"_s));

    second->setCurrentIndex(second->model()->index(0, 24));
    second->actions()[1]->trigger(); // upwards
    EXPECT_EQ(second->model()->index(0, 0).data(), u"П-2"_s);
    EXPECT_EQ(second->currentIndex().row(), 1) << "the cursor goes with its row";
    EXPECT_EQ(drawn("MSChart1"), u"4: П-2 1, П-1 0"_s);
    second->actions()[3]->trigger(); // as at first
    EXPECT_EQ(second->model()->index(0, 0).data(), u"П-1"_s);
}

TEST_F(RankingWindow, WritesListsAndCharts)
{
    show();
    window->run(shell::JournalAction::Refresh);
    QTest::mouseClick(named<QPushButton>("cmdExport"), Qt::LeftButton);
    const QString path = folder.filePath(u"Отчет по специальностям 2025-09-01_2025-12-31.xlsx"_s);
    ASSERT_EQ(starter.opened, QList<QUrl>{QUrl::fromLocalFile(path)});
    const auto specialities = Workbook::read(path), groups = Workbook::read(path, 2);
    EXPECT_EQ(specialities.sheets, (QStringList{u"Специальности"_s, u"Группы"_s}));
    ASSERT_GT(groups.rows.size(), 8);
    EXPECT_EQ(groups.rows[6][12], u"Успеваемост общая"_s);
    EXPECT_EQ(groups.rows[7].first(9), (QStringList{u"П-1"_s, u"=2"_s, u"=2"_s, u"=1"_s, u"=0"_s,
                                                    u"=1"_s, u"=0"_s, u"=50"_s, u"=2"_s}));

    chooser.answer = folder.filePath(u"a.png"_s);
    choose("cmdPicture", 0);
    EXPECT_TRUE(
        chooser.suggested.endsWith(u"/Диаграмма специальностей, Место по уч. заведению.png"_s));
    const QImage picture(chooser.answer);
    ASSERT_FALSE(picture.isNull());
    const auto isBar = [&](int x, int y) {
        return QColor::fromRgb(picture.pixel(x, y)).hsvSaturation() > 50;
    };
    int bar = 0;
    for (int y = 0; y < picture.height(); y += 10)
        bar += isBar(picture.width() / 2, y) ? 1 : 0;
    EXPECT_GT(bar, 10) << "bars are painted";
    chooser.answer = folder.filePath(u"b.svg"_s);
    choose("cmdPicture", 3);
    QFile svg(chooser.answer);
    ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
    EXPECT_TRUE(svg.readAll().contains("<svg"));
    prompt.expectMatching(Box::Critical, u"^Рисунок не сохранен\\. Ошибка: .*"_s);
    chooser.answer = folder.filePath(u"missing/c.png"_s);
    choose("cmdPicture", 0);

    for (const int entry : {0, 1}) {
        bool shown = false;
        inNextDialog<QPrintPreviewDialog>([&](QPrintPreviewDialog& preview) {
            shown = true;
            QTest::keyClick(&preview, Qt::Key_Escape);
        });
        choose("cmdPrint", entry);
        EXPECT_TRUE(shown) << entry;
    }
}

TEST_F(RankingWindow, SaysThatThereAreTooManySpecialities)
{
    for (int i = 0; i < 49; ++i)
        speciality(u"Еще %1"_s.arg(i));
    show();
    prompt.expectMatching(Box::Critical, u"^Анализ не выполнен\\. Ошибка: специальностей больше "
                                         "50.*"_s);
    QTest::mouseClick(named<QPushButton>("cmdCount"), Qt::LeftButton);
    EXPECT_TRUE(texts(*first).isEmpty());
    EXPECT_FALSE(window->available(shell::JournalAction::Print));
}

TEST_F(SchoolRankingWindow, SpeaksOfClasses)
{
    show();
    const auto head = [](const QTableView& list, int column) {
        return list.model()->headerData(column, Qt::Horizontal).toString();
    };
    EXPECT_EQ(window->windowTitle(), u"Отчет по параллелям"_s);
    EXPECT_EQ(head(*first, 0), u"Параллель"_s);
    EXPECT_EQ(head(*first, 1), u"Количество классов"_s);
    EXPECT_EQ(head(*second, 0), u"Класс"_s);
    EXPECT_EQ(head(*second, 1), u"Человек в классе"_s);
    EXPECT_TRUE(named<QLabel>("lblShown")
                    ->text()
                    .contains(u"будут показаны параллели, а для выделенной - ее классы"_s));
}
