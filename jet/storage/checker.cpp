#include "jet/storage/checker.h"

#include "jet/storage/check/catalogue.h"
#include "jet/storage/check/findings.h"
#include "jet/storage/check/space.h"
#include "jet/storage/store.h"

namespace jet {
namespace {

constexpr std::size_t kCommitWords = 0xE00;

// A word of 0 is left behind by a program that died while it wrote the file; 1 likewise.
void checkCommitWords(Pager& pager, check::Findings& findings)
{
    const PageRef header = pager.read(0);
    for (std::size_t at = kCommitWords; at < kPageSize; at += 2) {
        if (get16(header.bytes(), at) <= 1) {
            findings.harmful("", "файл помечен как недописанный");
            return;
        }
    }
}

} // namespace

std::vector<Finding> checkDatabase(Pager& pager)
{
    check::Findings findings;
    findings.attempt("", [&] {
        checkCommitWords(pager, findings);
        check::Space space(pager, findings);
        space.checkGlobalMaps();
        check::Catalogue catalogue(space, findings);
        catalogue.run();
        space.checkAllPages(catalogue.isReadable());
    });
    return findings.take();
}

std::vector<Finding> checkDatabase(Store& store)
{
    return checkDatabase(store.pager());
}

} // namespace jet
