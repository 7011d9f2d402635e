#include "shell/forms/statustips.h"

#include "shell/wording.h"

#include <QAction>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

enum class Words { Fixed, Institution }; // what the wording may change

struct Tip
{
    QString command; // control name
    QString text;
    Words words = Words::Fixed;
};

const Tip kTips[] = {
    {u"mnuFileCr"_s, u"Создать новый файл базы данных и открыть его"_s},
    {u"mnuFileOpen"_s, u"Открыть и проверить файл базы данных"_s},
    {u"mnuFileOpenR"_s, u"Показать открытый файл в диспетчере файлов"_s},
    {u"mnuFileClose"_s, u"Закрыть открытый файл базы данных"_s},
    {u"mnuFileSaveAs"_s, u"Сохранить базу данных в другом файле и продолжить работу в нем"_s},
    {u"mnuFileSaveTo"_s, u"Скопировать файл базы данных на съемный диск"_s},
    {u"mnuFileOpenFrom"_s, u"Вернуть файл базы данных со съемного диска"_s},
    {u"mnuprint"_s, u"Напечатать открытый журнал"_s},
    {u"mnuUserChange"_s, u"Закрыть окна и войти под другим именем"_s},
    {u"mnuexit"_s, u"Закрыть программу"_s},
    {u"mnustatusbar"_s, u"Показать или скрыть эту строку"_s},
    {u"mnupanels"_s, u"Показать или скрыть панель инструментов"_s},
    {u"mnuFullScreen"_s, u"Развернуть окно на весь экран или вернуть обратно"_s},
    {u"mnuins_oc"_s, u"Поставить оценку в текущей клетке журнала успеваемости"_s},
    {u"mnudel_oc"_s, u"Удалить оценку из текущей клетки журнала успеваемости"_s},
    {u"mnuinsert"_s, u"Поставить пропуск в текущей клетке журнала посещаемости"_s},
    {u"mnuins_uv"_s, u"Сделать пропуск в текущей клетке уважительным"_s},
    {u"mnuins_nuv"_s, u"Сделать пропуск в текущей клетке неуважительным"_s},
    {u"mnudelet"_s, u"Удалить пропуск из текущей клетки журнала посещаемости"_s},
    {u"mnuotmena"_s, u"Вернуть журнал к тому, что было до последнего действия"_s},
    {u"mnupovtor"_s, u"Сделать снова то, что было отменено"_s},
    {u"mnuuspevaemost"_s, u"Открыть журнал успеваемости"_s},
    {u"mnuposechaemost"_s, u"Открыть журнал посещаемости"_s},
    {u"mnuImpUr"_s, u"Открыть список занятий, перенесенных из программы расписания"_s},
    {u"mnuprepod"_s, u"Открыть справочник преподавателей"_s, Words::Institution},
    {u"mnuPred"_s, u"Открыть справочник дисциплин"_s, Words::Institution},
    {u"mnuspez"_s, u"Открыть справочник специальностей"_s, Words::Institution},
    {u"mnugrup"_s, u"Открыть справочник групп"_s, Words::Institution},
    {u"mnustud"_s, u"Открыть справочник студентов"_s, Words::Institution},
    {u"mnunagr"_s, u"Открыть список учебной нагрузки"_s},
    {u"mnuSprAud"_s, u"Открыть справочник аудиторий"_s},
    {u"mnuSprTipAud"_s, u"Открыть справочник типов аудиторий"_s},
    {u"mnuSprKaf"_s, u"Открыть справочник кафедр"_s, Words::Institution},
    {u"mnuSprHoli"_s, u"Открыть справочник праздничных дней"_s},
    {u"mnuSprTime"_s, u"Открыть справочник времени занятий"_s, Words::Institution},
    {u"mnuSprTipZan"_s, u"Открыть справочник типов занятий"_s, Words::Institution},
    {u"mnuSprTipGrup"_s, u"Открыть справочник типов групп"_s, Words::Institution},
    {u"mnuSprVid"_s, u"Открыть справочник видов обучения"_s},
    {u"mnuSprRasp"_s, u"Открыть справочник проектов расписаний"_s},
    {u"mnuSprPrih"_s, u"Открыть справочник причин запретов"_s},
    {u"mnuSprUsers"_s, u"Открыть список пользователей программы"_s},
    {u"mnuotpos"_s, u"Составить ведомость посещаемости"_s},
    {u"mnuVedMess"_s, u"Составить ведомость успеваемости за месяц"_s},
    {u"mnuotusp"_s, u"Составить ведомость успеваемости по предметам"_s},
    {u"mnuotchProgul"_s, u"Составить отчет по прогулам"_s},
    {u"mnuTab"_s, u"Составить табель с оценками и пропусками"_s},
    {u"mnuotitog"_s, u"Составить итоговый отчет"_s},
    {u"mnuotsvod"_s, u"Составить сводный отчет"_s},
    {u"mnuototd"_s, u"Сравнить специальности и группы за период"_s, Words::Institution},
    {u"mnuToolsLock"_s, u"Установить или снять пароль на запуск программы"_s},
    {u"mnuToolsCacl"_s, u"Запустить калькулятор"_s},
    {u"mnuToolsDay"_s, u"Открыть календарь с праздниками и учебным годом"_s},
    {u"mnupassword"_s, u"Установить или снять пароль на запуск программы"_s},
    {u"mnuToolsAcc"_s, u"Сжать файл базы данных и упорядочить его"_s},
    {u"mnuToolsArh"_s, u"Создать копию базы данных в папке «Архив»"_s},
    {u"mnuToolsArhOpen"_s, u"Вернуть файл базы данных из копии в папке «Архив»"_s},
    {u"mnuToolsMail"_s, u"Создать письмо с копией базы данных"_s},
    {u"mnuNastroiki"_s, u"Изменить сведения об учебном заведении и параметры программы"_s},
    {u"mnuObnovlenie"_s, u"Узнать версию программы и способ ее обновления"_s},
    {u"mnuAnyDesk"_s, u"Запустить программу AnyDesk для удаленной помощи"_s},
    {u"mnuAA"_s, u"Запустить программу AmmyyAdmin для удаленной помощи"_s},
    {u"mnuSpravUD"_s, u"Открыть раздел руководства об удаленной помощи"_s},
    {u"mnuKaskadom"_s, u"Расположить окна одно за другим"_s},
    {u"mnugorizont"_s, u"Расположить окна одно под другим"_s},
    {u"mnuVertikal"_s, u"Расположить окна рядом"_s},
    {u"mnuHelpManual"_s, u"Открыть руководство пользователя"_s},
    {u"mnuBrowser"_s, u"Открыть руководство на странице «С чего начать»"_s},
    {u"mnuTPemail"_s, u"Создать письмо со сведениями о программе"_s},
    {u"mnuErrorLog"_s, u"Открыть файл, в который программа записывает ошибки"_s},
    {u"mnuoproge"_s, u"Показать версию программы, библиотеки и лицензию"_s},
};

} // namespace

void addStatusTips(const QWidget& window, const Wording& wording)
{
    for (const Tip& tip : kTips) {
        if (auto* action = window.findChild<QAction*>(tip.command)) {
            action->setStatusTip(tip.words == Words::Institution ? wording.translate(tip.text, true)
                                                                 : tip.text);
        }
    }
}

} // namespace shell
