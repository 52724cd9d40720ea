// The left/right swap on the stereo input: a 9600-frame cross-fade each way, the swap inhibit,
// and the CHANNEL_SWAPPED report. (The four-channel reversal is a case of the stream test.)
#include <utility>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

namespace {

constexpr int kFade = 9600;

std::string Query(PipelineHost& host) {
    return host.Effect()->KivParamsGet(android::String8("CHANNEL_SWAPPED")).c_str();
}

TEST(PipelineSwapTest, StereoSwapCrossFadesToExchangedChannelsAndBack) {
    PipelineHost host;
    const int start = 960;             // id 5 = 1 after two blocks
    const int back = start + 12000;    // id 5 = 0 once the swap is complete
    const int inhibit = back + 12000;  // id 37 = 1, then id 5 = 1 again
    const std::vector<int32_t> in = As16(Noise32(inhibit + 12000, 2, 5));
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
    run(inhibit, inhibit + 12000);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");

    // 480 output frames from the one that carries input frame `t` (528 frames later).
    const std::vector<int32_t> normal = As16(ExpectedStereo(in, true));
    const std::vector<int32_t> swapped = As16(ExpectedStereo(exchanged, true));
    auto at = [&](const std::vector<int32_t>& v, int t) { return FrameSlice(v, 2, t + 528, 480); };
    ASSERT_EQ(out.size(), in.size());
    EXPECT_EQ(at(out, start - 480), at(normal, start - 480));
    // Half way the channels are a mix: neither in place nor exchanged.
    EXPECT_NE(at(out, start + kFade / 2), at(normal, start + kFade / 2));
    EXPECT_NE(at(out, start + kFade / 2), at(swapped, start + kFade / 2));
    // The fade takes 9600 frames each way.
    EXPECT_EQ(at(out, start + kFade), at(swapped, start + kFade));
    EXPECT_NE(at(out, back + kFade - 480), at(normal, back + kFade - 480));
    EXPECT_EQ(at(out, back + kFade), at(normal, back + kFade));
    // With the swap inhibited the channels stay in their places.
    EXPECT_EQ(at(out, inhibit + 10800), at(normal, inhibit + 10800));
}

}  // namespace
