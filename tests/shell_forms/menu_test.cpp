#include "shell/forms/menuwording.h"
#include "tests/shell_forms/mainwindow.h"

#include <QMenu>
#include <QMenuBar>

#include <map>
#include <string>

using namespace Qt::StringLiterals;

namespace {

struct Caption
{
    QString name;
    QString caption;
};

// Every item of the menu with its caption, word for word.
const Caption kCaptions[] = {
    {u"mnuFile"_s, u"&Файл"_s},
    {u"mnuFileCr"_s, u"&Создать..."_s},
    {u"mnuFileOpen"_s, u"&Открыть..."_s},
    {u"mnuFileOpenR"_s, u"&Открыть расположение базы данных..."_s},
    {u"mnuFileClose"_s, u"&Закрыть"_s},
    {u"mnuFileSaveAs"_s, u"Сохранить &как..."_s},
    {u"mnuFileSaveTo"_s, u"С&копировать на съемный диск"_s},
    {u"mnuFileOpenFrom"_s, u"&Восстановить со съемного диска"_s},
    {u"mnuprint"_s, u"&Печать..."_s},
    {u"mnuUserChange"_s, u"Смени&ть пользователя..."_s},
    {u"mnuexit"_s, u"&Выход"_s},
    {u"mnuview"_s, u"&Вид"_s},
    {u"mnustatusbar"_s, u"&Статус строка"_s},
    {u"mnupanels"_s, u"&Панель инструментов"_s},
    {u"mnuFullScreen"_s, u"Во весь &экран"_s},
    {u"mnudeistvie"_s, u"&Действия"_s},
    {u"mnuins_oc"_s, u"Поставить &оценку"_s},
    {u"mnudel_oc"_s, u"У&далить оценку"_s},
    {u"mnuinsert"_s, u"Поставить &пропуск"_s},
    {u"mnuins_uv"_s, u"Сделать &уважительным"_s},
    {u"mnuins_nuv"_s, u"Сделать &неуважительным"_s},
    {u"mnudelet"_s, u"&Удалить пропуск"_s},
    {u"mnuoperzii"_s, u"Журналы"_s},
    {u"mnuuspevaemost"_s, u"&Успеваемость"_s},
    {u"mnuposechaemost"_s, u"&Посещаемость"_s},
    {u"mnuImpUr"_s, u"&Импорт сведений из Хронограф"_s},
    {u"mnusprav"_s, u"Спр&авочники"_s},
    {u"mnuprepod"_s, u"&Преподаватели"_s},
    {u"mnuPred"_s, u"&Дисциплины"_s},
    {u"mnuspez"_s, u"&Специальности"_s},
    {u"mnugrup"_s, u"Учебные &группы"_s},
    {u"mnustud"_s, u"С&туденты"_s},
    {u"mnunagr"_s, u"&Нагрузка"_s},
    {u"mnuSprUsers"_s, u"Пользовател&и"_s},
    {u"mnuotchet"_s, u"О&тчеты"_s},
    {u"mnuotpos"_s, u"Ведомость &посещаемости"_s},
    {u"mnuVedMess"_s, u"Ведомость &успеваемости за месяц"_s},
    {u"mnuotusp"_s, u"Ведомость &успеваемости по предметам"_s},
    {u"mnuotchProgul"_s, u"&Отчет по прогулам учащихся по преподавателям/группам"_s},
    {u"mnuTab"_s, u"&Табель студента"_s},
    {u"mnuotitog"_s, u"&Итоговый отчет"_s},
    {u"mnuotsvod"_s, u"&Сводный отчет"_s},
    {u"mnuototd"_s, u"&Отчет по специальностям"_s},
    {u"mnuservies"_s, u"С&ервис"_s},
    {u"mnuToolsLock"_s, u"Установить &пароль..."_s},
    {u"mnuToolsCacl"_s, u"&Калькулятор"_s},
    {u"mnuToolsDay"_s, u"К&алендарь"_s},
    {u"mnupassword"_s, u"Установить пароль"_s},
    {u"mnuToolsAcc"_s, u"&Сжать базу данных"_s},
    {u"mnuToolsArh"_s, u"&Архивировать базу данных"_s},
    {u"mnuToolsMail"_s, u"&Вложить в письмо базу данных"_s},
    {u"mnuNastroiki"_s, u"&Параметры..."_s},
    {u"mnuObnovlenie"_s, u"Обновить программу"_s},
    {u"mnuwindow"_s, u"&Окно"_s},
    {u"mnuKaskadom"_s, u"&Каскад"_s},
    {u"mnugorizont"_s, u"Расположить &горизонтально"_s},
    {u"mnuVertikal"_s, u"Расположить &вертикально"_s},
    {u"mnuhelp"_s, u"&Справка"_s},
    {u"mnuHelpManual"_s, u"&Руководство пользователя"_s},
    {u"mnuBrowser"_s, u"Ваш &Помощник"_s},
    {u"mnuTPemail"_s, u"Письмо в техническую поддержку"_s},
    {u"mnuErrorLog"_s, u"Открыть &журнал ошибок"_s},
    {u"mnuoproge"_s, u"&О программе..."_s},
    {u"mnuTeamViewer"_s, u"Удаленный доступ"_s},
    {u"mnuAnyDesk"_s, u"AnyDesk"_s},
    {u"mnuAA"_s, u"AmmyyAdmin"_s},
    {u"mnuSpravUD"_s, u"Открыть инструкцию"_s},
};

const QStringList kSeparators = {
    u"mnuFileBar0"_s, u"mnuFileBar7"_s, u"mnuFileBar1"_s, u"mnuFileBar3"_s, u"mnuFileBar5"_s,
    u"mnubar11"_s,    u"mnubar12"_s,    u"mnubar13"_s,    u"mnubar14"_s,    u"mnuSprBar7"_s,
    u"mnubar16"_s,    u"mnuSRzd0"_s,    u"mnuSRazd1"_s,   u"mnuSRazd2"_s,   u"mnuSRazd3"_s,
    u"mnuTools12"_s,  u"mnuTools15"_s,  u"mnuSRazd4"_s,
};

QAction* item(const QWidget& window, const QString& name)
{
    const auto* menu = window.findChild<QMenu*>(name);
    return menu ? menu->menuAction() : window.findChild<QAction*>(name);
}

// The access keys that a menu's visible items share, lower case, one entry a menu.
std::map<std::string, QString> sharedKeys(const QWidget& window)
{
    std::map<std::string, QString> shared;
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        QString seen;
        for (const QAction* entry : menu->actions()) {
            const auto sign = entry->text().indexOf(u'&');
            const QString key = sign < 0 ? QString() : entry->text().mid(sign + 1, 1).toLower();
            if (!key.isEmpty() && seen.contains(key)) {
                shared[menu->objectName().toStdString()] += key;
            }
            seen += key;
        }
    }
    return shared;
}

// What needs no file.
const QStringList kAlways = {
    u"mnuToolsCacl"_s, u"mnuToolsDay"_s, u"mnuObnovlenie"_s,   u"mnuAnyDesk"_s,
    u"mnuAA"_s,        u"mnuSpravUD"_s,  u"mnuHelpManual"_s,   u"mnuBrowser"_s,
    u"mnuTPemail"_s,   u"mnuErrorLog"_s, u"mnuoproge"_s,       u"mnuFullScreen"_s,
    u"mnustatusbar"_s, u"mnupanels"_s,   u"mnuToolsLock"_s,    u"mnuFileCr"_s,
    u"mnuFileOpen"_s,  u"mnuexit"_s,     u"mnuFileOpenFrom"_s,
};

// What the settled captions share among themselves.
const std::map<std::string, QString> kSettledShares = {
    {"mnuFile", u"окв"_s},
    {"mnudeistvie", u"у"_s},
    {"mnuotchet", u"уо"_s},
    {"mnuservies", u"ап"_s},
};

} // namespace

TEST_F(MainWindow, HasEveryMenuItemWithItsCaption)
{
    start();
    for (const Caption& row : kCaptions) {
        const QAction* found = item(*window, row.name);
        ASSERT_NE(found, nullptr) << row.name.toStdString();
        EXPECT_EQ(found->text().toStdString(), row.caption.toStdString());
    }
}

TEST_F(MainWindow, SeparatesTheGroupsOfEachMenu)
{
    start();
    for (const QString& name : kSeparators) {
        const auto* bar = window->findChild<QAction*>(name);
        ASSERT_NE(bar, nullptr) << name.toStdString();
        EXPECT_TRUE(bar->isSeparator()) << name.toStdString();
    }
}

TEST_F(MainWindow, SharesNoAccessKeysButTheSettledOnes)
{
    start();
    EXPECT_EQ(sharedKeys(*window), kSettledShares);
    QString seen;
    for (const QAction* menu : window->menuBar()->actions()) {
        const auto sign = menu->text().indexOf(u'&');
        const QString key = sign < 0 ? QString() : menu->text().mid(sign + 1, 1).toLower();
        EXPECT_TRUE(key.isEmpty() || !seen.contains(key)) << menu->text().toStdString();
        seen += key;
    }
}

TEST_F(MainWindow, SpeaksTheSchoolsWordsWithoutNewSharedKeys)
{
    start();
    shell::applyWording(shell::Wording(shell::Institution::School), *window->menuBar());
    const Caption expected[] = {
        {u"mnuprepod"_s, u"&Учителя"_s},
        {u"mnugrup"_s, u"&Классы"_s},
        {u"mnuotchProgul"_s, u"&Отчет по прогулам учащихся по учителям/классам"_s},
        {u"mnuTab"_s, u"&Табель учащегося"_s},
    };
    for (const Caption& row : expected) {
        const QString text = item(*window, row.name)->text();
        EXPECT_EQ(QString(text).remove(u'&').toStdString(),
                  QString(row.caption).remove(u'&').toStdString());
        EXPECT_TRUE(text.contains(u'&')) << row.name.toStdString();
    }
    EXPECT_EQ(item(*window, u"mnuPred"_s)->text().remove(u'&').toStdString(), "Предметы");
    EXPECT_EQ(item(*window, u"mnuspez"_s)->text().remove(u'&').toStdString(), "Параллели");
    EXPECT_EQ(item(*window, u"mnustud"_s)->text().remove(u'&').toStdString(), "Учащиеся");
    EXPECT_EQ(item(*window, u"mnuNastroiki"_s)->text().toStdString(), "&Параметры...");
    for (const auto& [menu, keys] : sharedKeys(*window)) {
        const auto settled = kSettledShares.find(menu);
        ASSERT_NE(settled, kSettledShares.end()) << menu << ' ' << keys.toStdString();
        for (const QChar key : keys) {
            EXPECT_TRUE(settled->second.contains(key)) << menu << ' ' << keys.toStdString();
        }
    }
}

TEST_F(MainWindow, DisablesWhatCannotBeDoneWithoutAFile)
{
    start();
    for (const Caption& row : kCaptions) {
        const QAction* found = item(*window, row.name);
        if (!found->menu()) {
            EXPECT_EQ(found->isEnabled(), kAlways.contains(row.name)) << row.name.toStdString();
        }
    }
    EXPECT_FALSE(action(u"mnupassword"_s)->isVisible());
}

TEST_F(MainWindow, EnablesTheCommandsOfAnOpenFileAndOfNoLaterRelease)
{
    start(newJournal(u"a.mdb"_s));
    const QStringList enabled =
        kAlways + QStringList{u"mnuFileOpenR"_s,  u"mnuFileClose"_s, u"mnuposechaemost"_s,
                              u"mnuUserChange"_s, u"mnuNastroiki"_s, u"mnuFileSaveAs"_s,
                              u"mnuFileSaveTo"_s, u"mnuToolsAcc"_s,  u"mnuToolsArh"_s,
                              u"mnuToolsMail"_s};
    for (const Caption& row : kCaptions) {
        const QAction* found = item(*window, row.name);
        if (!found->menu()) {
            EXPECT_EQ(found->isEnabled(), enabled.contains(row.name)) << row.name.toStdString();
        }
    }
}

TEST_F(MainWindow, ListsRecentFilesAndGreysMissingOnes)
{
    const QString kept = newJournal(u"Колледж & Ко.mdb"_s);
    settings.addRecentFile(pathOf(u"нет такого.mdb"_s));
    settings.addRecentFile(kept);
    start();
    emit window->findChild<QMenu*>(u"mnuFile"_s)->aboutToShow();
    const auto items = window->findChildren<QAction*>(u"mnuFileMRU"_s);
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items[0]->text(), u"&1 Колледж && Ко.mdb"_s);
    EXPECT_TRUE(items[0]->isEnabled());
    EXPECT_EQ(items[1]->text(), u"&2 нет такого.mdb"_s);
    EXPECT_FALSE(items[1]->isEnabled());
    EXPECT_FALSE(items[2]->isVisible());
    items[0]->trigger();
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.journal().path(), kept);
}
