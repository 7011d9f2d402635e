#include "fuzz/changes.h"
#include "fuzz/damage.h"
#include "fuzz/targets.h"
#include "fuzz/walk.h"
#include "tests/support/memoryfiles.h"

namespace jet::fuzz {

namespace {

constexpr int kSteps = 20000;

} // namespace

void changeDamagedFile(ByteView bytes)
{
    const StepLimit limit(kSteps);
    Input input(bytes);
    const Damage damage = readDamage(input);
    test::MemoryFiles files;
    placeDamaged(files, damage, input);
    attempt([&] { Changes(files).run(input); });
    files.failNever();
    files.powerCut(damage.base);
    reopen(files, damage.patches.empty() && !damage.isRaw());
}

} // namespace jet::fuzz
