// FallingPopElim::CuttingEdgeProcess: refusals, the delay line, the enable switch, a rate change.
#include <gtest/gtest.h>

#include <vector>

#include "effect/LogTags.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

const std::vector<uint8_t> kZeroCache(kPopCacheBytes, 0);
constexpr unsigned kBody = kPopBlockBytes - kPopCacheBytes;

TEST(PopElimBlockTest, RefusesBadSizesFormatsAndChannelCountsSilently) {
    std::vector<int32_t> input(2 * kPopBlockBytes / 4, Lv(5000));
    auto refused = [&](const ProcessConfig& config, std::vector<unsigned> sizes) {
        ClassStream st;
        ASSERT_NE(st.Init(config), nullptr);
        memset(st.cache, 0x5A, sizeof(st.cache));
        LogCapture log;
        for (unsigned size : sizes) {
            EXPECT_EQ(st.elim.CuttingEdgeProcess(&st.handle, input.data(), size, true, 384),
                      nullptr)
                    << size;
        }
        EXPECT_EQ(Bytes(st.cache, 0, kPopCacheBytes), std::vector<uint8_t>(kPopCacheBytes, 0x5A));
        EXPECT_TRUE(log.Lines().empty()) << log.Dump();
    };
    refused(StereoConfig(), {0, 1536, 3839, 3841, 7680});
    refused({1, 4, 3840, 0, 3}, {3840});
    refused({2, 4, 3840, 0, 1}, {3840});
    refused(StereoConfig(1536), {1536, 3840});
}

TEST(PopElimBlockTest, MissingPointersAreWarned) {
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    Stereo block = Noise(kFrames, 1);
    LogCapture log;
    EXPECT_EQ(st.elim.CuttingEdgeProcess(nullptr, block.s.data(), 3840, true, 384), nullptr);
    EXPECT_EQ(st.elim.CuttingEdgeProcess(&st.handle, nullptr, 3840, true, 384), nullptr);
    ProcessHandle noBuffer = st.handle;
    noBuffer.buffer = nullptr;
    EXPECT_EQ(st.elim.CuttingEdgeProcess(&noBuffer, block.s.data(), 3840, true, 384), nullptr);
    ProcessHandle noCache = st.handle;
    noCache.cache = nullptr;
    EXPECT_EQ(st.elim.CuttingEdgeProcess(&noCache, block.s.data(), 3840, true, 384), nullptr);
    EXPECT_EQ(log.Count("Pointer is null", kTagPop, ANDROID_LOG_WARN), 4) << log.Dump();
}

TEST(PopElimBlockTest, DelaysTheStreamByTheCacheAcrossBlocks) {
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    ASSERT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes), 0);
    const Stereo a = Noise(kFrames, 1), b = Noise(kFrames, 2), c = Noise(kFrames, 3);

    // Disabled after a clear: the leading zeros of the cache would make the noise an onset.
    int32_t* out = st.Process(a, false);
    ASSERT_EQ(out, st.buffer);
    EXPECT_EQ(Bytes(out, 0, kPopCacheBytes), kZeroCache);
    EXPECT_EQ(Bytes(out, kPopCacheBytes, kBody), Bytes(a.s.data(), 0, kBody));

    out = st.Process(b);
    ASSERT_EQ(out, st.buffer);
    EXPECT_EQ(Bytes(out, 0, kPopCacheBytes), Bytes(a.s.data(), kBody, kPopCacheBytes));
    EXPECT_EQ(Bytes(out, kPopCacheBytes, kBody), Bytes(b.s.data(), 0, kBody));

    ASSERT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes), 0);
    out = st.Process(c, false);
    EXPECT_EQ(Bytes(out, 0, kPopCacheBytes), kZeroCache);
    EXPECT_EQ(Bytes(out, kPopCacheBytes, kBody), Bytes(c.s.data(), 0, kBody));
}

TEST(PopElimBlockTest, DisabledBlocksAreOnlyDelayedButEdgesStillLogged) {
    // Silence, then a hard onset at input frame 100: frame 148 of the delayed block.
    const Stereo onset = Stereo(kFrames).Fill(0, 100, kFrames, 20000).Fill(1, 100, kFrames, 20000);
    for (bool enable : {false, true}) {
        ClassStream st;
        ASSERT_NE(st.Init(), nullptr);
        LogCapture log;
        int32_t* out = st.Process(onset, enable);
        ASSERT_NE(out, nullptr);
        EXPECT_TRUE(log.Has("raising edge fade in, pos = 148, value = 20000, channel = 0"));
        EXPECT_TRUE(log.Has("raising edge fade in, pos = 148, value = 20000, channel = 1"));
        const bool delayedOnly =
                Bytes(out, kPopCacheBytes, kBody) == Bytes(onset.s.data(), 0, kBody);
        EXPECT_EQ(delayedOnly, !enable);
        EXPECT_EQ(st.Sample(149, 1), enable ? Lv(20000) / 332 : Lv(20000));
    }
}

TEST(PopElimBlockTest, RateChangeClearsTheGivenLengthAndResizesTheCache) {
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    memset(st.cache, 0x5A, sizeof(st.cache));
    st.handle.sampleRate = 44100;
    const Stereo block = Noise(kFrames, 4);
    LogCapture log;
    int32_t* out = st.elim.CuttingEdgeProcess(&st.handle, block.s.data(), 3840, false, 100);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(log.Has("Sample rate 44100 -> 48000", kTagPop, ANDROID_LOG_INFO));
    EXPECT_TRUE(log.Has("Buffer size 3840, cache size 384", kTagPop, ANDROID_LOG_INFO));
    EXPECT_EQ(st.handle.sampleRate, 48000u);
    EXPECT_EQ(Bytes(out, 0, 100), std::vector<uint8_t>(100, 0));
    EXPECT_EQ(Bytes(out, 100, kPopCacheBytes - 100), std::vector<uint8_t>(284, 0x5A));
    log.Clear();
    ASSERT_NE(st.Process(block), nullptr);
    EXPECT_EQ(log.CountContaining("Sample rate"), 0);
}

}  // namespace
