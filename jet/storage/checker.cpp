#include "jet/storage/checker.h"

#include "jet/storage/check/catalogue.h"
#include "jet/storage/check/findings.h"
#include "jet/storage/check/header.h"
#include "jet/storage/check/space.h"
#include "jet/storage/store.h"

namespace jet {

std::vector<Finding> checkDatabase(Pager& pager, CheckTotals* totals)
{
    check::Findings findings;
    findings.attempt("", [&] {
        check::checkHeader(pager, findings);
        check::Space space(pager, findings);
        space.checkGlobalMaps();
        check::Catalogue catalogue(space, findings);
        catalogue.run();
        space.checkAllPages(catalogue.isReadable());
    });
    if (totals)
        *totals = findings.totals();
    return findings.take();
}

std::vector<Finding> checkDatabase(Store& store, CheckTotals* totals)
{
    return checkDatabase(store.pager(), totals);
}

} // namespace jet
