// The libFuzzer entry of one target, named by VEX_FUZZ_TARGET when built.
// The body lives in fuzz/targets, shared with the replay of the corpora in
// the test run.
#include "targets/Fuzz_Targets.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const vex::fuzz::Target* target = [] {
        const vex::fuzz::Target* t = vex::fuzz::Target_Named(VEX_FUZZ_TARGET);
        if (!t) {
            std::fprintf(stderr, "no fuzz target %s\n", VEX_FUZZ_TARGET);
            std::abort();
        }
        return t;
    }();
    vex::fuzz::Run_Input(*target, {data, size});
    return 0;
}
