#include "fuzz/damage.h"

#include "fuzz/bases.h"
#include "fuzz/walk.h"
#include "jet/storage/journal.h"
#include "jet/storage/types.h"

#include <algorithm>

namespace jet::fuzz {

namespace {

constexpr std::size_t kMaxPatches = 64;
constexpr std::uint8_t kKinds = 6;
constexpr std::size_t kMaxPages = 255;

Patch readPatch(std::uint8_t kind, Input& input)
{
    Patch patch;
    patch.kind = static_cast<Patch::Kind>(kind);
    patch.page = input.u8();
    switch (patch.kind) {
    case Patch::Kind::Set:
    case Patch::Kind::Journal: {
        patch.offset = input.u16();
        const ByteView bytes = input.take(input.u8());
        patch.bytes.assign(bytes.begin(), bytes.end());
        break;
    }
    case Patch::Kind::Flip:
        patch.offset = input.u16();
        patch.bytes = {input.u8()};
        break;
    case Patch::Kind::Copy:
        patch.otherPage = input.u8();
        break;
    case Patch::Kind::Zero:
        break;
    case Patch::Kind::Resize:
        patch.offset = input.u16();
        break;
    }
    return patch;
}

void add16(Bytes& out, std::uint16_t number)
{
    out.push_back(static_cast<std::uint8_t>(number));
    out.push_back(static_cast<std::uint8_t>(number >> 8));
}

void apply(const Patch& patch, Bytes& pages, std::size_t pageSize)
{
    if (patch.kind == Patch::Kind::Resize) {
        pages.resize(std::min<std::size_t>(patch.page, kMaxPages) * pageSize
                     + patch.offset % pageSize);
        return;
    }
    const std::size_t count = pages.size() / pageSize;
    if (count == 0)
        return;
    const ByteSpan page = ByteSpan(pages).subspan(patch.page % count * pageSize, pageSize);
    const ByteSpan place = page.subspan(patch.offset % pageSize);
    switch (patch.kind) {
    case Patch::Kind::Set:
        std::copy_n(patch.bytes.begin(), std::min(patch.bytes.size(), place.size()), place.begin());
        break;
    case Patch::Kind::Flip:
        place[0] = static_cast<std::uint8_t>(place[0] ^ patch.bytes[0]);
        break;
    case Patch::Kind::Copy:
        std::copy_n(pages.begin() + static_cast<std::ptrdiff_t>(patch.otherPage % count * pageSize),
                    pageSize, page.begin());
        break;
    default:
        std::fill(page.begin(), page.end(), std::uint8_t{0});
    }
}

void applyToJournal(const Patch& patch, Bytes& journal)
{
    const std::size_t at = patch.page * kPageSize + patch.offset % kPageSize;
    if (at >= journal.size())
        return;
    const ByteSpan place = ByteSpan(journal).subspan(at);
    if (patch.bytes.empty())
        journal.resize(at);
    else
        std::copy_n(patch.bytes.begin(), std::min(patch.bytes.size(), place.size()), place.begin());
}

} // namespace

Damage readDamage(Input& input)
{
    Damage damage;
    damage.base = input.u8();
    while (!damage.isRaw() && !input.atEnd() && damage.patches.size() < kMaxPatches) {
        const std::uint8_t kind = input.u8();
        if (kind >= Damage::kEnd)
            break;
        damage.patches.push_back(readPatch(kind % kKinds, input));
    }
    return damage;
}

Bytes encodeDamage(const Damage& damage)
{
    Bytes out = {damage.base};
    for (const Patch& patch : damage.patches) {
        out.push_back(static_cast<std::uint8_t>(patch.kind));
        out.push_back(patch.page);
        if (patch.kind == Patch::Kind::Copy)
            out.push_back(patch.otherPage);
        else if (patch.kind != Patch::Kind::Zero)
            add16(out, patch.offset);
        if (patch.kind == Patch::Kind::Set || patch.kind == Patch::Kind::Journal)
            out.push_back(static_cast<std::uint8_t>(patch.bytes.size()));
        out.insert(out.end(), patch.bytes.begin(), patch.bytes.end());
    }
    if (!damage.isRaw())
        out.push_back(Damage::kEnd);
    return out;
}

void placeDamaged(test::MemoryFiles& files, const Damage& damage, Input& input)
{
    if (damage.isRaw()) {
        const ByteView rest = input.rest();
        files.setContent(kFile, {rest.begin(), rest.end()});
        return;
    }
    const Base& base = bases()[damage.base % bases().size()];
    Bytes pages = base.pages;
    Bytes journal = base.journal;
    for (const Patch& patch : damage.patches) {
        if (patch.kind == Patch::Kind::Journal)
            applyToJournal(patch, journal);
        else
            apply(patch, pages, base.pageSize);
    }
    files.setContent(kFile, fileOf(std::move(pages), base.databaseKey, base.pageSize));
    if (!base.journal.empty())
        files.setContent(journalPath(kFile), std::move(journal));
}

} // namespace jet::fuzz
