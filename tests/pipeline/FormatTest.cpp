// Every host format the platform converts runs through the same processing; the others are
// handed back untouched with one error line per change of format.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

std::vector<int32_t> ExpectedStereo(const std::vector<int32_t>& in32) {
    return Delayed(StandinStereo(Delayed(in32, kPopDelayFrames, 2), true, 2), kFrame, 2);
}

std::vector<uint8_t> Bytes(const std::vector<uint8_t>& all, int bytesPerFrame, int from,
                           int count) {
    return std::vector<uint8_t>(all.begin() + from * bytesPerFrame,
                                all.begin() + (from + count) * bytesPerFrame);
}

TEST(PipelineFormatTest, EverySupportedHostFormatIsProcessedAndReturnedInItsFormat) {
    const std::vector<int32_t> noise = Noise32(480 * 8, 2, 21);
    for (audio_format_t format : {AUDIO_FORMAT_PCM_16_BIT, AUDIO_FORMAT_PCM_32_BIT,
                                  AUDIO_FORMAT_PCM_FLOAT, AUDIO_FORMAT_PCM_24_BIT_PACKED}) {
        SCOPED_TRACE(format);
        PipelineHost host;
        const std::vector<uint8_t> in = FromInt32(noise, format);
        const std::vector<uint8_t> out = host.Run(in, 960, 2, format, 2);
        const std::vector<uint8_t> want = FromInt32(ExpectedStereo(To32(in, format)), format);
        const int frameBytes = 2 * BytesPerSample(format);
        ASSERT_EQ(out.size(), in.size());
        EXPECT_EQ(Bytes(out, frameBytes, 0, 528), std::vector<uint8_t>(528 * frameBytes, 0));
        EXPECT_EQ(Bytes(out, frameBytes, 960, 480 * 6), Bytes(want, frameBytes, 960, 480 * 6));
    }
}

TEST(PipelineFormatTest, UnconvertibleFormatsComeBackUntouchedWithOneLinePerChange) {
    LogCapture log;
    PipelineHost host;
    std::vector<short> block(480 * 2);
    auto send = [&](audio_format_t format, short fill) {
        for (size_t i = 0; i < block.size(); ++i) {
            block[i] = static_cast<short>(fill + i);
        }
        const std::vector<short> before = block;
        host.Effect()->KivOutProcPlaySamples(block.data(), 480, 2, format);
        return block == before;
    };
    EXPECT_TRUE(send(AUDIO_FORMAT_PCM_8_BIT, 100));
    EXPECT_TRUE(send(AUDIO_FORMAT_PCM_8_BIT, 200));
    EXPECT_TRUE(send(AUDIO_FORMAT_PCM_8_24_BIT, 300));
    EXPECT_TRUE(send(AUDIO_FORMAT_PCM_8_24_BIT, 400));
    EXPECT_FALSE(send(AUDIO_FORMAT_PCM_16_BIT, 500));  // processed: the primed silence
    EXPECT_TRUE(send(AUDIO_FORMAT_PCM_8_BIT, 600));
    EXPECT_TRUE(send(static_cast<audio_format_t>(0x7), 700));
    EXPECT_EQ(log.Count("KivOutProcPlaySamples: unsupported format 0x2, block returned "
                        "untouched",
                        "orlune_mobile", ANDROID_LOG_ERROR),
              2)
            << log.Dump();
    EXPECT_EQ(log.Count("KivOutProcPlaySamples: unsupported format 0x4, block returned "
                        "untouched"),
              1);
    EXPECT_EQ(log.Count("KivOutProcPlaySamples: unsupported format 0x7, block returned "
                        "untouched"),
              1);
}

TEST(PipelineFormatTest, RefusedBlocksLeaveTheStreamAsIfTheyHadNeverCome) {
    const std::vector<int32_t> noise = Noise32(480 * 4, 2, 33);
    const std::vector<uint8_t> in = FromInt32(noise, AUDIO_FORMAT_PCM_16_BIT);
    PipelineHost plain;
    const std::vector<uint8_t> want = plain.Run(in, 480, 2, AUDIO_FORMAT_PCM_16_BIT, 2);

    PipelineHost host;
    std::vector<uint8_t> got;
    std::vector<short> junk(480 * 2, 1234);
    for (int b = 0; b < 4; ++b) {
        host.Effect()->KivOutProcPlaySamples(junk.data(), 480, 2, AUDIO_FORMAT_PCM_8_24_BIT);
        host.Effect()->KivOutProcPlaySamples(junk.data(), -480, 2, AUDIO_FORMAT_PCM_16_BIT);
        const std::vector<uint8_t> one(in.begin() + b * 480 * 4, in.begin() + (b + 1) * 480 * 4);
        const std::vector<uint8_t> out = host.Run(one, 480, 2, AUDIO_FORMAT_PCM_16_BIT, 2);
        got.insert(got.end(), out.begin(), out.end());
    }
    EXPECT_EQ(got, want);
    EXPECT_EQ(junk, std::vector<short>(480 * 2, 1234));
}

}  // namespace
