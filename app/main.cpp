#include "app/desktop.h"
#include "app/errorlog.h"
#include "app/options.h"
#include "app/quitsignals.h"
#include "app/singleinstance.h"
#include "app/windows.h"
#include "demo/demo.h"
#include "journals/forms/frmhpos.h"
#include "shell/forms/datetyping.h"
#include "shell/forms/frmlogin.h"
#include "shell/forms/frmmain.h"
#include "shell/forms/hintcolor.h"
#include "shell/forms/programfolders.h"
#include "shell/forms/programicon.h"
#include "shell/forms/qtfilechooser.h"
#include "shell/forms/qtprogramstarter.h"
#include "shell/forms/qtprompt.h"
#include "shell/forms/tableexport.h"
#include "shell/forms/windowregistry.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint64_t kDemoSeed = 2022;

int say(const app::Reply& reply)
{
    std::fputs(reply.text.toUtf8().constData(), reply.status == 0 ? stdout : stderr);
    return reply.status;
}

void setUp(QTranslator& translator)
{
    QApplication::setApplicationName(u"jurnal"_s);
    QApplication::setApplicationDisplayName(u"Журнал"_s);
    QApplication::setApplicationVersion(QStringLiteral(JURNAL_VERSION));
    QApplication::setDesktopFileName(u"ru.jurnal.Jurnal"_s);
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    const QStringList folders{QLibraryInfo::path(QLibraryInfo::TranslationsPath),
                              QApplication::applicationDirPath() + u"/translations"_s};
    for (const QString& folder : folders) {
        if (translator.load(u"qtbase_ru"_s, folder)) {
            QApplication::installTranslator(&translator);
            break;
        }
    }
    QApplication::setWindowIcon(shell::programIcon());
    shell::keepHintsReadable(*qApp);
    shell::easeDateTyping(*qApp);
}

// The file to begin with: the one named, else the last one if it is still there.
QString firstFile(const app::Options& options, const shell::Settings& settings)
{
    if (!options.file.isEmpty()) {
        return QFileInfo(options.file).absoluteFilePath();
    }
    const QStringList recent = settings.recentFiles();
    const bool last = options.openLast && !options.demo && !options.newFile && !recent.isEmpty();
    return last && QFileInfo(recent.first()).isFile() ? recent.first() : QString();
}

void begin(shell::frmMain& window, const app::Options& options, const QString& file)
{
    window.load(options.newFile ? QString() : file,
                options.readOnly ? shell::Access::ReadOnly : shell::Access::Full);
    window.show();
    app::carryOut(window, options, file);
}

// The later starts of the program, and the ways it is asked to end from outside.
void listenOutside(shell::frmMain& window, shell::Session& session, app::SingleInstance& instance,
                   const app::QuitSignals& quit)
{
    QObject::connect(&instance, &app::SingleInstance::requested, &window,
                     [&](const app::Options& options) { takeOver(window, session, options); });
    QObject::connect(&quit, &app::QuitSignals::quitWanted, &window,
                     [&window] { app::leave(window); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, &window,
                     [&window] { window.saveState(); });
    instance.listen();
}

int run(const app::Options& options, app::SingleInstance& instance)
{
    const app::QuitSignals quit;
    shell::QtPrompt prompt;
    shell::Settings settings;
    if (!shell::frmLogin::pass(settings, prompt)) {
        return 0;
    }
    const bool school = settings.flag(shell::Setting::School);
    shell::Session session(
        shell::Wording(school ? shell::Institution::School : shell::Institution::College));
    shell::QtFileChooser chooser;
    shell::QtProgramStarter starter;
    shell::WindowRegistry windows;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    shell::frmMain window({session, settings, prompt, chooser, windows,
                           QApplication::applicationDirPath(), documents});
    const auto documentsFolder = [documents] {
        return shell::makeProgramFolders(QApplication::applicationDirPath(), documents).documents;
    };
    const shell::TableExport tables(chooser, prompt, window.statusLine(), documentsFolder);
    app::offerWindows(windows, {session, settings, prompt, window.statusLine(),
                                [&tables](const sheets::Table& table) { tables.write(table); }});
    app::offerBooks(windows,
                    {session, settings, prompt, window.statusLine(), chooser, documentsFolder},
                    window);
    app::offerReports(
        windows,
        {session, settings, prompt, window.statusLine(), chooser, starter, documentsFolder},
        window);
    window.files().setDemo(
        [&prompt](const QString& path) {
            return demo::build(path, demo::Scale::College, kDemoSeed, prompt).has_value();
        },
        documents);
    listenOutside(window, session, instance, quit);
    begin(window, options, firstFile(options, settings));
    if (!options.ignored.isEmpty()) {
        prompt.information(u"Открыт первый из указанных файлов. Не открыты: %1"_s.arg(
            options.ignored.join(u", "_s)));
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const app::Parsed parsed = app::parseArguments(arguments); // needs no display
    if (parsed.reply) {
        return say(*parsed.reply);
    }
    const QApplication application(argc, argv);
    QTranslator translator;
    setUp(translator);
    const app::ErrorLog log;
    app::Options options = parsed.options;
    if (!options.file.isEmpty()) {
        options.file = QFileInfo(options.file).absoluteFilePath(); // for another working folder
    }
    app::SingleInstance instance(app::instanceName());
    return instance.handOver(options) ? 0 : run(options, instance);
}
