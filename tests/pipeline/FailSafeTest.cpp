// Blocks outside the host contract: handed back untouched with one error line, and nothing
// written outside the host's buffer or the instance's.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr const char* kFrames =
        "KivOutProcPlaySamples: invalid frame count %d, block returned "
        "untouched";

std::string Line(const char* format, int value) {
    char text[256];
    snprintf(text, sizeof(text), format, value);
    return text;
}

TEST(PipelineFailSafeTest, NegativeFrameCountsAreRefusedWithOneLinePerValue) {
    LogCapture log;
    PipelineHost host;
    std::vector<short> block(64, 77);
    for (int frames : {-5, -5, -5, -6}) {
        host.Effect()->KivOutProcPlaySamples(block.data(), frames, 2, AUDIO_FORMAT_PCM_16_BIT);
    }
    EXPECT_EQ(block, std::vector<short>(64, 77));
    EXPECT_EQ(log.Count(Line(kFrames, -5), "orlune_mobile", ANDROID_LOG_ERROR), 1) << log.Dump();
    EXPECT_EQ(log.Count(Line(kFrames, -6)), 1);
}

TEST(PipelineFailSafeTest, BlocksLargerThanTheInputCacheAreRefused) {
    LogCapture log;
    PipelineHost host;
    // 40000 stereo frames are 80000 samples; the cache holds 76800.
    std::vector<short> stereo(40000 * 2, 9);
    host.Effect()->KivOutProcPlaySamples(stereo.data(), 40000, 2, AUDIO_FORMAT_PCM_16_BIT);
    host.Effect()->KivOutProcPlaySamples(stereo.data(), 40000, 2, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(stereo, std::vector<short>(40000 * 2, 9));
    EXPECT_EQ(log.Count("KivOutProcPlaySamples: block of 40000 frames x 2 channels overruns the "
                        "input cache (76800 samples free), returned untouched"),
              1)
            << log.Dump();

    // The largest block that fits is processed: all of the primed silence comes back.
    std::vector<short> fits(38400 * 2, 9);
    host.Effect()->KivOutProcPlaySamples(fits.data(), 38400, 2, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(std::vector<short>(fits.begin(), fits.begin() + 960), std::vector<short>(960, 0));

    std::vector<short> ten(8000 * 10, 9);
    host.Effect()->KivOutProcPlaySamples(ten.data(), 8000, 10, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(ten, std::vector<short>(8000 * 10, 9));
    EXPECT_EQ(log.CountContaining("block of 8000 frames x 10 channels overruns the input cache"),
              1);
}

TEST(PipelineFailSafeTest, StereoBlockOnAFourChannelOutputIsRefused) {
    LogCapture log;
    PipelineHost::Options options;
    options.configChannelOut = 4;  // loudspeaker: four channels out
    PipelineHost host(options);
    std::vector<short> block(480 * 2 + 16, 5);  // no room for four channels
    for (int i = 0; i < 3; ++i) {
        host.Effect()->KivOutProcPlaySamples(block.data(), 480, 2, AUDIO_FORMAT_PCM_16_BIT);
    }
    EXPECT_EQ(block, std::vector<short>(480 * 2 + 16, 5));
    EXPECT_EQ(log.Count("KivOutProcPlaySamples: 4 output channels do not fit a 2-channel block, "
                        "returned untouched"),
              1)
            << log.Dump();
}

TEST(PipelineFailSafeTest, MissingBufferAndChannelCountsBelowOneAreRefused) {
    LogCapture log;
    PipelineHost host;
    host.Effect()->KivOutProcPlaySamples(nullptr, 480, 2, AUDIO_FORMAT_PCM_16_BIT);
    std::vector<short> block(480, 3);
    host.Effect()->KivOutProcPlaySamples(block.data(), 480, 0, AUDIO_FORMAT_PCM_16_BIT);
    host.Effect()->KivOutProcPlaySamples(block.data(), 480, 1, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(block, std::vector<short>(480, 3));
    EXPECT_TRUE(log.Has("KivOutProcPlaySamples: null buffer of 480 frames, block ignored"))
            << log.Dump();
    EXPECT_TRUE(
            log.Has("KivOutProcPlaySamples: invalid channel count 0, block returned "
                    "untouched"));
    // One channel in has no room for the two channels that come out.
    EXPECT_TRUE(
            log.Has("KivOutProcPlaySamples: 2 output channels do not fit a 1-channel block, "
                    "returned untouched"));
}

}  // namespace
