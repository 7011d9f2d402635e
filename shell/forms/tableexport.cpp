#include "shell/forms/tableexport.h"

#include "sheets/writetable.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/statusline.h"

#include <QDir>

#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

TableExport::TableExport(FileChooser& chooser, Prompt& prompt, StatusLine& status,
                         std::function<QString()> folder)
    : m_chooser(chooser)
    , m_prompt(prompt)
    , m_status(status)
    , m_folder(std::move(folder))
{}

void TableExport::write(const sheets::Table& table) const
{
    runCommand(m_prompt, u"Список не записан."_s, [&] {
        const QString path = m_chooser.saveTable(m_folder(), sheets::fileName(table.title));
        if (path.isEmpty())
            return;
        sheets::writeTable(path, table, sheets::Existing::Replace); // the chooser has asked
        m_status.show(u"Список записан в файл: %1"_s.arg(QDir::toNativeSeparators(path)));
    });
}

} // namespace shell
