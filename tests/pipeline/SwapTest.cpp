// The left/right swap on the stereo input: the CHANNEL_SWAPPED report, the fade back and the
// swap inhibit. (The fade's shape is a gating test, the four-channel reversal a stream test.)
#include <utility>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

namespace {

constexpr int kFade = 9600;

std::string Query(PipelineHost& host) {
    return host.Effect()->KivParamsGet(android::String8("CHANNEL_SWAPPED")).c_str();
}

TEST(PipelineSwapTest, SwapIsReportedOnceFadesBackAndCanBeInhibited) {
    PipelineHost host;
    const int start = 960;                // id 5 = 1 after two blocks
    const int back = start + 12000;       // id 5 = 0 once the swap is complete
    const int inhibit = back + 12000;     // id 37 = 1, then id 5 = 1 again
    const int release = inhibit + 12000;  // id 37 = 0
    const std::vector<int32_t> in = As16(Noise32(release + 1440, 2, 5));
    std::vector<int32_t> exchanged = in;
    for (size_t t = 0; t < in.size(); t += 2) {
        std::swap(exchanged[t], exchanged[t + 1]);
    }
    std::vector<int32_t> out;
    auto run = [&](int from, int to) {
        const std::vector<int32_t> got = host.Run16(FrameSlice(in, 2, from, to - from), 480, 2, 2);
        out.insert(out.end(), got.begin(), got.end());
    };
    run(0, start);
    host.Effect()->KivParamsSetInt(5, 1);
    run(start, start + kFade / 2);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // half way
    run(start + kFade / 2, back);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=true");
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // the read clears it
    host.Effect()->KivParamsSetInt(5, 0);
    run(back, inhibit);
    host.Effect()->KivParamsSetInt(37, 1);
    host.Effect()->KivParamsSetInt(5, 1);
    run(inhibit, release);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");
    host.Effect()->KivParamsSetInt(37, 0);
    run(release, release + 1440);

    // 480 output frames from the one that carries input frame `t` (528 frames later).
    const std::vector<int32_t> normal = As16(ExpectedStereo(in, true));
    const std::vector<int32_t> swapped = As16(ExpectedStereo(exchanged, true));
    auto at = [&](const std::vector<int32_t>& v, int t) { return FrameSlice(v, 2, t + 528, 480); };
    ASSERT_EQ(out.size(), in.size());
    EXPECT_EQ(at(out, start + kFade), at(swapped, start + kFade));
    // The way back takes 9600 frames too.
    EXPECT_NE(at(out, back + kFade - 480), at(normal, back + kFade - 480));
    EXPECT_EQ(at(out, back + kFade), at(normal, back + kFade));
    // With the swap inhibited the channels stay in their places.
    EXPECT_EQ(at(out, inhibit + 10800), at(normal, inhibit + 10800));
    // The fade kept time meanwhile: released, the channels are exchanged at once.
    EXPECT_EQ(at(out, release), at(swapped, release));
}

}  // namespace
