#include "import/forms/importlist.h"

#include "import/forms/frmimport.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace imports {

bool importList(const ImportParts& parts, refbooks::Book book, const refbooks::ListFilter& filter,
                QWidget* parent)
{
    const QString kLastFile = u"frmImport/file"_s;
    const QByteArray last = parts.settings.remembered(kLastFile);
    const QString path = parts.chooser.openSource(
        u"Импорт списка"_s, u"Списки (*.csv *.txt *.xlsx *.mdb);;Все файлы (*)"_s,
        last.isEmpty() ? QFileInfo(parts.session.journal().path()).absolutePath()
                       : QString::fromUtf8(last));
    if (path.isEmpty())
        return false;
    std::unique_ptr<ListImport> import;
    if (!shell::runCommand(parts.prompt, u"Файл не был открыт."_s,
                           [&] {
                               import = ListImport::open(parts.session, parts.prompt, book,
                                                         readSource(parts.session, path));
                           })
        || !import)
        return false;
    parts.settings.remember(kLastFile, path.toUtf8());
    frmImport window(parts, {path, book, filter.key}, std::move(import), parent);
    window.exec();
    return window.hasImported();
}

} // namespace imports
