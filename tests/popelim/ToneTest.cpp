// A loud tone that starts hard out of silence and stops hard into silence.
#include <gtest/gtest.h>

#include <math.h>

#include <algorithm>
#include <vector>

#include "tests/popelim/PopElimTestUtil.h"

namespace {

constexpr unsigned kBlocks = 6;
constexpr unsigned kStart = 680;  // frame 200 of block 1
constexpr unsigned kStop = 2120;  // frame 200 of block 4, 30 periods later

// 1 kHz at half of full scale, starting and stopping at its peak; the right channel inverted.
std::vector<int32_t> ToneBurst() {
    std::vector<int32_t> s(kBlocks * kFrames * 2, 0);
    for (unsigned f = kStart; f < kStop; ++f) {
        const double x = (1 << 30) * cos(2 * M_PI * 1000.0 * (f - kStart) / 48000.0);
        s[f * 2] = static_cast<int32_t>(lround(x));
        s[f * 2 + 1] = -s[f * 2];
    }
    return s;
}

// Largest step between neighbouring frames of either channel in frames [center - 24, center + 24].
int64_t LargestStep(const std::vector<int32_t>& s, unsigned center) {
    int64_t largest = 0;
    for (unsigned f = center - 24; f < center + 24; ++f) {
        for (unsigned c = 0; c < 2; ++c) {
            const int64_t step = int64_t{s[(f + 1) * 2 + c]} - s[f * 2 + c];
            largest = std::max(largest, step < 0 ? -step : step);
        }
    }
    return largest;
}

TEST(PopElimToneTest, HardEdgesAreSoftenedAndTheSteadyPartPassesDelayed) {
    const std::vector<int32_t> in = ToneBurst();
    std::vector<int32_t> out;
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    ASSERT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes), 0);
    for (unsigned b = 0; b < kBlocks; ++b) {
        const int32_t* block = &in[b * kFrames * 2];
        const int32_t* processed =
                st.elim.CuttingEdgeProcess(&st.handle, block, kPopBlockBytes, true, 384);
        ASSERT_NE(processed, nullptr);
        out.insert(out.end(), processed, processed + kFrames * 2);
    }
    for (unsigned edge : {kStart, kStop}) {
        const int64_t before = LargestStep(in, edge);
        const int64_t after = LargestStep(out, edge + kCacheFrames);
        EXPECT_GT(before, int64_t{1} << 29) << edge;
        EXPECT_LT(after * 10, before) << edge << ": " << after << " vs " << before;
    }
    // Blocks 2 and 3 hold only the steady tone: exactly the input, 48 frames late.
    for (unsigned f = 2 * kFrames; f < 4 * kFrames; ++f) {
        for (unsigned c = 0; c < 2; ++c) {
            ASSERT_EQ(out[f * 2 + c], in[(f - kCacheFrames) * 2 + c]) << f;
        }
    }
}

}  // namespace
