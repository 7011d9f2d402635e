#include "fuzz/targets.h"

// JURNAL_FUZZ_TARGET is the function of fuzz/targets.h that a program is built for.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    jet::fuzz::JURNAL_FUZZ_TARGET({data, size});
    return 0;
}
