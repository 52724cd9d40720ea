// The left/right swap: a 9600-frame cross-fade on the stereo input, a channel reversal on the
// four-channel output, and the CHANNEL_SWAPPED report.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

namespace {

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;
constexpr int kFade = 9600;

std::vector<int32_t> As16(const std::vector<int32_t>& in) {
    return To32(FromInt32(in, kS16), kS16);
}

// The cross-fade as it acts on the input: frame t has the position `pos(t)`.
template <typename PosFn>
std::vector<int32_t> Faded(const std::vector<int32_t>& in, PosFn pos, bool swapWanted) {
    std::vector<int32_t> out = in;
    for (size_t t = 0; t < in.size() / 2; ++t) {
        const int64_t p = pos(static_cast<int>(t));
        const int64_t q = kFade - p;
        const int64_t l = in[2 * t], r = in[2 * t + 1];
        if (p == 0 && swapWanted) {
            out[2 * t] = static_cast<int32_t>(r);
            out[2 * t + 1] = static_cast<int32_t>(l);
        } else if (p > 0 && p < kFade) {
            out[2 * t] = static_cast<int32_t>(l * p / kFade + r * q / kFade);
            out[2 * t + 1] = static_cast<int32_t>(r * p / kFade + l * q / kFade);
        }
    }
    return out;
}

std::vector<int32_t> ThroughPipeline(const std::vector<int32_t>& in32) {
    return Delayed(StandinStereo(Delayed(in32, kPopDelayFrames, 2), true, 2), kFrame, 2);
}

std::string Query(PipelineHost& host) {
    return host.Effect()->KivParamsGet(android::String8("CHANNEL_SWAPPED")).c_str();
}

TEST(PipelineSwapTest, StereoSwapCrossFadesToExchangedChannelsAndBack) {
    PipelineHost host;
    const int start = 960;            // id 5 = 1 after two blocks
    const int back = start + 12000;   // id 5 = 0 once the swap is complete
    const int frames = back + 12000;  // and the fade back is complete too
    const std::vector<int32_t> in = As16(Noise32(frames, 2, 5));
    const std::vector<uint8_t> in16 = FromInt32(in, kS16);

    std::vector<int32_t> out;
    auto run = [&](int from, int to) {
        const std::vector<uint8_t> part(in16.begin() + from * 4, in16.begin() + to * 4);
        const std::vector<int32_t> got = To32(host.Run(part, 480, 2, kS16, 2), kS16);
        out.insert(out.end(), got.begin(), got.end());
    };
    run(0, start);
    host.Effect()->KivParamsSetInt(5, 1);
    run(start, start + 4800);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // half way
    run(start + 4800, back);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=true");
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // the read clears it
    host.Effect()->KivParamsSetInt(5, 0);
    run(back, frames);

    // Position per frame: 9600 before the request, then one step per frame down to 0, and
    // from `back` on one step per frame up again.
    auto pos = [&](int t) -> int64_t {
        if (t < start)
            return kFade;
        if (t < back)
            return std::max(0, kFade - (t - start + 1));
        return std::min(kFade, t - back + 1);
    };
    const std::vector<int32_t> want = As16(ThroughPipeline(Faded(in, pos, true)));
    ASSERT_EQ(out.size(), in.size());
    EXPECT_EQ(FrameSlice(out, 2, 960, frames - 960), FrameSlice(want, 2, 960, frames - 960));
    // The end states: fully exchanged before `back`, normal again at the end.
    std::vector<int32_t> exchanged = in;
    for (size_t t = 0; t < in.size() / 2; ++t) {
        std::swap(exchanged[2 * t], exchanged[2 * t + 1]);
    }
    const int settled = start + kFade + 1000;
    EXPECT_EQ(FrameSlice(out, 2, settled, 480),
              FrameSlice(As16(ThroughPipeline(exchanged)), 2, settled, 480));
    EXPECT_EQ(FrameSlice(out, 2, frames - 480, 480),
              FrameSlice(As16(ThroughPipeline(in)), 2, frames - 480, 480));
}

TEST(PipelineSwapTest, SwapInhibitKeepsTheStereoChannels) {
    PipelineHost host;
    host.Effect()->KivParamsSetInt(37, 1);
    const std::vector<int32_t> in = As16(Noise32(480 * 26, 2, 6));
    const std::vector<uint8_t> in16 = FromInt32(in, kS16);
    host.Run(std::vector<uint8_t>(in16.begin(), in16.begin() + 480 * 4), 480, 2, kS16, 2);
    host.Effect()->KivParamsSetInt(5, 1);
    const std::vector<int32_t> out = To32(
            host.Run(std::vector<uint8_t>(in16.begin() + 480 * 4, in16.end()), 480, 2, kS16, 2),
            kS16);
    // Long after a swap would have completed, the channels are still in their places.
    const std::vector<int32_t> want = As16(ThroughPipeline(in));
    EXPECT_EQ(FrameSlice(out, 2, 480 * 23, 480), FrameSlice(want, 2, 480 * 24, 480));
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");
}

TEST(PipelineSwapTest, FourChannelSwapReversesTheChannelsWithoutAFadeAfterInitialisation) {
    PipelineHost::Options options;
    options.configChannelOut = 4;
    PipelineHost host(options);
    // Requested before the first block: the re-initialisation of that block jumps the fade
    // to its target.
    host.Effect()->KivParamsSetInt(5, 1);
    const std::vector<int32_t> in = As16(Noise32(480 * 4, 2, 7));
    const std::vector<int32_t> out = To32(host.Run(FromInt32(in, kS16), 480, 4, kS16, 4), kS16);
    std::vector<int32_t> want =
            As16(Delayed(StandinStereo(Delayed(in, kPopDelayFrames, 2), true, 4), kFrame, 4));
    for (size_t f = 0; f < want.size() / 4; ++f) {
        std::swap(want[4 * f], want[4 * f + 3]);
        std::swap(want[4 * f + 1], want[4 * f + 2]);
    }
    EXPECT_EQ(FrameSlice(out, 4, 960, 480 * 2), FrameSlice(want, 4, 960, 480 * 2));
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=true");
}

}  // namespace
