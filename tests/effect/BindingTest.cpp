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

// Drives an instance only through the host's separately declared interface, one observable
// effect per virtual slot, to prove the slot order of the shipped library.
TEST(HostViewTest, EachSlotReachesItsOperation) {
    HostLibrary lib;
    ASSERT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    LogCapture log;
    HostOrlune* inst = lib.Create();

    inst->KivOutProcPlayInit();  // slot 3
    EXPECT_TRUE(log.Has("LoadOrulneEffect 1075: Load orlune algo lib OK.")) << log.Dump();

    inst->KivParamsSetInt(kIdOrientation, 1);  // slot 4
    EXPECT_TRUE(log.Has("KivParamsSetInt: Param 4 is set to 1", "orlune_mobile", ANDROID_LOG_INFO));

    inst->KivParamsSetFloat(kIdVolumeDb, -10.0f);  // slot 5
    EXPECT_TRUE(log.Has("volumeDb = -10.000000", "orlune_mobile", ANDROID_LOG_INFO));

    inst->KivParamsSetString(99, "x");  // slot 6
    EXPECT_TRUE(
            log.Has("SetString Unsupport param: 99, value: x", "orlune_mobile", ANDROID_LOG_INFO));

    android::String8 reply = inst->KivParamsGet(android::String8("CHANNEL_SWAPPED"));  // 7
    EXPECT_STREQ(reply.c_str(), "CHANNEL_SWAPPED=false");

    // Slot 8: the first block comes back as the primed frame of silence.
    std::vector<short> block(480 * 2, 1000);
    inst->KivOutProcPlaySamples(block.data(), 480, 2, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(block, std::vector<short>(480 * 2, 0));

    EXPECT_FALSE(inst->GetProcessEnable());  // slot 9
    inst->SetProcessEnable(true);            // slot 10
    EXPECT_TRUE(inst->GetProcessEnable());

    lib.Delete(inst);  // slot 1, the deleting destructor
    EXPECT_TRUE(log.Has("DeleteOrluneInstance"));
}

}  // namespace
