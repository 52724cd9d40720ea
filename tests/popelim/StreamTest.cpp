// A FallingPopElim stream: initialisation checks and messages, clearing the cache, refused
// blocks, the delay line and the enable switch, and a real tone with hard edges.
#include <math.h>

#include <algorithm>
#include <cstdlib>
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
    // block. (The tone below is delayed across blocks.)
    const Stereo onset = Stereo(kFrames).Fill(0, 100, kFrames, 20000).Fill(1, 100, kFrames, 20000);
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
        EXPECT_EQ(st.buffer[149 * 2 + 1], enable ? Lv(20000) / 332 : Lv(20000));
    }
}

TEST(PopElimBlockTest, ToneWithHardEdgesIsSoftenedThereAndPassesDelayedBetween) {
    // 1 kHz at half of full scale from frame 200 of block 1 to frame 200 of block 4, starting
    // and stopping at its peak; the right channel inverted.
    constexpr unsigned kStart = kFrames + 200, kStop = 4 * kFrames + 200;
    std::vector<int32_t> in(6 * kFrames * 2, 0), out;
    for (unsigned f = kStart; f < kStop; ++f) {
        in[f * 2] = static_cast<int32_t>(lround((1 << 30) * cos(2 * M_PI * (f - kStart) / 48)));
        in[f * 2 + 1] = -in[f * 2];
    }
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    for (unsigned b = 0; b < 6; ++b) {
        const int32_t* block = st.elim.CuttingEdgeProcess(&st.handle, &in[b * kFrames * 2],
                                                          kPopBlockBytes, true, 384);
        ASSERT_NE(block, nullptr);
        out.insert(out.end(), block, block + kFrames * 2);
    }
    for (unsigned edge : {kStart, kStop}) {
        // The largest step between neighbouring frames of a channel within 24 frames of the edge.
        int64_t before = 0, after = 0;
        for (unsigned i = (edge - 24) * 2, j = i + kCacheFrames * 2; i < (edge + 24) * 2;
             ++i, ++j) {
            before = std::max(before, std::abs(int64_t{in[i + 2]} - in[i]));
            after = std::max(after, std::abs(int64_t{out[j + 2]} - out[j]));
        }
        EXPECT_GT(before, int64_t{1} << 29) << edge;
        EXPECT_LT(after * 10, before) << edge << ": " << after << " vs " << before;
    }
    // Blocks 2 and 3 hold only the steady tone: exactly the input, 48 frames late.
    EXPECT_TRUE(std::equal(&out[2 * kFrames * 2], &out[4 * kFrames * 2],
                           &in[(2 * kFrames - kCacheFrames) * 2]));
}

}  // namespace
