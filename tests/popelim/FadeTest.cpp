// Exact fade envelopes: 64-bit products, division truncating toward zero.
#include <gtest/gtest.h>

#include <vector>

#include "tests/popelim/PopElimTestUtil.h"

namespace {

constexpr int32_t kNegative = -1000000007;
constexpr int32_t kPositive = (1 << 30) + 1;

struct FadeTest : ::testing::Test {
    ClassStream st;
    void SetUp() override {
        ASSERT_NE(st.Init(), nullptr);
        for (unsigned f = 0; f < kFrames; ++f) {
            st.buffer[f * 2] = kPositive;
            st.buffer[f * 2 + 1] = 7;
        }
    }
    void ExpectOtherChannelUntouched() {
        for (unsigned f = 0; f < kFrames; ++f) {
            ASSERT_EQ(st.Sample(f, 1), 7) << f;
        }
    }
};

TEST_F(FadeTest, FadeInRisesFromZeroToTheBlockEnd) {
    for (unsigned f = 0; f < kFrames; ++f) {
        st.buffer[f * 2] = kNegative;
    }
    st.elim.FadeIn(&st.handle, kPopBlockBytes, 100, 0);
    EXPECT_EQ(st.Sample(99, 0), kNegative);
    EXPECT_EQ(st.Sample(100, 0), 0);
    EXPECT_EQ(st.Sample(101, 0), -2631578);  // truncated, not floored
    EXPECT_EQ(st.Sample(102, 0), -5263157);
    EXPECT_EQ(st.Sample(479, 0), -997368428);
    ExpectOtherChannelUntouched();
}

TEST_F(FadeTest, FadeOutIsAVWithItsBottomAtTheEdge) {
    st.elim.FadeOut(&st.handle, kPopBlockBytes, 200, 0);
    EXPECT_EQ(st.Sample(0, 0), kPositive);
    EXPECT_EQ(st.Sample(1, 0), 1068373116);
    EXPECT_EQ(st.Sample(199, 0), 5368710);
    EXPECT_EQ(st.Sample(200, 0), 0);
    EXPECT_EQ(st.Sample(201, 0), 3834792);
    EXPECT_EQ(st.Sample(479, 0), 1069907032);  // would overflow with 32-bit products
    for (unsigned f = 1; f < kFrames; ++f) {
        if (f <= 200) {
            ASSERT_LT(st.Sample(f, 0), st.Sample(f - 1, 0)) << f;
        } else {
            ASSERT_GT(st.Sample(f, 0), st.Sample(f - 1, 0)) << f;
        }
    }
    ExpectOtherChannelUntouched();
}

TEST_F(FadeTest, FadeEndComparesFramesLeftWithTheStoredByteCount) {
    // 380 frames left exceed a stored size of 100 (bytes): the ramp spans 100 frames.
    st.handle.curBufferSize = 100;
    st.elim.FadeIn(&st.handle, kPopBlockBytes, 100, 0);
    EXPECT_EQ(st.Sample(101, 0), 10737418);
    EXPECT_EQ(st.Sample(199, 0), 1063004406);
    EXPECT_EQ(st.Sample(200, 0), kPositive);
    EXPECT_EQ(st.Sample(479, 0), kPositive);
}

TEST_F(FadeTest, FadeStartingPastTheBlockStaysInsideTheBuffer) {
    // A buffer of exactly the handle's size, so that a write past it is caught by the sanitizer.
    std::vector<int32_t> buffer(kFrames * 2, kPositive);
    uint8_t cache[kPopCacheBytes] = {};
    ProcessConfig config = StereoConfig();
    ProcessHandle handle{};
    ASSERT_NE(st.elim.CuttingEdgeFadeinoutInit(&config, &handle, buffer.data(), cache), nullptr);
    // A 192-frame block and a start at frame 300: the unsigned frames-left wraps, so the ramp
    // is 3840 frames long and runs to the buffer's end with that slope.
    st.elim.FadeIn(&handle, 1536, 300, 0);
    EXPECT_EQ(buffer[299 * 2], kPositive);
    EXPECT_EQ(buffer[300 * 2], 0);
    EXPECT_EQ(buffer[301 * 2], 279620);
    EXPECT_EQ(buffer[479 * 2], 50052027);
    st.elim.FadeOut(&handle, 1536, 400, 1);
    EXPECT_EQ(buffer[400 * 2 + 1], 0);
    EXPECT_EQ(buffer[479 * 2 + 1], static_cast<int64_t>(79) * kPositive / 3840);
}

}  // namespace
