// What the pipeline hands back, against the stand-in algorithm's own processing: one algorithm
// frame late (plus the pop eliminator's 48-frame delay line on the stereo path), for the
// host's block sizes, formats and channel layouts (the four-channel swap among them); a change of
// layout re-initialises.
#include <unistd.h>

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr audio_format_t k32 = AUDIO_FORMAT_PCM_32_BIT;
constexpr audio_format_t kFloat = AUDIO_FORMAT_PCM_FLOAT;
constexpr audio_format_t k24 = AUDIO_FORMAT_PCM_24_BIT_PACKED;

struct Stream {
    int block;
    audio_format_t format;
    int channels;   // host layout: 2, 4 (stereo in, room for four out), 8 or 10
    int configOut;  // "msc.brisel.config_channel_out", the output channels on devices 1 and 2
    int device;
    bool enable;
    bool swap = false;  // id 5 set before the first block
};

// Each stereo pair written twice, L R L R, as four-channel output repeats it.
std::vector<int32_t> Twice(const std::vector<int32_t>& pairs) {
    std::vector<int32_t> out;
    for (size_t i = 0; i + 1 < pairs.size(); i += 2) {
        out.insert(out.end(), {pairs[i], pairs[i + 1], pairs[i], pairs[i + 1]});
    }
    return out;
}

// The stand-in's output for `in`, as the host gets it. Multichannel input folds to a stereo
// pair; on the headset, and from multichannel input, four outputs repeat the pair. A swap
// requested before the first block is complete at once: the four channels come reversed.
std::vector<int32_t> Expected(const std::vector<int32_t>& in, const Stream& s) {
    const bool pairs = s.channels > 4 || s.device == 2;
    std::vector<int32_t> out = s.channels > 4
                                       ? Delayed(Standin(in, s.channels, s.enable), kFrame, 2)
                                       : ExpectedStereo(in, s.enable, pairs ? 2 : s.configOut);
    if (pairs && s.configOut == 4) {
        out = Twice(out);
    }
    for (size_t f = 0; s.swap && f < out.size(); f += 4) {
        std::reverse(out.begin() + f, out.begin() + f + 4);
    }
    return out;
}

std::vector<uint8_t> Slice(const std::vector<uint8_t>& bytes, size_t from, size_t to) {
    return std::vector<uint8_t>(bytes.begin() + from, bytes.begin() + to);
}

TEST(PipelineStreamTest, OutputIsTheStandinsProcessingOneFrameLate) {
    // Disabled, the stand-in only reshapes and nothing fades, so the output is exact from the
    // first sample: with 240-frame blocks the first two return the primed silence and the
    // second completes one frame, which the third returns behind 48 frames of delay line.
    const Stream kCases[] = {
            {240, kS16, 2, 2, 1, false},      {333, kS16, 2, 2, 1, true},
            {480, k32, 2, 2, 1, true},        {960, kFloat, 2, 2, 1, true},
            {1920, k24, 2, 2, 1, true},       {768, kFloat, 2, 2, 1, false},
            {480, kS16, 4, 4, 1, true},       {333, k24, 4, 4, 2, false},
            {480, kS16, 4, 2, 1, true},       {480, kS16, 8, 2, 1, true},
            {240, k32, 8, 2, 1, false},       {1000, kS16, 10, 2, 1, true},
            {480, kFloat, 10, 4, 1, true},    {333, kS16, 8, 4, 2, false},
            {480, kS16, 4, 4, 1, true, true},
    };
    LogCapture log;
    for (const Stream& s : kCases) {
        SCOPED_TRACE(testing::Message() << "case " << &s - kCases);
        PipelineHost host({s.enable, s.device, s.configOut});
        host.Effect()->KivParamsSetInt(5, s.swap);
        const int inChannels = s.channels == 4 ? 2 : s.channels;
        const std::vector<uint8_t> in =
                FromInt32(Noise32(480 * 6, inChannels, s.block + s.channels), s.format);
        const std::vector<uint8_t> out = host.Run(in, s.block, s.channels, s.format, s.configOut);
        const std::vector<uint8_t> want = FromInt32(Expected(To32(in, s.format), s), s.format);
        const size_t frameBytes = s.configOut * audio_bytes_per_sample(s.format);
        ASSERT_EQ(out.size(), 480 * 6 * frameBytes);
        const size_t silent = (s.channels > 4 ? 480 : 528) * frameBytes;
        EXPECT_EQ(Slice(out, 0, silent), std::vector<uint8_t>(silent, 0));
        EXPECT_NE(Slice(out, 538 * frameBytes, 638 * frameBytes),
                  std::vector<uint8_t>(100 * frameBytes, 0));
        // The first stereo frame differs when the effect is on (it fades in out of the delay
        // line's silence) and on the headset (InitKiv leaves four algorithm channels for it,
        // the channel table of the next block two).
        const bool firstFrameExact = s.channels > 4 || (!s.enable && s.device == 1);
        const size_t exact = (firstFrameExact ? 0 : 960) * frameBytes;
        EXPECT_EQ(Slice(out, exact, out.size()), Slice(want, exact, out.size()));
    }
    // The device's tuning was in force (the line is logged when the id changes, and the
    // configuration is shared by the instances of the process).
    EXPECT_EQ(log.CountContaining("SPK NvMode is currentParamMode: 400"), 1) << log.Dump();
}

TEST(PipelineStreamTest, ChannelCountChangeReinitialisesAndDropsBufferedAudio) {
    LogCapture log;
    PipelineHost host;
    const std::string init = "InitKiv, tid:" + std::to_string(gettid());
    const int initsBefore = log.Count(init);
    const std::vector<int32_t> silence(480 * 2, 0);
    const std::vector<int32_t> stereo = host.Run16(Noise32(480 * 3, 2, 1), 480, 2, 2);
    EXPECT_NE(FrameSlice(stereo, 2, 960, 480), silence);

    // The first eight-channel block returns the fresh frame of silence, not the processed
    // stereo frame that was waiting; the next returns the first eight-channel frame.
    const std::vector<int32_t> multi = Noise32(480 * 2, 8, 2);
    const std::vector<int32_t> out = host.Run16(multi, 480, 8, 2);
    EXPECT_EQ(FrameSlice(out, 2, 0, 480), silence);
    EXPECT_EQ(FrameSlice(out, 2, 480, 480),
              FrameSlice(As16(Standin(As16(multi), 8, true)), 2, 0, 480));

    EXPECT_EQ(host.Run16(Noise32(480, 2, 3), 480, 2, 2), silence);
    // One re-initialisation per change, none for blocks of the same layout.
    EXPECT_EQ(log.Count(init), initsBefore + 3) << log.Dump();
}

}  // namespace
