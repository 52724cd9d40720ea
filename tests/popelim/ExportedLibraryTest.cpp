// The three pop-eliminator functions of the shipped library, reached as another module of the
// host process reaches them: by name, from the loaded library. They run the class's searches
// and fades; what differs is tested here: one shared stream, 1536-byte blocks as well, a clear
// of 384 cache bytes whatever the cache size, and the rate change's rounding.
#include <dlfcn.h>

#include <memory>
#include <vector>

#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

using InitFn = ProcessHandle* (*)(const ProcessConfig*);
using ClearFn = int (*)(ProcessHandle*);
using ProcessFn = int32_t* (*)(ProcessHandle*, const void*, unsigned, bool);

struct ExportedLibraryTest : ::testing::Test {
    void SetUp() override { ASSERT_TRUE(lib && init && clear && process) << dlerror(); }
    // An initialised stream with a cleared cache.
    ProcessHandle* Init(uint32_t bufferSize) {
        const ProcessConfig config{2, 4, bufferSize, 0, 3};
        ProcessHandle* h = init(&config);
        EXPECT_TRUE(h != nullptr && clear(h) == 0);
        return h;
    }

    std::unique_ptr<void, int (*)(void*)> lib{dlopen(ORLUNE_LIB_PATH, RTLD_NOW | RTLD_LOCAL),
                                              dlclose};
    InitFn init = reinterpret_cast<InitFn>(dlsym(lib.get(), "CuttingEdgeFadeinoutInit"));
    ClearFn clear = reinterpret_cast<ClearFn>(dlsym(lib.get(), "ClearCachedBuffer"));
    ProcessFn process = reinterpret_cast<ProcessFn>(dlsym(lib.get(), "CuttingEdgeProcess"));
    LogCapture log;
};

TEST_F(ExportedLibraryTest, SmallBlockAfterFullInitSearchesStaleFramesOfTheWorkBuffer) {
    // One shared stream: a second initialisation returns it again.
    ProcessHandle* h = Init(1536);
    ASSERT_EQ(Init(3840), h);
    EXPECT_EQ(clear(nullptr), -1000);
    EXPECT_EQ(process(nullptr, Stereo(kFrames).s.data(), 3840, true), nullptr);
    // The channels drop to level 100 at input frames 300 and 310, frames 348 and 358 of the
    // delayed block; the block is not faded, so the drops stay in the work buffer past frame 192.
    const Stereo drop =
            Stereo(kFrames, Lv(20000)).Fill(0, 300, kFrames, 100).Fill(1, 310, kFrames, 100);
    ASSERT_NE(process(h, drop.s.data(), 3840, false), nullptr);
    EXPECT_EQ(process(h, drop.s.data(), 1024, true), nullptr);
    log.Clear();
    const int32_t* out = process(h, Stereo(192, Lv(20000)).s.data(), 1536, true);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(log.Count("falling edge fade out, pos = 348, value = 20000, channel = 0"), 1)
            << log.Dump();
    // The block itself gets the left halves of the Vs: the cache (level 100) then the new block.
    for (unsigned k = 0; k < 192; ++k) {
        const int64_t s = k < kCacheFrames ? Lv(100) : Lv(20000);
        ASSERT_EQ(out[k * 2], s - k * s / 348) << k;
        ASSERT_EQ(out[k * 2 + 1], s - k * s / 358) << k;
    }
    // The rising half is 3840 frames long by the wrapped end rule and stops at the buffer's end.
    EXPECT_EQ(out[349 * 2], Lv(100) / 3840);
    EXPECT_EQ(out[479 * 2], int64_t{131} * Lv(100) / 3840);
}

TEST_F(ExportedLibraryTest, RateChangeClears384BytesWhateverTheCacheSizeAndRoundsTheCacheUp) {
    ProcessHandle* h = Init(1536);
    ASSERT_EQ(h->cacheSize, 152u);  // rounded down to whole frames at initialisation
    memset(h->cache, 0xAB, kPopCacheBytes);
    h->sampleRate = 44100;
    const Stereo block(192, Lv(7));
    int32_t* out = process(h, block.s.data(), 1536, false);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(log.Has("Sample rate 44100 -> 48000", "cutting_edge_preprocess", ANDROID_LOG_INFO));
    EXPECT_TRUE(log.Has("Buffer size 1536, cache size 156"));
    // 384 bytes were cleared, whatever the cache size: 156 lead the block, the rest stay zero.
    EXPECT_EQ(Bytes(out, 0, 156), std::vector<uint8_t>(156, 0));
    EXPECT_EQ(Bytes(out, 156, 1536 - 156), Bytes(block.s.data(), 0, 1536 - 156));
    EXPECT_EQ(Bytes(h->cache, 156, 228), std::vector<uint8_t>(228, 0));
}

}  // namespace
