#pragma once

#include "journals/attendance.h"
#include "journals/forms/frmhpos.h"
#include "sheets/table.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>
#include <utility>
#include <vector>

inline constexpr int kFirstDay = journals::kLeadColumns;
inline constexpr int kTwelfth = kFirstDay + 11;

// Two students of one group; mathematics and physics are taught in November 2022, with
// mathematics on the 12th and the 14th; lessons of two hours, by the timetable.
class AttendanceWindow : public testing::Test
{
protected:
    AttendanceWindow()
        : settings(folder.filePath(QStringLiteral("settings.ini")))
    {
        groupKey = file.group("ИС-21");
        mathsKey = file.discipline("Математика");
        physicsKey = file.discipline("Физика");
        ivanov = file.student(groupKey, "Иванов", "Иван", "Иванович");
        petrov = file.student(groupKey, "Петров", "Пётр", "Петрович", 1);
        file.lesson(groupKey, mathsKey, day, 3);
        file.lesson(groupKey, mathsKey, day.addDays(2), 1);
        file.lesson(groupKey, physicsKey, day.addDays(2), 2);
        file.options(true, 2);
        settings.setNumber(shell::Setting::JournalMonth, 11);
        settings.setNumber(shell::Setting::JournalYear, 2022);
    }

    void open(shell::Wording wording = shell::Wording())
    {
        if (!session) {
            session = std::make_unique<shell::Session>(wording);
            session->openJournal(file.release());
        }
        window = std::make_unique<journals::frmHPos>(journals::JournalParts{
            *session, settings, prompt, status, [this](const sheets::Table& table) {
                for (int row = 0; row < table.rows; ++row) {
                    QStringList& cells = exported.emplace_back();
                    for (int column = 0; std::cmp_less(column, table.columns.size()); ++column)
                        cells << table.text(row, column);
                }
                exportedTitle = table.title;
            }});
        window->resize(1000, 600);
        window->show();
        grid = window->findChild<QTableView*>(QStringLiteral("HF1"));
    }
    // Opens the window on the group and the discipline, with the cell of the 12th current.
    void openOn(const QString& discipline = QStringLiteral("Математика"))
    {
        open();
        pick(QStringLiteral("cboGroup"), QStringLiteral("ИС-21"));
        pick(QStringLiteral("cboDiscipline"), discipline);
        select(0, kTwelfth);
    }
    template <class Widget>
    Widget* named(const QString& name) const
    {
        return window->findChild<Widget*>(name);
    }
    void pick(const QString& box, const QString& entry)
    {
        auto* combo = named<QComboBox>(box);
        const int index = combo->findText(entry);
        ASSERT_GE(index, 0) << entry.toStdString();
        combo->setCurrentIndex(index);
    }
    void select(int row, int column) { grid->setCurrentIndex(grid->model()->index(row, column)); }
    QString cell(int row, int column) const
    {
        return grid->model()->index(row, column).data().toString();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(grid, key, modifiers);
    }
    // A letter as the Russian or the Latin layout gives it.
    void typeLetter(QChar letter)
    {
        QKeyEvent event(QEvent::KeyPress, letter.toUpper().unicode(), Qt::NoModifier,
                        QString(letter));
        QCoreApplication::sendEvent(grid, &event);
    }
    void clickTool(const QString& key)
    {
        auto* action = named<QAction>(key);
        ASSERT_TRUE(action) << key.toStdString();
        QTest::mouseClick(named<QToolBar>(QStringLiteral("Toolbar1"))->widgetForAction(action),
                          Qt::LeftButton);
    }
    QStringList recorded() { return SmallJournal::absences(session->database()); }
    QString line(int student, int lesson, const QString& hours) const
    {
        return QStringLiteral("%1 %2 12.11.2022 %3 %4")
            .arg(student)
            .arg(mathsKey)
            .arg(lesson)
            .arg(hours);
    }

    const QDate day{2022, 11, 12};
    QTemporaryDir folder;
    SmallJournal file;
    shell::Settings settings;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    std::unique_ptr<shell::Session> session;
    std::unique_ptr<journals::frmHPos> window;
    QTableView* grid = nullptr;
    QString exportedTitle;
    std::vector<QStringList> exported; // rows of the table written last
    int groupKey = 0, mathsKey = 0, physicsKey = 0, ivanov = 0, petrov = 0;
};
