// The three pop-eliminator functions of the shipped library, reached as another module of the
// host process reaches them: by name, from the loaded library.
#include <android/log.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string.h>

#include <vector>

#include "popelim/ProcessTypes.h"
#include "tests/support/LogCapture.h"

namespace {

using InitFn = ProcessHandle* (*)(const ProcessConfig*);
using ClearFn = int (*)(ProcessHandle*);
using ProcessFn = int32_t* (*)(ProcessHandle*, const void*, unsigned, bool);

TEST(ExportedLibraryTest, RunsTheStandAlonePopEliminator) {
    void* lib = dlopen(ORLUNE_LIB_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    auto init = reinterpret_cast<InitFn>(dlsym(lib, "CuttingEdgeFadeinoutInit"));
    auto clear = reinterpret_cast<ClearFn>(dlsym(lib, "ClearCachedBuffer"));
    auto process = reinterpret_cast<ProcessFn>(dlsym(lib, "CuttingEdgeProcess"));
    ASSERT_TRUE(init != nullptr && clear != nullptr && process != nullptr);

    LogCapture log;
    const ProcessConfig config{2, 4, 3840, 0, 3};
    ProcessHandle* h = init(&config);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(init(&config), h);
    EXPECT_TRUE(
            log.Has("CuttingEdgeFadeinoutInit succeed, cache size = 384, buffer size = 3840, "
                    "OutputType = 0, format = 3",
                    "cutting_edge_preprocess", ANDROID_LOG_INFO))
            << log.Dump();
    EXPECT_EQ(h->cacheSize, 384u);
    EXPECT_EQ(clear(h), 0);
    EXPECT_EQ(clear(nullptr), -1000);

    // A steady loud block comes back 48 frames late; the cache's zeros lead it.
    std::vector<int32_t> block(960, 20000 * 65536);
    int32_t* out = process(h, block.data(), 3840, false);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out[95], 0);
    EXPECT_EQ(out[96], 20000 * 65536);
    EXPECT_EQ(memcmp(out + 96, block.data(), 3840 - 384), 0);
    // With fades on, the hard onset after the zeros (frame 48) rises from zero.
    EXPECT_EQ(clear(h), 0);
    out = process(h, block.data(), 3840, true);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out[96], 0);
    EXPECT_EQ(out[98], 20000 * 65536 / 432);
    EXPECT_TRUE(log.Has("raising edge fade in, pos = 48, value = 20000, channel = 0"));

    EXPECT_NE(process(h, block.data(), 1536, true), nullptr);
    EXPECT_EQ(process(h, block.data(), 1024, true), nullptr);
    EXPECT_EQ(process(nullptr, block.data(), 3840, true), nullptr);
    dlclose(lib);
}

}  // namespace
