#include "app/windows.h"

#include "journals/forms/frmhpos.h"
#include "journals/forms/frmhusp.h"
#include "shell/forms/frmmain.h"
#include "shell/forms/windowregistry.h"

using namespace Qt::StringLiterals;

namespace app {

void offerWindows(shell::WindowRegistry& registry, const journals::JournalParts& parts)
{
    registry.offer(u"mnuposechaemost"_s,
                   [parts](QWidget* parent) { return new journals::frmHPos(parts, parent); });
    registry.offer(u"mnuuspevaemost"_s,
                   [parts](QWidget* parent) { return new journals::frmHUsp(parts, parent); });
}

void offerBooks(shell::WindowRegistry& registry, refbooks::BookListParts parts,
                shell::frmMain& main)
{
    parts.openAttendance = [&main](const refbooks::WorkloadPlace& place) {
        auto* journal = qobject_cast<journals::frmHPos*>(main.openWindow(u"mnuposechaemost"_s));
        if (journal)
            journal->choose(journals::GroupId{place.group},
                            place.subgroup > 0 ? std::optional(place.subgroup) : std::nullopt,
                            journals::DisciplineId{place.discipline});
    };
    for (int code = 0; code < refbooks::kBookCodes; ++code) {
        const std::string_view command =
            refbooks::catalogue()[static_cast<std::size_t>(code)].command;
        if (command.empty())
            continue;
        registry.offer(QString::fromLatin1(command.data(), static_cast<qsizetype>(command.size())),
                       [parts, book = static_cast<refbooks::Book>(code)](QWidget* parent) {
                           return new refbooks::frmSPRAV(book, parts, parent);
                       });
    }
}

} // namespace app
