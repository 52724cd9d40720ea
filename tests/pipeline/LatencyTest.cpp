// The stereo pipeline's output against the stand-in algorithm's own processing: the same
// samples, one algorithm frame later, plus the pop eliminator's 48-frame delay line.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;

// What the stereo path must return for `in32` (already as the effect sees it in 32-bit).
std::vector<int32_t> ExpectedStereo(const std::vector<int32_t>& in32, bool enable) {
    const std::vector<int32_t> popped = Delayed(in32, kPopDelayFrames, 2);
    return Delayed(StandinStereo(popped, enable, 2), kFrame, 2);
}

TEST(PipelineLatencyTest, QuarterFrameBlocksReturnSilenceUntilTheFirstFrameIsThrough) {
    PipelineHost host;
    const std::vector<uint8_t> in = FromInt32(Noise32(240 * 3, 2, 1), kS16);
    const std::vector<int32_t> out = To32(host.Run(in, 240, 2, kS16, 2), kS16);
    // Blocks 1 and 2 hand back the primed frame of silence; block 2 completed the first
    // algorithm frame, which block 3 returns: 48 frames of the delay line, then signal.
    EXPECT_EQ(FrameSlice(out, 2, 0, 480 + kPopDelayFrames),
              std::vector<int32_t>((480 + kPopDelayFrames) * 2, 0));
    const std::vector<int32_t> tail = FrameSlice(out, 2, 480 + kPopDelayFrames + 10, 100);
    EXPECT_NE(tail, std::vector<int32_t>(tail.size(), 0));
}

TEST(PipelineLatencyTest, OutputIsTheStandinsProcessingDelayedForEveryBlockSize) {
    const std::vector<int32_t> noise = Noise32(480 * 12, 2, 7);
    LogCapture log;
    for (int block : {240, 480, 960, 1920, 333}) {
        SCOPED_TRACE(block);
        PipelineHost host;
        const std::vector<uint8_t> in = FromInt32(noise, kS16);
        const std::vector<int32_t> in32 = To32(in, kS16);
        const std::vector<int32_t> out = To32(host.Run(in, block, 2, kS16, 2), kS16);
        const std::vector<int32_t> want = To32(FromInt32(ExpectedStereo(in32, true), kS16), kS16);
        ASSERT_EQ(out.size(), in.size() / 2);
        // The first processed frame starts out of the delay line's silence, which the pop
        // eliminator fades in; from the second frame on the output is exact.
        const int frames = static_cast<int>(out.size() / 2);
        EXPECT_EQ(FrameSlice(out, 2, 0, 528), std::vector<int32_t>(528 * 2, 0));
        EXPECT_EQ(FrameSlice(out, 2, 960, frames - 960), FrameSlice(want, 2, 960, frames - 960));
        // Unity processing would differ: the test is not blind to the tuning.
        EXPECT_NE(FrameSlice(ExpectedStereo(in32, false), 2, 960, 480),
                  FrameSlice(want, 2, 960, 480));
    }
    // The device's tuning was in force (the line is logged when the id changes, and the
    // configuration is shared by the instances of the process).
    EXPECT_EQ(log.CountContaining("SPK NvMode is currentParamMode: 400"), 1) << log.Dump();
}

TEST(PipelineLatencyTest, DisabledEffectIsExactFromTheFirstSample) {
    PipelineHost::Options options;
    options.enable = false;  // no gain or width, no fades: only the delay and the reshaping
    PipelineHost host(options);
    const std::vector<uint8_t> in = FromInt32(Noise32(480 * 6, 2, 3), kS16);
    const std::vector<int32_t> out = To32(host.Run(in, 480, 2, kS16, 2), kS16);
    const std::vector<int32_t> want =
            To32(FromInt32(ExpectedStereo(To32(in, kS16), false), kS16), kS16);
    EXPECT_EQ(out, FrameSlice(want, 2, 0, 480 * 6));
}

TEST(PipelineLatencyTest, WithoutTheAlgorithmLibraryEveryBlockPassesThroughBitForBit) {
    PipelineHost::Options options;
    options.withAlgorithm = false;
    LogCapture log;
    PipelineHost host(options);
    EXPECT_TRUE(log.Has("KivOutProcPlayInit: load orlune effect fail."));
    for (audio_format_t format :
         {AUDIO_FORMAT_PCM_16_BIT, AUDIO_FORMAT_PCM_FLOAT, AUDIO_FORMAT_PCM_24_BIT_PACKED}) {
        const std::vector<uint8_t> in = FromInt32(Noise32(1000, 2, 5), format);
        EXPECT_EQ(host.Run(in, 240, 2, format, 2), in);
    }
    // The four-channel layout keeps the host's whole buffer, filler included.
    const std::vector<uint8_t> in = FromInt32(Noise32(480, 2, 6), kS16);
    const std::vector<uint8_t> out = host.Run(in, 480, 4, kS16, 4, 0x33);
    std::vector<uint8_t> want = in;
    want.resize(out.size(), 0x33);
    EXPECT_EQ(out, want);
}

}  // namespace
