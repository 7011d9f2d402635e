#include "app/windows.h"

#include "import/forms/importlist.h"
#include "import/forms/importtimetable.h"
#include "journals/forms/frmhpos.h"
#include "journals/forms/frmhusp.h"
#include "reports/forms/frmdocument.h"
#include "reports/forms/lview.h"
#include "shell/forms/frmmain.h"
#include "shell/forms/windowregistry.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace app {

namespace {

const QString kRanking = u"mnuototd"_s;

auto importOfLessons(const refbooks::BookListParts& parts)
{
    const imports::ImportParts imported{parts.session, parts.settings, parts.prompt, parts.status,
                                        parts.chooser};
    return [imported](refbooks::Book, const refbooks::ListFilter&, QWidget* parent) {
        return imports::importTimetable(imported, parent);
    };
}

auto importOfList(const refbooks::BookListParts& parts)
{
    const imports::ImportParts imported{parts.session, parts.settings, parts.prompt, parts.status,
                                        parts.chooser};
    return [imported](refbooks::Book book, const refbooks::ListFilter& filter, QWidget* parent) {
        return imports::importList(imported, book, filter, parent);
    };
}

} // namespace

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
        const auto book = static_cast<refbooks::Book>(code);
        refbooks::BookListParts ofBook = parts;
        if (book == refbooks::Book::Lessons)
            ofBook.import = importOfLessons(parts);
        else if (book != refbooks::Book::Users)
            ofBook.import = importOfList(parts);
        registry.offer(QString::fromLatin1(command.data(), static_cast<qsizetype>(command.size())),
                       [ofBook, book](QWidget* parent) {
                           return new refbooks::frmSPRAV(book, ofBook, parent);
                       });
    }
}

void offerReports(shell::WindowRegistry& registry, const reports::DocumentParts& parts,
                  shell::frmMain& main)
{
    using reports::DocumentOption;
    const std::pair<QString, DocumentOption> documents[] = {
        {u"mnuotpos"_s, DocumentOption::Attendance},
        {u"mnuVedMess"_s, DocumentOption::GradesMonth},
        {u"mnuotusp"_s, DocumentOption::GradesSubject},
        {u"mnuotchProgul"_s, DocumentOption::Truancy},
        {u"mnuTab"_s, DocumentOption::Card},
        {u"mnuotitog"_s, DocumentOption::Final},
        {u"mnuotsvod"_s, DocumentOption::Summary},
    };
    for (const auto& [command, option] : documents)
        registry.offerDialog(command, [parts, preset = option, &main](QWidget* parent) {
            reports::frmDocument dialog(preset, parts, parent);
            if (dialog.exec() == QDialog::Accepted && dialog.wantsRanking())
                main.openWindow(kRanking);
        });
    registry.offer(kRanking,
                   [parts](QWidget* parent) { return new reports::LView(parts, parent); });
}

} // namespace app
