// Blocks outside the host contract: handed back untouched with one error line per change, and
// the stream around them goes on as if they had never come.
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

const std::string kFn = "KivOutProcPlaySamples: ";

TEST(PipelineRefusedBlockTest, RefusedBlocksComeBackUntouchedAndLeaveTheStreamAlone) {
    struct Case {
        int frames, channels;
        audio_format_t format;
        bool null;
        int configChannelOut;
        std::string line;
    };
    const Case kCases[] = {
            {-5, 2, kS16, false, 2, "invalid frame count -5, block returned untouched"},
            {480, 2, AUDIO_FORMAT_PCM_8_BIT, false, 2,
             "unsupported format 0x2, block returned untouched"},
            // 80000 samples; the cache holds 76800.
            {40000, 2, kS16, false, 2,
             "block of 40000 frames x 2 channels overruns the input cache (76800 samples free), "
             "returned untouched"},
            {480, 0, kS16, false, 2, "invalid channel count 0, block returned untouched"},
            {480, 1, kS16, false, 2,
             "2 output channels do not fit a 1-channel block, returned untouched"},
            {480, 2, kS16, false, 4,
             "4 output channels do not fit a 2-channel block, returned untouched"},
            {480, 2, kS16, true, 2, "null buffer of 480 frames, block ignored"},
    };
    const std::vector<uint8_t> in = FromInt32(Noise32(480 * 3, 2, 33), kS16);
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.line);
        const HostOptions options{true, 1, c.configChannelOut};
        // The stream runs in the layout that the configured outputs fit.
        const int layout = c.configChannelOut;
        const std::vector<uint8_t> want = PipelineHost(options).Run(in, 480, layout, kS16, layout);

        LogCapture log;
        PipelineHost host(options);
        std::vector<uint8_t> junk(40000 * 4 * 4, 0x2b);
        short* junk16 = reinterpret_cast<short*>(junk.data());
        short* refused = c.null ? nullptr : junk16;
        std::vector<uint8_t> got;
        for (int b = 0; b < 3; ++b) {
            host.Effect()->KivOutProcPlaySamples(refused, c.frames, c.channels, c.format);
            host.Effect()->KivOutProcPlaySamples(refused, c.frames, c.channels, c.format);
            if (b == 0) {  // then a block refused otherwise: for the 8-bit one, another format
                host.Effect()->KivOutProcPlaySamples(junk16, 480, 2, AUDIO_FORMAT_PCM_8_24_BIT);
            }
            const std::vector<uint8_t> one(in.begin() + b * 480 * 4,
                                           in.begin() + (b + 1) * 480 * 4);
            const std::vector<uint8_t> out = host.Run(one, 480, layout, kS16, layout);
            got.insert(got.end(), out.begin(), out.end());
        }
        EXPECT_EQ(got, want);
        EXPECT_EQ(junk, std::vector<uint8_t>(junk.size(), 0x2b));
        // A repeat logs nothing; the accepted block in between makes the next one a change.
        EXPECT_EQ(log.Count(kFn + c.line, "orlune_mobile", ANDROID_LOG_ERROR), 3) << log.Dump();
        EXPECT_EQ(log.Count(kFn + "unsupported format 0x4, block returned untouched"), 1);
    }
}

}  // namespace
