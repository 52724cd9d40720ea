// The exported stand-alone functions, linked statically: their shared stream, the two block
// sizes, the 384-byte clear and the rate change.
#include <gtest/gtest.h>

#include <vector>

#include "effect/LogTags.h"
#include "popelim/CuttingEdge.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr unsigned kSmallFrames = 192;  // a 1536-byte block

ProcessHandle* InitShared(uint32_t bufferSize = kPopBlockBytes) {
    const ProcessConfig config = StereoConfig(bufferSize);
    ProcessHandle* h = CuttingEdgeFadeinoutInit(&config);
    if (h != nullptr) {
        EXPECT_EQ(ClearCachedBuffer(h), 0);
    }
    return h;
}

TEST(CuttingEdgeTest, EveryInitialisationResetsTheOneSharedHandle) {
    ProcessHandle* first = InitShared();
    ASSERT_NE(first, nullptr);
    first->sampleRate = 1;
    ProcessHandle* second = InitShared(1536);
    EXPECT_EQ(second, first);
    EXPECT_EQ(second->sampleRate, 48000u);
    EXPECT_EQ(second->maxBufferSize, 1536u);
    EXPECT_EQ(second->cacheSize, 152u);

    LogCapture log;
    const ProcessConfig bad{2, 4, 3841, 0, 3};
    EXPECT_EQ(CuttingEdgeFadeinoutInit(&bad), nullptr);
    EXPECT_EQ(CuttingEdgeFadeinoutInit(nullptr), nullptr);
    EXPECT_EQ(second->maxBufferSize, 1536u);
    EXPECT_TRUE(log.Has("Process buffer size is insufficient", kTagPop, ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("config is invalid, init failed", kTagPop, ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("Pointer is null", kTagPop, ANDROID_LOG_WARN));
}

TEST(CuttingEdgeTest, AcceptsBlocksOf3840And1536BytesOnly) {
    ProcessHandle* h = InitShared();
    ASSERT_NE(h, nullptr);
    const Stereo block = Noise(kFrames, 7);
    LogCapture log;
    for (unsigned size : {1024u, 1535u, 3841u, 0u}) {
        EXPECT_EQ(CuttingEdgeProcess(h, block.s.data(), size, true), nullptr) << size;
    }
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
    int32_t* out = CuttingEdgeProcess(h, block.s.data(), 1536, false);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(Bytes(out, 0, kPopCacheBytes), std::vector<uint8_t>(kPopCacheBytes, 0));
    EXPECT_EQ(Bytes(out, kPopCacheBytes, 1536 - kPopCacheBytes),
              Bytes(block.s.data(), 0, 1536 - kPopCacheBytes));
    EXPECT_NE(CuttingEdgeProcess(h, block.s.data(), 3840, true), nullptr);

    // A 1536-byte stream cannot take a 3840-byte block.
    h = InitShared(1536);
    EXPECT_EQ(CuttingEdgeProcess(h, block.s.data(), 3840, true), nullptr);
    EXPECT_NE(CuttingEdgeProcess(h, block.s.data(), 1536, true), nullptr);
}

TEST(CuttingEdgeTest, ClearZeroes384BytesWhateverTheCacheSize) {
    ProcessHandle* h = InitShared(1000);
    ASSERT_NE(h, nullptr);
    ASSERT_EQ(h->cacheSize, 96u);
    memset(h->cache, 0xAB, kPopCacheBytes);
    EXPECT_EQ(ClearCachedBuffer(h), 0);
    EXPECT_EQ(Bytes(h->cache, 0, kPopCacheBytes), std::vector<uint8_t>(kPopCacheBytes, 0));

    LogCapture log;
    EXPECT_EQ(ClearCachedBuffer(nullptr), -1000);
    ProcessHandle noCache = *h;
    noCache.cache = nullptr;
    EXPECT_EQ(ClearCachedBuffer(&noCache), -1000);
    EXPECT_EQ(log.Count("ClearCachedBuffer:Invalid input pointer", kTagPop, ANDROID_LOG_ERROR), 2);
}

TEST(CuttingEdgeTest, SmallBlockAfterFullInitSearchesStaleFramesOfTheWorkBuffer) {
    ProcessHandle* h = InitShared();
    ASSERT_NE(h, nullptr);
    ASSERT_NE(CuttingEdgeProcess(h, Stereo(kFrames, Lv(20000)).s.data(), 3840, true), nullptr);
    // Left channel drops to level 100 at input frame 300, frame 348 of the delayed block; the
    // block is not faded, so the drop stays in the work buffer past frame 192.
    const Stereo drop = Stereo(kFrames, Lv(20000)).Fill(0, 300, kFrames, 100);
    ASSERT_NE(CuttingEdgeProcess(h, drop.s.data(), 3840, false), nullptr);

    LogCapture log;
    const Stereo small(kSmallFrames, Lv(20000));
    const int32_t* out = CuttingEdgeProcess(h, small.s.data(), 1536, true);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(log.Count("falling edge fade out, pos = 348, value = 20000, channel = 0"), 1)
            << log.Dump();
    // The block itself gets the left half of the V: the cache (level 100) then the new block.
    for (unsigned k = 0; k < kSmallFrames; ++k) {
        const int64_t s = k < kCacheFrames ? Lv(100) : Lv(20000);
        ASSERT_EQ(out[k * 2], s - k * s / 348) << k;
        ASSERT_EQ(out[k * 2 + 1], Lv(20000)) << k;
    }
    // The rising half is 3840 frames long by the wrapped end rule and stops at the buffer's end.
    EXPECT_EQ(out[349 * 2], Lv(100) / 3840);
    EXPECT_EQ(out[479 * 2], int64_t{131} * Lv(100) / 3840);
}

TEST(CuttingEdgeTest, RateChangeClears384BytesAndRoundsTheCacheUp) {
    ProcessHandle* h = InitShared();
    ASSERT_NE(h, nullptr);
    memset(h->cache, 0xAB, kPopCacheBytes);
    h->sampleRate = 44100;
    const Stereo block = Noise(kSmallFrames, 9);
    LogCapture log;
    int32_t* out = CuttingEdgeProcess(h, block.s.data(), 1536, false);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(log.Has("Sample rate 44100 -> 48000", kTagPop, ANDROID_LOG_INFO));
    EXPECT_TRUE(log.Has("Buffer size 1536, cache size 156", kTagPop, ANDROID_LOG_INFO));
    EXPECT_EQ(h->cacheSize, 156u);
    EXPECT_EQ(h->curBufferSize, 1536u);
    EXPECT_EQ(h->sampleRate, 48000u);
    EXPECT_EQ(Bytes(out, 0, 156), std::vector<uint8_t>(156, 0));
    EXPECT_EQ(Bytes(out, 156, 1536 - 156), Bytes(block.s.data(), 0, 1536 - 156));
    EXPECT_EQ(Bytes(h->cache, 0, 156), Bytes(block.s.data(), 1536 - 156, 156));
    EXPECT_EQ(Bytes(h->cache, 156, 228), std::vector<uint8_t>(228, 0));
}

}  // namespace
