// Raising- and falling-edge searches on a hand-filled work buffer.
#include <gtest/gtest.h>

#include "effect/LogTags.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

struct SearchTest : ::testing::Test {
    ClassStream st;
    LogCapture log;
    void SetUp() override { ASSERT_NE(st.Init(), nullptr); }
    unsigned Raising(const Stereo& b, unsigned channel = 0) {
        st.Load(b);
        return st.elim.FindRaisingEdge(&st.handle, channel);
    }
    unsigned Falling(const Stereo& b, unsigned channel = 0) {
        st.Load(b);
        return st.elim.FindFallingEdge(&st.handle, channel);
    }
};

TEST_F(SearchTest, RaisingEdgeNeedsTenQuietFramesBeforeTheJump) {
    for (unsigned quiet : {9u, 10u}) {
        Stereo b(kFrames, Lv(1000));
        b.Fill(1, 100, 100 + quiet, 2).Fill(1, 100 + quiet, kFrames, 300);
        EXPECT_EQ(Raising(b, 1), quiet == 10 ? 110u : 0u) << quiet;
        EXPECT_EQ(Raising(b, 0), 0u);
    }
    EXPECT_EQ(log.Count("raising edge fade in, pos = 110, value = 300, channel = 1", kTagPop,
                        ANDROID_LOG_INFO),
              1)
            << log.Dump();
    // Frame 0 only ever serves as the previous frame, so it does not count as quiet.
    EXPECT_EQ(Raising(Stereo(kFrames).Fill(0, 10, kFrames, 300)), 0u);
    EXPECT_EQ(Raising(Stereo(kFrames).Fill(0, 11, kFrames, 300)), 11u);
}

TEST_F(SearchTest, LevelsTruncateTowardZero) {
    // -9 * 65536 - 1 is level -9, quiet; flooring would make it -10.
    Stereo b(kFrames, Lv(1000));
    b.Fill(0, 110, kFrames, 300);
    for (unsigned f = 100; f < 110; ++f) {
        b.at(f, 0) = Lv(-9) - 1;
    }
    EXPECT_EQ(Raising(b), 110u);
}

TEST_F(SearchTest, OnsetNeedsAMoveOfMoreThanOneHundred) {
    struct Case {
        int quiet, jump;
        unsigned expected;
    };
    for (const Case& c : {Case{0, 100, 0}, Case{0, 101, 120}, Case{5, -96, 120}, Case{-5, -96, 120},
                          Case{5, -95, 0}, Case{-9, 92, 120}}) {
        Stereo b(kFrames, Lv(1000));
        b.Fill(0, 100, 120, c.quiet).Fill(0, 120, kFrames, c.jump);
        EXPECT_EQ(Raising(b), c.expected) << c.quiet << " -> " << c.jump;
    }
}

// Quiet up to frame 99, a gentle candidate of level 60 at frame 100, held until `jumpAt`.
Stereo CandidateThenJump(unsigned jumpAt, int jumpLevel) {
    Stereo b(kFrames, Lv(1000));
    return b.Fill(0, 80, 100, 0).Fill(0, 100, jumpAt, 60).Fill(0, jumpAt, kFrames, jumpLevel);
}

TEST_F(SearchTest, CandidateIsConfirmedByASteepRiseWithinThirteenFrames) {
    EXPECT_EQ(Raising(CandidateThenJump(101, 1000)), 100u);
    EXPECT_EQ(Raising(CandidateThenJump(113, 1000)), 100u);
    // The countdown has run out on the 14th frame, whose own rise is still judged.
    EXPECT_EQ(Raising(CandidateThenJump(114, 1000)), 100u);
    EXPECT_EQ(Raising(CandidateThenJump(115, 1000)), 0u);
    EXPECT_EQ(log.Count("raising edge fade in, pos = 100, value = 1000, channel = 0"), 3);
    // The rise must also be more than five times the frame before it.
    EXPECT_EQ(Raising(CandidateThenJump(105, 300)), 0u);
    EXPECT_EQ(Raising(CandidateThenJump(105, 301)), 100u);
    // Levels below twice the running peak raise the peak and keep waiting.
    Stereo b = CandidateThenJump(103, 1100);
    b.Fill(0, 101, 102, 110).Fill(0, 102, 103, 200);
    EXPECT_EQ(Raising(b), 100u);
}

// Level 20000 with frames [from, to) of channel 0 at `low`.
Stereo Drop(unsigned from, unsigned to, int low = 100, int high = 20000) {
    return Stereo(kFrames, Lv(high)).Fill(0, from, to, low);
}

TEST_F(SearchTest, FallingEdgeNeedsFortyEightLowFramesOrTheBlockEnd) {
    EXPECT_EQ(Falling(Drop(200, 248)), 200u);
    EXPECT_EQ(Falling(Drop(200, 247)), 0u);
    EXPECT_EQ(Falling(Drop(460, kFrames)), 460u);
    EXPECT_EQ(Falling(Drop(469, kFrames)), 469u);
    EXPECT_EQ(Falling(Drop(470, kFrames)), 0u);
    EXPECT_EQ(Falling(Drop(200, 248), 1), 0u);
    EXPECT_EQ(log.Count("falling edge fade out, pos = 200, value = 20000, channel = 0", kTagPop,
                        ANDROID_LOG_INFO),
              1)
            << log.Dump();
    EXPECT_EQ(Falling(Drop(200, 248, 100, -20000)), 200u);
    EXPECT_TRUE(log.Has("falling edge fade out, pos = 200, value = -20000, channel = 0"));
}

TEST_F(SearchTest, FallingEdgeIsJudgedAgainstTheLevelBeforeTheDrop) {
    // After the drop the signal may climb up to a tenth of the level before it.
    EXPECT_EQ(Falling(Drop(200, 248).Fill(0, 201, 248, 1999)), 200u);
    EXPECT_EQ(Falling(Drop(200, 248).Fill(0, 201, 248, 2000)), 0u);
    // The drop itself must be 101 or more.
    EXPECT_EQ(Falling(Drop(200, 248, 10, 111)), 200u);
    EXPECT_EQ(Falling(Drop(200, 248, 10, 110)), 0u);
}

TEST_F(SearchTest, SearchesSpanTheStoredBlockSize) {
    st.handle.curBufferSize = 200 * 8;
    // Frame 199 is now the last one: 15 low frames that reach it are enough.
    EXPECT_EQ(Falling(Drop(185, 200)), 185u);
    EXPECT_EQ(Falling(Drop(200, 248)), 0u);
    st.handle.curBufferSize = 8;
    EXPECT_EQ(Raising(Stereo(kFrames).Fill(0, 11, kFrames, 300)), 0u);
}

TEST_F(SearchTest, SampleAccessRefusesOtherFormats) {
    st.handle.format = 1;
    st.buffer[3] = 77;
    EXPECT_EQ(st.elim.GetSampleValue(&st.handle, 3), 0);
    st.elim.SetSampleValue(&st.handle, 3, 5);
    EXPECT_EQ(st.buffer[3], 77);
    EXPECT_EQ(log.Count("Unsupported audio format", kTagPop, ANDROID_LOG_WARN), 2);
    st.handle.format = 3;
    EXPECT_EQ(st.elim.GetSampleValue(&st.handle, 3), 77);
}

}  // namespace
