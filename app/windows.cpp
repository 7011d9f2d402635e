#include "app/windows.h"

#include "journals/forms/frmhpos.h"
#include "shell/forms/windowregistry.h"

using namespace Qt::StringLiterals;

namespace app {

void offerWindows(shell::WindowRegistry& registry, const journals::JournalParts& parts)
{
    registry.offer(u"mnuposechaemost"_s,
                   [parts](QWidget* parent) { return new journals::frmHPos(parts, parent); });
}

} // namespace app
