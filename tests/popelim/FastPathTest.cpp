// The shortcuts of the processing path give exactly the plain results: the four-frame stereo
// scans against the frame-by-frame searches, the ramp divider against 64-bit division.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "popelim/EdgeSearch.h"
#include "popelim/RampDivider.h"
#include "tests/popelim/PopElimTestUtil.h"

namespace {

// Runs of levels that sit on the searches' thresholds, with random signs and low bits.
Stereo Tricky(std::mt19937& rng) {
    static const int kLevels[] = {0, 1, 9, 10, 11, 99, 100, 101, 110, 111, 200, 1999, 2000, 20000};
    Stereo b(kFrames);
    for (unsigned c = 0; c < 2; ++c) {
        unsigned f = 0;
        while (f < kFrames) {
            const unsigned run = 1 + rng() % 60;
            const int level = kLevels[rng() % (sizeof(kLevels) / sizeof(kLevels[0]))];
            for (unsigned k = f; k < f + run && k < kFrames; ++k) {
                const int32_t low = static_cast<int32_t>(rng() & 0xFFFF);
                int32_t s = Lv(level) + low;
                if (rng() % 4 == 0) {
                    s = -s;
                }
                const unsigned extreme = rng() % 500;
                b.at(k, c) = extreme == 0 ? INT32_MIN : extreme == 1 ? INT32_MAX : s;
            }
            f += run;
        }
    }
    return b;
}

TEST(PopElimFastPathTest, StereoScansFindWhatFrameByFrameSearchesFind) {
    std::mt19937 rng(20240611);
    int raising = 0, falling = 0;
    for (int round = 0; round < 3000; ++round) {
        Stereo b = Tricky(rng);
        const unsigned frames = round % 7 == 0 ? 1 + rng() % kFrames : kFrames;
        for (unsigned c = 0; c < 2; ++c) {
            const popelim::FixedStrideSamples<2> fast{b.s.data() + c};
            const popelim::ChannelSamples plain{b.s.data() + c, 2};
            const unsigned rise = popelim::FindRaisingEdgeIn(plain, frames, c);
            ASSERT_EQ(popelim::FindRaisingEdgeIn(fast, frames, c), rise) << round;
            const unsigned fall = popelim::FindFallingEdgeIn(plain, frames, c);
            ASSERT_EQ(popelim::FindFallingEdgeIn(fast, frames, c), fall) << round;
            raising += rise != 0;
            falling += fall != 0;
        }
    }
    // The material must actually exercise both searches.
    EXPECT_GT(raising, 300);
    EXPECT_GT(falling, 300);
}

TEST(PopElimFastPathTest, RampDividerTruncatesLikeSigned64BitDivision) {
    std::mt19937_64 rng(7);
    for (int64_t den : {int64_t{1}, int64_t{2}, int64_t{3}, int64_t{332}, int64_t{3840},
                        int64_t{1000003}, int64_t{0x7FFFFFFF}, int64_t{0xFFFFFFFF}}) {
        const popelim::RampDivider divider(den);
        const int64_t limit = den * (int64_t{1} << 31) - 1;
        std::vector<int64_t> nums = {0, 1, -1, limit, -limit, den, -den, den - 1, 1 - den};
        for (int i = 0; i < 20000; ++i) {
            const int64_t q =
                    static_cast<int64_t>(rng() % (uint64_t{1} << 31)) * (rng() % 2 ? 1 : -1);
            const int64_t near = q * den + static_cast<int64_t>(rng() % 3) - 1;
            nums.push_back(near > limit ? limit : near < -limit ? -limit : near);
            nums.push_back(static_cast<int64_t>(rng() % static_cast<uint64_t>(limit)) *
                           (rng() % 2 ? 1 : -1));
        }
        for (int64_t num : nums) {
            ASSERT_EQ(divider.Divide(num), num / den) << num << " / " << den;
        }
    }
}

}  // namespace
