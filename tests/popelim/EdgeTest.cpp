// Raising- and falling-edge searches on a hand-filled work buffer, and the fast stereo path
// against the channel-by-channel one (the only such check on builds without SSE2).
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "base/Log.h"
#include "popelim/EdgeSearch.h"
#include "popelim/PopElimBlock.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

struct EdgeTest : ::testing::Test {
    ClassStream st;
    LogCapture log;
    void SetUp() override { ASSERT_NE(st.Init(), nullptr); }
    // The positions found in channel 0 of each block, each followed by a space (0: none).
    std::string Find(bool raising, const std::vector<Stereo>& blocks) {
        std::string out;
        for (const Stereo& b : blocks) {
            st.Load(b);
            out += std::to_string(raising ? st.elim.FindRaisingEdge(&st.handle, 0)
                                          : st.elim.FindFallingEdge(&st.handle, 0)) +
                   " ";
        }
        return out;
    }
};

// Level 1000, then `quietFrames` frames with the sample `quiet` that end at frame 120, then
// level `jump` from frame 120 on; all in channel 0.
Stereo Onset(unsigned quietFrames, int32_t quiet, int jump) {
    return Stereo(kFrames, Lv(1000))
            .Set(0, 120 - quietFrames, 120, quiet)
            .Fill(0, 120, kFrames, jump);
}

// A gentle candidate of level 60 at frame 120 after quiet frames, held until frame `at`.
Stereo Candidate(unsigned at, int level) {
    return Onset(20, 0, 60).Fill(0, at, kFrames, level);
}

TEST_F(EdgeTest, RaisingEdge) {
    // Ten quiet frames (|level| <= 9) are needed; a level truncates toward zero (Lv(-9) - 1 is
    // -9, quiet); frame 0 only ever serves as the previous frame, so it does not count as quiet.
    EXPECT_EQ(Find(true, {Onset(9, Lv(2), 300), Onset(10, Lv(2), 300), Onset(10, Lv(-9) - 1, 300),
                          Onset(10, Lv(-10), 300), Stereo(kFrames).Fill(0, 10, kFrames, 300),
                          Stereo(kFrames).Fill(0, 11, kFrames, 300)}),
              "0 120 120 0 0 11 ");
    // The onset must move by more than 100.
    EXPECT_EQ(Find(true, {Onset(20, 0, 100), Onset(20, 0, 101), Onset(20, Lv(5), -96),
                          Onset(20, Lv(-5), -96), Onset(20, Lv(5), -95), Onset(20, Lv(-9), 92)}),
              "0 120 120 120 0 120 ");
    // A gentle candidate is confirmed by a rise to twice its peak within 13 frames (the 14th is
    // still judged), and only when more than five times the frame before; levels below twice
    // the peak raise the peak and keep waiting, exactly twice is judged.
    EXPECT_EQ(Find(true, {Candidate(121, 1000), Candidate(133, 1000), Candidate(134, 1000),
                          Candidate(135, 1000), Candidate(125, 300), Candidate(125, 301),
                          Candidate(123, 1100).Fill(0, 121, 122, 110).Fill(0, 122, 123, 200),
                          Candidate(122, 120).Fill(0, 121, 122, 10)}),
              "120 120 120 0 0 120 120 120 ");
    // The line gives the level of the frame that decided, not the candidate's.
    EXPECT_EQ(log.Count("raising edge fade in, pos = 120, value = 1000, channel = 0"), 3);
}

// Level `high` with frames [from, to) of channel 0 at `low`.
Stereo Drop(unsigned from, unsigned to, int low = 100, int high = 20000) {
    return Stereo(kFrames, Lv(high)).Fill(0, from, to, low);
}

TEST_F(EdgeTest, FallingEdge) {
    // 48 low frames, or 11 to 47 that reach the block's end; a recovery mid-block is no edge.
    // Judged against the level before the drop: up to a tenth of it after the drop, and the drop
    // itself 101 or more.
    EXPECT_EQ(Find(false,
                   {Drop(200, 248), Drop(200, 247), Drop(460, kFrames), Drop(469, kFrames),
                    Drop(470, kFrames), Drop(200, 248, 100, -20000),
                    Drop(200, 248).Fill(0, 201, 248, 1999), Drop(200, 248).Fill(0, 201, 248, 2000),
                    Drop(200, 248, 10, 111), Drop(200, 248, 10, 110)}),
              "200 0 460 469 0 200 200 0 200 0 ");
    // The line gives the level before the drop.
    EXPECT_TRUE(log.Has("falling edge fade out, pos = 200, value = -20000, channel = 0", kTagPop,
                        ANDROID_LOG_INFO))
            << log.Dump();
}

// The stereo path of a block (both channels searched in one pass, shared edges faded together)
// leaves the same samples and logs the same lines as the channel-by-channel path.
TEST(PopElimFastPathTest, StereoPathMatchesChannelByChannelPath) {
    static const int kLevels[] = {0, 1, 9, 10, 11, 99, 100, 101, 110, 111, 200, 1999, 2000, 20000};
    static const int32_t kExtremes[] = {INT32_MIN, INT32_MAX};
    std::mt19937 rng(20240611);
    ProcessHandle handle{2, 4, kPopBlockBytes, 0, 3, 48000, nullptr, kPopBlockBytes, nullptr, 0};
    int found[2] = {0, 0};  // raising, falling lines
    for (int round = 0; round < 3000; ++round) {
        // Runs of levels on the searches' thresholds with random signs and low bits, and now and
        // then INT32_MIN or INT32_MAX (both once overflowed the scans). Every third block has
        // the same levels in both channels, so that their edges coincide.
        Stereo b(kFrames);
        const bool shared = round % 3 == 0;
        for (unsigned i = 0, run = 0, level = 0; i < kFrames * 2; ++i, --run) {
            if (i == kFrames || run == 0) {  // each channel has runs of its own
                run = 1 + rng() % 60;
                level = kLevels[rng() % 14];
            }
            const int32_t s = Lv(level) + static_cast<int32_t>(rng() & 0xFFFF);
            const unsigned pick = rng() % 500;
            const unsigned f = i % kFrames;
            const unsigned c = i / kFrames;
            b.s[f * 2 + c] = pick < 2 ? kExtremes[pick] : (pick % 4 ? s : -s);
            if (shared && c == 0) {
                b.s[f * 2 + 1] = b.s[f * 2];
            }
        }
        const unsigned frames = round % 7 == 0 ? 1 + rng() % kFrames : kFrames;
        handle.curBufferSize = round % 5 == 0 ? rng() % 4000 : kPopBlockBytes;
        const uint32_t bufferSamples = round % 11 == 0 ? 1 + rng() % (kFrames * 2) : kFrames * 2;
        Stereo plain = b;
        LogCapture log;
        popelim::SearchAndFadeChannels(plain.s.data(), 2, handle, kPopBlockBytes, true, frames,
                                       bufferSamples);
        const std::string plainLines = log.Dump();
        log.Clear();
        popelim::SearchAndFadeStereo(b.s.data(), handle, kPopBlockBytes, true, frames,
                                     bufferSamples);
        ASSERT_EQ(log.Dump(), plainLines) << round;
        ASSERT_EQ(b.s, plain.s) << round;
        found[0] += log.CountContaining("raising edge");
        found[1] += log.CountContaining("falling edge");
    }
    // The material must actually exercise both searches and both fades.
    EXPECT_GT(std::min(found[0], found[1]), 2500);
}

}  // namespace
