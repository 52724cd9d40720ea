// Channel layouts: a change of layout re-initialises, the four-channel host layout, and the
// eight- and ten-channel inputs folded to a stereo pair.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;

std::vector<int32_t> RunS16(PipelineHost& host, const std::vector<int32_t>& in32, int block,
                            int channels, int outChannels, uint8_t filler = 0x5a) {
    return To32(host.Run(FromInt32(in32, kS16), block, channels, kS16, outChannels, filler), kS16);
}

// What a block of `in` returns: the samples as the effect sees them after 16-bit rounding.
std::vector<int32_t> As16(const std::vector<int32_t>& in) {
    return To32(FromInt32(in, kS16), kS16);
}

std::vector<int32_t> Zeros(int frames, int channels) {
    return std::vector<int32_t>(static_cast<size_t>(frames) * channels, 0);
}

TEST(PipelineLayoutTest, ChannelCountChangeReinitialisesAndDropsBufferedAudio) {
    LogCapture log;
    PipelineHost host;
    const int initsBefore = log.Count("InitKiv, tid:" + std::to_string(gettid()));
    const std::vector<int32_t> stereo = RunS16(host, Noise32(480 * 3, 2, 1), 480, 2, 2);
    EXPECT_NE(FrameSlice(stereo, 2, 960, 480), Zeros(480, 2));

    // The first eight-channel block returns the fresh frame of silence, not the processed
    // stereo frame that was waiting; the next returns the first eight-channel frame.
    const std::vector<int32_t> multi = Noise32(480 * 2, 8, 2);
    const std::vector<int32_t> out = RunS16(host, multi, 480, 8, 2);
    EXPECT_EQ(FrameSlice(out, 2, 0, 480), Zeros(480, 2));
    EXPECT_EQ(FrameSlice(out, 2, 480, 480),
              FrameSlice(As16(StandinFold(As16(multi), 8, true)), 2, 0, 480));

    const std::vector<int32_t> back = RunS16(host, Noise32(480, 2, 3), 480, 2, 2);
    EXPECT_EQ(back, Zeros(480, 2));
    // One re-initialisation per change, none for blocks of the same layout.
    EXPECT_EQ(log.Count("InitKiv, tid:" + std::to_string(gettid())), initsBefore + 3) << log.Dump();
}

TEST(PipelineLayoutTest, EightAndTenChannelsFoldToStereoWithOneFrameOfLatency) {
    for (int channels : {8, 10}) {
        for (int block : {480, 240, 1000}) {
            SCOPED_TRACE(testing::Message() << channels << " channels, block " << block);
            PipelineHost host;
            const std::vector<int32_t> in = Noise32(480 * 5, channels, channels + block);
            const std::vector<int32_t> out = RunS16(host, in, block, channels, 2);
            const std::vector<int32_t> want =
                    As16(Delayed(StandinFold(As16(in), channels, true), kFrame, 2));
            EXPECT_EQ(out, FrameSlice(want, 2, 0, 480 * 5));
        }
    }
}

TEST(PipelineLayoutTest, MultichannelToFourOutputsRepeatsTheStereoPair) {
    PipelineHost::Options options;
    options.configChannelOut = 4;
    PipelineHost host(options);
    const std::vector<int32_t> in = Noise32(480 * 3, 10, 9);
    const std::vector<int32_t> out = RunS16(host, in, 480, 10, 4);
    const std::vector<int32_t> pairs = As16(StandinFold(As16(in), 10, true));
    for (int i = 0; i < 480 * 2; ++i) {
        const int f = 480 + i;
        ASSERT_EQ(out[4 * f], pairs[2 * i]) << i;
        ASSERT_EQ(out[4 * f + 1], pairs[2 * i + 1]) << i;
        ASSERT_EQ(out[4 * f + 2], pairs[2 * i]) << i;
        ASSERT_EQ(out[4 * f + 3], pairs[2 * i + 1]) << i;
    }
}

TEST(PipelineLayoutTest, FourChannelLayoutReadsTwoChannelsAndWritesFour) {
    PipelineHost::Options options;
    options.configChannelOut = 4;
    PipelineHost a(options);
    const std::vector<int32_t> in = Noise32(480 * 6, 2, 4);
    // Whatever the host leaves behind the input in its buffer must not matter.
    const std::vector<int32_t> out = RunS16(a, in, 480, 4, 4, 0x11);
    PipelineHost b(options);
    EXPECT_EQ(RunS16(b, in, 480, 4, 4, 0xee), out);

    const std::vector<int32_t> want =
            As16(Delayed(StandinStereo(Delayed(As16(in), kPopDelayFrames, 2), true, 4), kFrame, 4));
    EXPECT_EQ(FrameSlice(out, 4, 0, 528), Zeros(528, 4));
    EXPECT_EQ(FrameSlice(out, 4, 960, 480 * 4), FrameSlice(want, 4, 960, 480 * 4));
}

TEST(PipelineLayoutTest, FourChannelsOnTheHeadsetRepeatTheAlgorithmsStereoPair) {
    PipelineHost::Options options;
    options.configChannelOut = 4;
    options.device = 2;
    options.enable = false;  // headset tuning aside: unity processing, and no fades
    PipelineHost host(options);
    const std::vector<int32_t> in = Noise32(480 * 3, 2, 8);
    const std::vector<int32_t> out = RunS16(host, in, 480, 4, 4);
    const std::vector<int32_t> pairs =
            As16(StandinStereo(Delayed(As16(in), kPopDelayFrames, 2), false, 2));
    EXPECT_EQ(FrameSlice(out, 4, 0, 480), Zeros(480, 4));
    // The first frame after a re-initialisation runs with the four algorithm channels that
    // InitKiv sets for the headset (the block's channel table applies from the next block),
    // so the comparison starts with the second frame.
    for (int i = 480; i < 480 * 2; ++i) {
        const int f = 480 + i;
        ASSERT_EQ(out[4 * f], pairs[2 * i]) << i;
        ASSERT_EQ(out[4 * f + 1], pairs[2 * i + 1]) << i;
        ASSERT_EQ(out[4 * f + 2], pairs[2 * i]) << i;
        ASSERT_EQ(out[4 * f + 3], pairs[2 * i + 1]) << i;
    }
}

TEST(PipelineLayoutTest, FourChannelLayoutWithStereoConfigurationWritesTwoChannels) {
    PipelineHost host;  // "msc.brisel.config_channel_out" 2
    const std::vector<int32_t> in = Noise32(480 * 2, 2, 12);
    const std::vector<uint8_t> out = host.Run(FromInt32(in, kS16), 480, 4, kS16, 4, 0x7b);
    // Each block's second half is the host's own filler, untouched.
    for (int block = 0; block < 2; ++block) {
        const size_t from = static_cast<size_t>(block) * 480 * 4 * 2 + 480 * 2 * 2;
        EXPECT_EQ(std::vector<uint8_t>(out.begin() + from, out.begin() + from + 480 * 2 * 2),
                  std::vector<uint8_t>(480 * 2 * 2, 0x7b));
    }
}

}  // namespace
