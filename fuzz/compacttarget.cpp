#include "fuzz/damage.h"
#include "fuzz/targets.h"
#include "fuzz/walk.h"
#include "jet/compact.h"
#include "jet/storage/journal.h"
#include "tests/support/memoryfiles.h"

#include <stdexcept>

namespace jet::fuzz {

namespace {

const std::filesystem::path kNewFile = "new.mdb";

} // namespace

void compactDamagedFile(ByteView bytes)
{
    Input input(bytes);
    const Damage damage = readDamage(input);
    const bool sound = damage.patches.empty() && !damage.isRaw();
    test::MemoryFiles files;
    placeDamaged(files, damage, input);
    CompactOptions options;
    options.repair = !sound;
    const bool done = attempt([&] { compactDatabase(files, kFile, kNewFile, options); });
    if (sound && !done)
        throw std::logic_error("a sound file cannot be compacted");
    if (!done)
        return;
    files.setContent(kFile, files.content(kNewFile));
    if (files.exists(journalPath(kFile)))
        files.remove(journalPath(kFile));
    reopen(files, true);
}

} // namespace jet::fuzz
