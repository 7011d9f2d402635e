#include "import/forms/importtimetable.h"

#include "import/forms/form1.h"
#include "import/timetable.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <QFileInfo>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace imports {

bool importTimetable(const ImportParts& parts, QWidget* parent)
{
    const QString last = parts.settings.text(shell::Setting::ImportFile);
    const QString begin =
        last.isEmpty() ? QFileInfo(parts.session.journal().path()).absolutePath() : last;
    const QString path =
        parts.chooser.openSource(u"Импорт"_s, u"Базы данных Microsoft Access (*.mdb)"_s, begin);
    if (path.isEmpty()) {
        parts.prompt.exclamation(u"Не было выбрано имя файла."_s);
        return false;
    }
    std::unique_ptr<Timetable> timetable;
    if (!shell::runCommand(parts.prompt, u"Файл не был открыт."_s, [&] {
            timetable = Timetable::open(path, parts.session.journal().filePath());
        }))
        return false;
    parts.settings.setText(shell::Setting::ImportFile, path);
    Form1 window(parts, path, std::move(timetable), parent);
    window.exec();
    return window.hasImported();
}

} // namespace imports
