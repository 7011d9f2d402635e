#include "tests/shell_forms/mainwindow.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

struct Key
{
    QString name;
    QString command; // menu item of the same meaning
    QString tip;
};

const Key kKeys[] = {
    {u"Pos"_s, u"mnuposechaemost"_s, u"Посещаемость"_s},
    {u"Usp"_s, u"mnuuspevaemost"_s, u"Успеваемость"_s},
    {u"Print"_s, u"mnuprint"_s, u"Печать"_s},
    {u"Stud"_s, u"mnustud"_s, u"Студенты"_s},
    {u"Spezial"_s, u"mnuspez"_s, u"Специальности"_s},
    {u"Predmet"_s, u"mnuPred"_s, u"Дисциплины"_s},
    {u"Nagr"_s, u"mnunagr"_s, u"Нагрузка"_s},
    {u"Prep"_s, u"mnuprepod"_s, u"Преподаватели"_s},
    {u"Grup"_s, u"mnugrup"_s, u"Учебные группы"_s},
    {u"keyNew"_s, u"mnuFileCr"_s, u"Создать"_s},
    {u"Open"_s, u"mnuFileOpen"_s, u"Открыть"_s},
    {u"Save"_s, u"mnuFileSaveAs"_s, u"Сохранить как"_s},
    {u"keyRep"_s, u"mnuotpos"_s, u"Отчеты"_s},
    {u"keyOpt"_s, u"mnuNastroiki"_s, u"Параметры"_s},
    {u"keyObn"_s, u"mnuObnovlenie"_s, u"Обновить программу"_s},
    {u"keyHelp"_s, u"mnuHelpManual"_s, u"Руководство пользователя"_s},
};

} // namespace

TEST_F(MainWindow, ToolbarKeysFollowTheirMenuCommands)
{
    start();
    const auto* bar = named<QToolBar>(u"Toolbar1"_s);
    QStringList names;
    for (const QAction* key : bar->actions()) {
        if (!key->isSeparator()) {
            names << key->objectName();
        }
    }
    EXPECT_EQ(names.value(0), u"keyStart"_s);
    ASSERT_EQ(names.size(), std::ssize(kKeys) + 1);
    for (const Key& row : kKeys) {
        ASSERT_TRUE(names.contains(row.name)) << row.name.toStdString();
        const QAction* key = action(row.name);
        EXPECT_EQ(key->toolTip().toStdString(), row.tip.toStdString());
        EXPECT_FALSE(key->icon().isNull()) << row.name.toStdString();
        EXPECT_EQ(key->isEnabled(), action(row.command)->isEnabled());
        action(row.command)->setEnabled(true);
        EXPECT_TRUE(key->isEnabled()) << row.name.toStdString();
        action(row.command)->disconnect(); // the command itself is not to run
        const QSignalSpy triggered(action(row.command), &QAction::triggered);
        QTest::mouseClick(bar->widgetForAction(action(row.name)), Qt::LeftButton);
        EXPECT_EQ(triggered.count(), 1) << row.name.toStdString();
    }
}

TEST_F(MainWindow, FirstToolbarKeyNamesTheFileAndDoesNothing)
{
    start();
    EXPECT_FALSE(action(u"keyStart"_s)->isEnabled());
    const QString path = newJournal(u"a.mdb"_s);
    ASSERT_TRUE(window->files().open(path));
    EXPECT_TRUE(action(u"keyStart"_s)->isEnabled());
    EXPECT_TRUE(action(u"keyStart"_s)->toolTip().contains(path));
    action(u"keyStart"_s)->trigger();
    EXPECT_TRUE(session.isOpen());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MainWindow, ToolbarCommandsAndMenuCommandsAreTheSame)
{
    start();
    chooser.answer = pathOf(u"новый.mdb"_s);
    const auto* bar = named<QToolBar>(u"Toolbar1"_s);
    QTest::mouseClick(bar->widgetForAction(action(u"keyNew"_s)), Qt::LeftButton);
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), chooser.answer);
    QTest::mouseClick(bar->widgetForAction(action(u"Pos"_s)), Qt::LeftButton);
    EXPECT_NE(window->findChild<FakeJournal*>(), nullptr);
}
