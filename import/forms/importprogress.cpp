#include "import/forms/importprogress.h"

#include "shell/forms/waitcursor.h"

#include <QProgressDialog>

using namespace Qt::StringLiterals;

namespace imports {

std::optional<ImportCounts> importWithProgress(const Timetable& timetable, const Period& period,
                                               const LessonChoice& choice, jet::Database& journal,
                                               QWidget* parent)
{
    constexpr int kShownAfterMilliseconds = 500;
    const shell::WaitCursor cursor;
    QProgressDialog box(u"Идет импорт..."_s, u"Отмена"_s, 0, 100, parent);
    box.setObjectName(u"importProgress"_s);
    box.setWindowTitle(parent->windowTitle());
    box.setWindowModality(Qt::ApplicationModal);
    box.setAutoClose(false);
    box.setAutoReset(false);
    box.setMinimumDuration(kShownAfterMilliseconds);
    return importLessons(timetable, period, choice, journal, [&box](int percent) {
        if (!box.wasCanceled())
            box.setValue(percent);
        return !box.wasCanceled();
    });
}

} // namespace imports
