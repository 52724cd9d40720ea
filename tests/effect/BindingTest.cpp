// Binding of the algorithm library, seen from outside: log lines, blocks, and whether the
// library stays mapped.
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

// Runs blocks of several shapes through the instance and expects each to come back exactly
// as it went in.
void ExpectBlocksUntouched(HostOrlune* inst) {
    std::mt19937 rng(7);
    const struct {
        int frames, channels;
        audio_format_t format;
    } shapes[] = {{240, 2, AUDIO_FORMAT_PCM_16_BIT},
                  {1001, 4, AUDIO_FORMAT_PCM_FLOAT},
                  {1920, 8, AUDIO_FORMAT_PCM_24_BIT_PACKED}};
    for (const auto& s : shapes) {
        std::vector<uint8_t> block(static_cast<size_t>(s.frames) * s.channels *
                                   audio_bytes_per_sample(s.format));
        std::generate(block.begin(), block.end(), std::ref(rng));
        const std::vector<uint8_t> before = block;
        inst->KivOutProcPlaySamples(reinterpret_cast<short*>(block.data()), s.frames, s.channels,
                                    s.format);
        EXPECT_EQ(block, before) << s.frames << " frames, " << s.channels << " channels";
    }
}

TEST(BindingTest, MissingAlgorithmLibraryPassesEveryBlockBitExact) {
    HostLibrary lib;
    LogCapture log;
    HostOrlune* inst = lib.Create();
    inst->KivOutProcPlayInit();
    EXPECT_TRUE(log.Has("LoadOrulneEffect: lib64orlune7_1.so open fail.", "orlune_mobile",
                        ANDROID_LOG_ERROR));
    inst->KivParamsSetInt(kIdWidenEnable, 1);  // set operations are ignored while unbound
    inst->KivParamsSetInt(kIdEffectEnable, 1);
    EXPECT_EQ(log.CountContaining("is set to"), 0);
    ExpectBlocksUntouched(inst);
    lib.Delete(inst);
}

TEST(BindingTest, LibraryLackingOneEntryPointIsRefusedAndClosed) {
    HostLibrary lib;
    void* preload = PreloadStandin(kBrokenStandin);
    ASSERT_NE(preload, nullptr) << dlerror();
    LogCapture log;
    HostOrlune* inst = lib.Create();
    inst->KivOutProcPlayInit();
    EXPECT_TRUE(log.Has("LoadOrulneEffect: Orlune load function symbol failed.", "orlune_mobile",
                        ANDROID_LOG_ERROR))
            << log.Dump();
    ExpectBlocksUntouched(inst);

    // Only our own reference is left: if the effect had kept its handle, the library would
    // stay mapped after we drop ours.
    dlclose(preload);
    EXPECT_FALSE(IsLoaded(kBrokenStandin));
    lib.Delete(inst);
}

TEST(BindingTest, BindsOnceAndKeepsTheLibraryMapped) {
    HostLibrary lib;
    void* preload = PreloadStandin(kFullStandin);
    ASSERT_NE(preload, nullptr) << dlerror();
    HostOrlune* inst = lib.Create();
    // Before set-up nothing is bound: blocks come back as they went in.
    EXPECT_FALSE(inst->GetProcessEnable());
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

}  // namespace
