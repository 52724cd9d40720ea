// The shipped library as a host meets it: binding of the algorithm library (log lines,
// blocks, and whether the library stays mapped) and the slot order of the instance.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "params/ParamIds.h"
#include "tests/support/HostEffect.h"
#include "tests/support/LogCapture.h"

namespace {

const std::string kFullStandin = StandinPath("lib64orlune7_1.so");
const std::string kBrokenStandin = StandinPath("missing-getpara/lib64orlune7_1.so");

// Runs a four-channel float block through the instance and expects it back exactly as it went
// in. (An unbound instance returns before it looks at the block's shape.)
void ExpectBlocksUntouched(HostOrlune* inst) {
    std::mt19937 rng(7);
    std::vector<uint8_t> block(1001 * 4 * sizeof(float));
    std::generate(block.begin(), block.end(), std::ref(rng));
    const std::vector<uint8_t> before = block;
    inst->KivOutProcPlaySamples(reinterpret_cast<short*>(block.data()), 1001, 4,
                                AUDIO_FORMAT_PCM_FLOAT);
    EXPECT_EQ(block, before);
}

// A library that is missing, or lacks one entry point, leaves the instance unbound: set
// operations are ignored and every block comes back bit-exact.
TEST(BindingTest, UnusableAlgorithmLibraryLeavesEveryBlockBitExact) {
    for (const std::string& standin : {std::string(), kBrokenStandin}) {
        SCOPED_TRACE(standin);
        HostLibrary lib;
        void* preload = standin.empty() ? nullptr : PreloadStandin(standin);
        LogCapture log;
        HostOrlune* inst = lib.Create();
        inst->KivOutProcPlayInit();
        EXPECT_TRUE(log.Has(standin.empty()
                                    ? "LoadOrulneEffect: lib64orlune7_1.so open fail."
                                    : "LoadOrulneEffect: Orlune load function symbol failed.",
                            "orlune_mobile", ANDROID_LOG_ERROR))
                << log.Dump();
        inst->KivParamsSetInt(kIdWidenEnable, 1);
        inst->KivParamsSetInt(kIdEffectEnable, 1);
        EXPECT_EQ(log.CountContaining("is set to"), 0);
        ExpectBlocksUntouched(inst);
        if (!standin.empty()) {
            // Only our own reference is left: had the effect kept its handle, the library
            // would stay mapped after we drop ours.
            dlclose(preload);
            EXPECT_FALSE(IsLoaded(standin));
        }
        lib.Delete(inst);
    }
}

TEST(BindingTest, BindsOnceAndKeepsTheLibraryMapped) {
    HostLibrary lib;
    void* preload = PreloadStandin(kFullStandin);
    ASSERT_NE(preload, nullptr) << dlerror();
    HostOrlune* inst = lib.Create();
    // Before set-up nothing is bound: blocks come back as they went in.
    ExpectBlocksUntouched(inst);
    lib.Delete(nullptr);  // ignored
    LogCapture log;
    inst->KivOutProcPlayInit();
    EXPECT_EQ(log.Count("LoadOrulneEffect 1075: Load orlune algo lib OK.", "orlune_mobile",
                        ANDROID_LOG_INFO),
              1)
            << log.Dump();
    EXPECT_TRUE(
            log.Has("cgtVersion: standin-cc 12.2, releaseVersion: standin 1.0.0, "
                    "releaseDate: 2026-11-21",
                    "orlune_mobile", ANDROID_LOG_INFO));

    inst->KivOutProcPlayInit();
    EXPECT_EQ(log.Count("LoadOrulneEffect: load orlune Effect lib"), 1);

    dlclose(preload);
    EXPECT_TRUE(IsLoaded(kFullStandin));
    lib.Delete(inst);
    EXPECT_TRUE(IsLoaded(kFullStandin));  // deleting the instance does not unload it either
}

// The host reaches the instance only through its separately declared interface. Slots 1 to 8
// carry every other test here; the last two, which nothing else uses, are checked on their own.
TEST(HostViewTest, ProcessEnableSlotsReachTheirOperations) {
    HostLibrary lib;
    HostOrlune* inst = lib.Create();
    EXPECT_FALSE(inst->GetProcessEnable());  // slot 9
    inst->SetProcessEnable(true);            // slot 10
    EXPECT_TRUE(inst->GetProcessEnable());
    lib.Delete(inst);
}

}  // namespace
