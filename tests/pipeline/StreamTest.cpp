// What the pipeline hands back, against the stand-in algorithm's own processing: one algorithm
// frame late (plus the pop eliminator's 48-frame delay line on the stereo path), for the
// host's block sizes, formats and channel layouts (the four-channel swap among them); a change of
// layout re-initialises. Blocks outside the host contract come back untouched with one error
// line per change, and the stream around them goes on as if they had never come. The
// left/right swap on the stereo input: the CHANNEL_SWAPPED report, the fade back and the swap
// inhibit (the fade's shape is a gating test).
#include <algorithm>
#include <utility>

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
            {240, kS16, 2, 2, 1, false},   {333, kS16, 2, 2, 1, true},
            {480, k32, 2, 2, 1, true},     {1920, k24, 2, 2, 1, true},
            {768, kFloat, 2, 2, 1, false}, {480, kS16, 4, 4, 1, true},
            {333, k24, 4, 4, 2, false},    {480, kS16, 4, 2, 1, true},
            {480, kS16, 8, 2, 1, true},    {480, kFloat, 10, 4, 1, true},
            {333, kS16, 8, 4, 2, false},   {480, kS16, 4, 4, 1, true, true},
    };
    for (const Stream& s : kCases) {
        SCOPED_TRACE(testing::Message() << "case " << &s - kCases);
        PipelineHost host({s.enable, s.device, s.configOut});
        host.Effect()->KivParamsSetInt(kIdChannelSwap, s.swap);
        const std::vector<uint8_t> in = FromInt32(
                Noise32(480 * 6, s.channels == 4 ? 2 : s.channels, s.block + s.channels), s.format);
        const std::vector<uint8_t> out = host.Run(in, s.block, s.channels, s.format, s.configOut);
        const std::vector<uint8_t> want = FromInt32(Expected(To32(in, s.format), s), s.format);
        const size_t frameBytes = s.configOut * audio_bytes_per_sample(s.format);
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
}

TEST(PipelineStreamTest, ChannelCountChangeReinitialisesAndDropsBufferedAudio) {
    LogCapture log;
    PipelineHost host;
    const int initsBefore = log.CountContaining("InitKiv, tid:");
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
    EXPECT_EQ(log.CountContaining("InitKiv, tid:"), initsBefore + 3) << log.Dump();
}

const std::string kFn = "KivOutProcPlaySamples: ";

TEST(PipelineRefusedBlockTest, RefusedBlocksComeBackUntouchedAndLeaveTheStreamAlone) {
    const struct {
        int frames, channels;
        audio_format_t format;
        int layout;  // "msc.brisel.config_channel_out", and the layout of the accepted blocks
        std::string line;
    } kCases[] = {
            {-5, 2, kS16, 2, "invalid frame count -5, block returned untouched"},
            {480, 2, AUDIO_FORMAT_PCM_8_BIT, 2, "unsupported format 0x2, block returned untouched"},
            // 80000 samples; the cache holds 76800.
            {40000, 2, kS16, 2,
             "block of 40000 frames x 2 channels overruns the input cache (76800 samples free), "
             "returned untouched"},
            {480, 0, kS16, 2, "invalid channel count 0, block returned untouched"},
            {480, 1, kS16, 2, "2 output channels do not fit a 1-channel block, returned untouched"},
            {480, 2, kS16, 4, "4 output channels do not fit a 2-channel block, returned untouched"},
            {480, 2, kS16, 2, "null buffer of 480 frames, block ignored"},
    };
    const std::vector<uint8_t> in = FromInt32(Noise32(480 * 3, 2, 33), kS16);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.line);
        const HostOptions options{true, 1, c.layout};
        const std::vector<uint8_t> want =
                PipelineHost(options).Run(in, 480, c.layout, kS16, c.layout);

        LogCapture log;
        PipelineHost host(options);
        std::vector<uint8_t> junk(40000 * 4 * 4, 0x2b);
        short* junk16 = reinterpret_cast<short*>(junk.data());
        short* refused = c.line.rfind("null", 0) == 0 ? nullptr : junk16;
        std::vector<uint8_t> got;
        for (int b = 0; b < 3; ++b) {
            host.Effect()->KivOutProcPlaySamples(refused, c.frames, c.channels, c.format);
            host.Effect()->KivOutProcPlaySamples(refused, c.frames, c.channels, c.format);
            if (b == 0) {  // then a block refused otherwise: for the 8-bit one, another format
                host.Effect()->KivOutProcPlaySamples(junk16, 480, 2, AUDIO_FORMAT_PCM_8_24_BIT);
            }
            const std::vector<uint8_t> out =
                    host.Run(Slice(in, b * 1920, (b + 1) * 1920), 480, c.layout, kS16, c.layout);
            got.insert(got.end(), out.begin(), out.end());
        }
        EXPECT_EQ(got, want);
        EXPECT_EQ(junk, std::vector<uint8_t>(junk.size(), 0x2b));
        // A repeat logs nothing; the accepted block in between makes the next one a change.
        EXPECT_EQ(log.Count(kFn + c.line, "orlune_mobile", ANDROID_LOG_ERROR), 3) << log.Dump();
        EXPECT_EQ(log.Count(kFn + "unsupported format 0x4, block returned untouched"), 1);
    }
}

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
    host.Effect()->KivParamsSetInt(kIdChannelSwap, 1);
    run(start, start + kFade / 2);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // half way
    run(start + kFade / 2, back);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=true");
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");  // the read clears it
    host.Effect()->KivParamsSetInt(kIdChannelSwap, 0);
    run(back, inhibit);
    host.Effect()->KivParamsSetInt(kIdSwapInhibit, 1);
    host.Effect()->KivParamsSetInt(kIdChannelSwap, 1);
    run(inhibit, release);
    EXPECT_EQ(Query(host), "CHANNEL_SWAPPED=false");
    host.Effect()->KivParamsSetInt(kIdSwapInhibit, 0);
    run(release, release + 1440);

    // 480 output frames from the one that carries input frame `t` (528 frames later).
    const std::vector<int32_t> normal = As16(ExpectedStereo(in, true));
    const std::vector<int32_t> swapped = As16(ExpectedStereo(exchanged, true));
    auto at = [&](const std::vector<int32_t>& v, int t) { return FrameSlice(v, 2, t + 528, 480); };
    ASSERT_EQ(out.size(), in.size());
    // The way back takes 9600 frames too.
    EXPECT_NE(at(out, back + kFade - 480), at(normal, back + kFade - 480));
    EXPECT_EQ(at(out, back + kFade), at(normal, back + kFade));
    // With the swap inhibited the channels stay in their places.
    EXPECT_EQ(at(out, inhibit + 10800), at(normal, inhibit + 10800));
    // The fade kept time meanwhile: released, the channels are exchanged at once.
    EXPECT_EQ(at(out, release), at(swapped, release));
}

}  // namespace
