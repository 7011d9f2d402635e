#include "shell/service/outsideprograms.h"

#include "shell/prompt.h"
#include "shell/service/programstarter.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// The desktops' own ones first, then what any system may have.
const QStringList kCalculators = {
#ifdef Q_OS_WIN
    u"calc.exe"_s,
#else
    u"kcalc"_s,       u"gnome-calculator"_s,  u"mate-calc"_s,
    u"galculator"_s,  u"qalculate-gtk"_s,     u"qalculate-qt"_s,
    u"speedcrunch"_s, u"deepin-calculator"_s, u"xcalc"_s,
#endif
};

const QString kNoCalculator =
    u"Файл программы \"Калькулятор\" не найден. Воспользуйтесь ярлыком: Пуск - Программы - "
    "Стандартные - Калькулятор"_s;

struct HelpProgram
{
    QString name;
    QStringList files;
    QString whereFrom;
};

HelpProgram helpProgram(RemoteHelp kind)
{
    if (kind == RemoteHelp::AnyDesk) {
        return {u"AnyDesk"_s,
                {u"anydesk"_s, u"AnyDesk"_s},
                u"Установите ее с сайта разработчика или спросите у того, кто обслуживает "
                "компьютеры."_s};
    }
    return {u"AmmyyAdmin"_s,
            {u"AA_v3"_s, u"ammyyadmin"_s},
            u"Она выпускается только для Windows; в другой системе воспользуйтесь AnyDesk."_s};
}

} // namespace

void startCalculator(ProgramStarter& starter, Prompt& prompt)
{
    const QString program = starter.find(kCalculators);
    if (program.isEmpty() || !starter.start(program, {})) {
        prompt.exclamation(kNoCalculator);
    }
}

void startRemoteHelp(ProgramStarter& starter, Prompt& prompt, RemoteHelp kind)
{
    const HelpProgram wanted = helpProgram(kind);
    const QString program = starter.find(wanted.files);
    if (program.isEmpty()) {
        prompt.exclamation(u"Программа %1 на этом компьютере не установлена. %2"_s.arg(
            wanted.name, wanted.whereFrom));
    } else if (!starter.start(program, {})) {
        prompt.exclamation(u"Программа %1 не запускается: %2"_s.arg(wanted.name, program));
    }
}

} // namespace shell
