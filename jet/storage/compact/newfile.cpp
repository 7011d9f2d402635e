#include "jet/storage/compact/newfile.h"

#include "jet/error.h"
#include "jet/storage/checker.h"
#include "jet/storage/rc4.h"

#include <algorithm>

namespace jet::compact {

namespace {

constexpr PageNumber kPagesAtOnce = 256;

std::filesystem::path pathBeside(std::filesystem::path place)
{
    place += "-compact";
    return place;
}

} // namespace

NewFile::NewFile(FileSystem& files, const std::filesystem::path& place)
    : m_files(files)
    , m_place(place)
    , m_path(pathBeside(place))
{
    if (!files.exists(m_path))
        return;
    files.open(m_path, FileMode::ReadWrite); // refused while another one writes it
    files.remove(m_path);
}

NewFile::~NewFile()
{
    if (!m_exists)
        return;
    try {
        m_files.remove(m_path);
    } catch (...) {
        // The next compaction removes it; the first error tells more.
    }
}

void NewFile::write(Pager& image, const DatabaseHeader& header, Progress& progress)
{
    const auto file = m_files.open(m_path, FileMode::Create);
    m_exists = true;
    const PageNumber count = image.pageCount();
    Bytes part;
    for (PageNumber first = 0; first < count; first += kPagesAtOnce) {
        part.clear();
        const PageNumber end = std::min(count, first + kPagesAtOnce);
        for (PageNumber page = first; page < end; ++page) {
            const PageRef ref = image.read(page);
            const std::size_t at = part.size();
            if (page == 0) {
                part = encodeHeader(header);
                continue;
            }
            part.insert(part.end(), ref.bytes().begin(), ref.bytes().end());
            if (header.databaseKey != 0)
                applyRc4(header.databaseKey ^ page, ByteSpan(part).subspan(at, kPageSize));
        }
        file->write(std::uint64_t{first} * kPageSize, part);
        progress.at(end, count);
    }
    file->sync();
    m_files.syncDirectory(m_path.parent_path());
    m_size = std::uint64_t{count} * kPageSize;
}

void NewFile::verify()
{
    const auto pager = Pager::open(m_files, m_path, true);
    for (const Finding& finding : checkDatabase(*pager)) {
        if (finding.severity == Severity::Harmful)
            throw Error(Fault::Damaged,
                        "проверка новой копии базы данных нашла ошибку, копия не сохранена: "
                            + finding.text,
                        finding.page, finding.table);
    }
}

void NewFile::moveToPlace()
{
    try {
        m_files.rename(m_path, m_place);
    } catch (...) {
        if (!m_files.exists(m_path)) // renamed, but not durably
            m_files.remove(m_place);
        throw;
    }
    m_exists = false;
}

void NewFile::replacePlace(const std::function<void()>& release)
{
    m_files.replace(m_path, m_place, release);
    m_exists = false;
}

} // namespace jet::compact
