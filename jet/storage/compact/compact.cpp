#include "jet/compact.h"

#include "jet/error.h"
#include "jet/storage/checker.h"
#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/newcatalogue.h"
#include "jet/storage/compact/newfile.h"
#include "jet/storage/compact/objectrules.h"
#include "jet/storage/compact/progress.h"
#include "jet/storage/compact/source.h"
#include "jet/storage/compact/sourcecatalogue.h"
#include "jet/storage/compact/tablecopy.h"
#include "jet/storage/imagepager.h"
#include "jet/storage/recovery.h"

#include <random>
#include <utility>

// A compaction goes these steps, each of which may fail and then leaves nothing behind:
//
//   1. check the source (not when repairing: there everything unreadable is passed over)
//   2. put all pages of the new file together in memory
//   3. write them to a file of another name, and sync
//   4. check that file
//   5. rename it

namespace jet {

namespace {

using namespace compact;

// Percent of the whole that are done after each step.
constexpr int kChecked = 25, kCopied = 70, kWritten = 80, kVerified = 100;

void requireSound(Pager& source)
{
    for (const Finding& finding : checkDatabase(source)) {
        if (finding.severity == Severity::Harmful)
            throw Error(Fault::Damaged,
                        "файл повреждён: " + finding.text
                            + "; сжать его можно только с восстановлением",
                        finding.page, finding.table);
    }
}

// The header of the new file. What the owners and permissions of objects are coded with
// follows from it, so but for the key of the pages it is the old one.
DatabaseHeader headerOf(Pager& source, const CompactOptions& options)
{
    DatabaseHeader header = source.header();
    const bool encoded = options.encoded.value_or(header.databaseKey != 0);
    if (!encoded)
        header.databaseKey = 0;
    std::random_device random;
    while (encoded && header.databaseKey == 0)
        header.databaseKey = static_cast<std::uint32_t>(random());
    if (decodeHeader(encodeHeader(header)).sidKey != header.sidKey)
        throw Error(Fault::Unsupported, "в заголовке файла есть то, чего эта программа не знает");
    return header;
}

// Writes all tables into the image and counts those of the user.
void copyTables(Pager& source, Pager& target, Losses& losses, Progress& progress,
                CompactReport& report)
{
    PageAllocator allocator(target);
    SourceCatalogue catalogue(source, losses);
    std::size_t pages = 0, done = 0;
    for (SourceTable& table : catalogue.tables()) {
        const PageNumber old = table.definition.page;
        table.newPage = old < kFirstFreePage ? old : allocator.allocate();
        pages += table.pages.size();
    }
    const ObjectRules rules(catalogue, losses, source.header().sidKey);
    TableCopy copy(source, target, losses);
    std::vector<Definition> fresh;
    for (const SourceTable& table : catalogue.tables()) {
        const auto tell = [&](std::size_t rows, std::size_t all) {
            progress.at(done + table.pages.size() * rows / all, pages);
        };
        fresh.push_back(copy.run(table, rules.of(table), tell));
        done += table.pages.size();
        if (table.ofUser) {
            ++report.tables;
            report.rows += fresh.back().rowCount;
        }
    }
    settlePartners(catalogue.tables(), fresh, losses);
    for (const Definition& definition : fresh)
        writeDefinition(target, allocator, definition);
    if (losses.repairing())
        completeCatalogue(target, allocator, catalogue.tables());
}

// Makes the new file beside `place`; `finish` puts it there.
template <class Finish>
CompactReport compacted(FileSystem& files, Source& source, const std::filesystem::path& place,
                        const CompactOptions& options, Losses& losses, Finish finish)
{
    CompactReport report;
    report.bytesBefore = source.size();
    Progress progress(options.progress);
    try {
        progress.begin(kChecked);
        if (!losses.repairing())
            requireSound(source.pager());
        progress.begin(kCopied);
        const DatabaseHeader header = headerOf(source.pager(), options);
        NewFile file(files, place);
        {
            ImagePager image(header, kFirstFreePage);
            copyTables(source.pager(), image.pager(), losses, progress, report);
            progress.begin(kWritten);
            file.write(image.pager(), header, progress);
        }
        progress.begin(kVerified);
        file.verify();
        progress.at(1, 1);
        finish(file);
        report.bytesAfter = file.size();
    } catch (const Cancelled&) {
        report.cancelled = true;
    }
    report.losses = losses.take();
    return report;
}

bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code ignored;
    return a.lexically_normal() == b.lexically_normal()
           || std::filesystem::equivalent(a, b, ignored);
}

} // namespace

CompactReport compactDatabase(FileSystem& files, const std::filesystem::path& source,
                              const std::filesystem::path& target, const CompactOptions& options)
{
    if (isSameFile(source, target))
        throw Error(Fault::Exists, "файл нельзя сжать в него самого");
    if (files.exists(target))
        throw Error(Fault::Exists, "файл «" + target.string() + "» уже существует");
    Losses losses(options.repair);
    Source from(files, source, false, losses);
    return compacted(files, from, target, options, losses,
                     [](NewFile& file) { file.moveToPlace(); });
}

CompactReport compactInPlace(FileSystem& files, const std::filesystem::path& path,
                             const CompactOptions& options)
{
    const std::filesystem::path place = withoutLinks(path);
    Losses losses(options.repair);
    Source from(files, place, true, losses);
    return compacted(files, from, place, options, losses,
                     [&](NewFile& file) { file.replacePlace([&] { from.release(); }); });
}

CompactReport compactDatabase(const std::filesystem::path& source,
                              const std::filesystem::path& target, const CompactOptions& options)
{
    return compactDatabase(FileSystem::system(), source, target, options);
}

CompactReport compactInPlace(const std::filesystem::path& path, const CompactOptions& options)
{
    return compactInPlace(FileSystem::system(), path, options);
}

} // namespace jet
