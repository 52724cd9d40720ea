// A FallingPopElim stream: initialisation checks and messages, clearing the cache, refused
// blocks, the delay line and the enable switch.
#include <vector>

#include "base/Log.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(PopElimInitTest, RefusesBadConfigsWithTheFirstFailingCheck) {
    const char* size = "Process buffer size is insufficient";
    const struct {
        ProcessConfig config;
        const char* message;
    } cases[] = {{{2, 4, 0, 0, 3}, size},
                 {{2, 4, 3841, 0, 3}, size},
                 {{3, 2, 0, 0, 3}, size},
                 {{0, 4, 3840, 0, 3}, "Invalid channel count"},
                 {{1, 8, 1, 0, 3}, "Invalid sampling bit depth"},
                 {{2, 2, 3840, 0, 3}, "Invalid sampling bit depth"}};
    for (const auto& c : cases) {
        ClassStream st;
        LogCapture log;
        EXPECT_EQ(st.Init(c.config), nullptr);
        EXPECT_EQ(log.Count(c.message, kTagPop, ANDROID_LOG_ERROR), 1) << log.Dump();
    }
    ClassStream st;
    EXPECT_EQ(st.elim.CuttingEdgeFadeinoutInit(nullptr, &st.handle, st.buffer, st.cache), nullptr);
}

TEST(PopElimInitTest, InitRoundsTheCacheDownToWholeFramesAndClearZeroesTheGivenLength) {
    ClassStream st;
    LogCapture log;
    ASSERT_EQ(st.Init({2, 4, 1000, -1, 1}), &st.handle);
    EXPECT_TRUE(
            log.Has("CuttingEdgeFadeinoutInit succeed, cache size = 96, buffer size = 1000, "
                    "OutputType = -1, format = 1",
                    kTagPop, ANDROID_LOG_INFO));
    memset(st.cache, 0x5A, sizeof(st.cache));
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, 100), 0);
    EXPECT_EQ(Bytes(st.cache, 99, 2), (std::vector<uint8_t>{0, 0x5A}));
    // No cache is ever longer than 384 bytes: a longer clear is refused.
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes + 1), -1001);
    st.handle.cache = nullptr;
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, 384), -1000);
    EXPECT_EQ(log.Count("ClearCachedBuffer:Invalid input pointer", kTagPop, ANDROID_LOG_ERROR), 1);
}

constexpr unsigned kBody = kPopBlockBytes - kPopCacheBytes;

TEST(PopElimBlockTest, RefusesBadSizesFormatsAndChannelCountsSilently) {
    const std::vector<int32_t> input(2 * kPopBlockBytes / 4, Lv(5000));
    // Initialised, then refused without a message and with the (zeroed) cache untouched.
    auto refused = [&input](ProcessConfig config, unsigned size) {
        ClassStream st;
        const bool initialised = st.Init(config) != nullptr;
        LogCapture log;
        return initialised &&
               st.elim.CuttingEdgeProcess(&st.handle, input.data(), size, true, 384) == nullptr &&
               Bytes(st.cache, 0, kPopCacheBytes) == std::vector<uint8_t>(kPopCacheBytes, 0) &&
               log.Lines().empty();
    };
    for (unsigned size : {0u, 1536u, 3839u, 3841u, 7680u}) {
        EXPECT_TRUE(refused({2, 4, 3840, 0, 3}, size)) << size;
    }
    EXPECT_TRUE(refused({1, 4, 3840, 0, 3}, 3840));  // mono initialises but is never processed
    EXPECT_TRUE(refused({2, 4, 3840, 0, 1}, 3840));
    EXPECT_TRUE(refused({2, 4, 1536, 0, 3}, 1536));  // not in the rate table
    EXPECT_TRUE(refused({2, 4, 1536, 0, 3}, 3840));
}

TEST(PopElimBlockTest, DelaysTheStreamAndWhenDisabledOnlyDelaysButStillLogsEdges) {
    // After a clear, silence, then a hard onset at input frame 100: frame 148 of the delayed
    // block. Its fade ends with the block, so the next blocks, which hold the level, pass
    // exactly, 48 frames late, in both modes.
    Stereo onset = Stereo(kFrames).Fill(0, 100, kFrames, 20000).Fill(1, 100, kFrames, 20000);
    Stereo steady(kFrames);  // levels about 20000 that never step by 100: no edges
    for (unsigned f = 0; f < kFrames; ++f) {
        steady.Fill(0, f, f + 1, 20000 + f % 50).Fill(1, f, f + 1, 20000 - f % 50);
    }
    for (bool enable : {false, true}) {
        ClassStream st;
        ASSERT_NE(st.Init(), nullptr);
        memset(st.cache, 0x5A, sizeof(st.cache));
        ASSERT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes), 0);
        LogCapture log;
        const int32_t* out =
                st.elim.CuttingEdgeProcess(&st.handle, onset.s.data(), 3840, enable, 384);
        ASSERT_EQ(out, st.buffer);
        EXPECT_TRUE(log.Has("raising edge fade in, pos = 148, value = 20000, channel = 0"));
        EXPECT_TRUE(log.Has("raising edge fade in, pos = 148, value = 20000, channel = 1"));
        EXPECT_EQ(Bytes(out, 0, kPopCacheBytes), std::vector<uint8_t>(kPopCacheBytes, 0));
        EXPECT_EQ(Bytes(out, kPopCacheBytes, kBody) == Bytes(onset.s.data(), 0, kBody), !enable);
        const Stereo faded(1, enable ? Lv(20000) / 332 : Lv(20000));  // both channels
        EXPECT_EQ(Bytes(out, 149 * 8, 8), Bytes(faded.s.data(), 0, 8));
        for (const Stereo* before : {&onset, &steady}) {
            out = st.elim.CuttingEdgeProcess(&st.handle, steady.s.data(), 3840, enable, 384);
            EXPECT_EQ(Bytes(out, 0, kPopCacheBytes),
                      Bytes(before->s.data(), kBody, kPopCacheBytes));
            EXPECT_EQ(Bytes(out, kPopCacheBytes, kBody), Bytes(steady.s.data(), 0, kBody));
        }
    }
}

}  // namespace
