#include "reports/forms/documentprogress.h"
#include "shell/forms/waitcursor.h"

#include <QProgressDialog>

using namespace Qt::StringLiterals;

namespace reports {
std::optional<papers::Document> makeWithProgress(const StatementSource& source,
                                                 const ReportRequest& request, QWidget* parent)
{
    constexpr int kShownAfterMilliseconds = 500;
    const shell::WaitCursor cursor;
    QProgressDialog box(u"Документ составляется..."_s, u"Отмена"_s, 0, 100, parent);
    box.setObjectName(u"documentProgress"_s);
    box.setWindowTitle(reportTitle(request.kind));
    box.setWindowModality(Qt::ApplicationModal);
    box.setAutoClose(false);
    box.setAutoReset(false);
    box.setMinimumDuration(kShownAfterMilliseconds);
    // Events are handled inside setValue(), and only once the box is up. After a cancel none are:
    // whatever closed the box goes on when the journal is no longer being read.
    return makeReport(source, request, [&box](int percent) {
        if (!box.wasCanceled())
            box.setValue(percent);
        return !box.wasCanceled();
    });
}

} // namespace reports
