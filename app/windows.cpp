#include "app/windows.h"

#include "journals/forms/frmhpos.h"
#include "shell/forms/windowregistry.h"

#include <QString>

using namespace Qt::StringLiterals;

namespace app {

void offerWindows(shell::WindowRegistry& registry, const WindowParts& parts)
{
    const journals::JournalParts journal{parts.session, parts.settings, parts.prompt, parts.status};
    registry.offer(u"mnuposechaemost"_s, [journal](QWidget* parent) -> QWidget* {
        return new journals::frmHPos(journal, parent);
    });
}

} // namespace app
