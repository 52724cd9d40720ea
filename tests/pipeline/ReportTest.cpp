// What a run reports: algorithm errors (logged per frame, reported as an event once) and the
// status line of every 250th block.
#include <stdlib.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;

int Reports(const LogCapture& log, const std::string& text) {
    int n = 0;
    for (const LogLine& line : log.Lines()) {
        n += line.tag == "tova_view" && line.message == text;
    }
    return n;
}

// The stand-in returns `code` from Apply while this lives.
class FailingApply {
public:
    explicit FailingApply(const char* spec) { setenv("ORLUNE_STANDIN_FAIL", spec, 1); }
    ~FailingApply() { unsetenv("ORLUNE_STANDIN_FAIL"); }
};

TEST(PipelineReportTest, ApplyErrorIsLoggedPerFrameAndReportedOnce) {
    LogCapture log;
    PipelineHost host;
    FailingApply fail("Apply=-5");
    const std::vector<uint8_t> in = FromInt32(Noise32(480 * 5, 2, 4), kS16);
    const std::vector<uint8_t> out = host.Run(in, 480, 2, kS16, 2);
    EXPECT_EQ(log.Count("KivApply: Orlune algorithm apply failed, ret = -5", "orlune_mobile",
                        ANDROID_LOG_ERROR),
              5)
            << log.Dump();
    EXPECT_EQ(Reports(log,
                      "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=-5.000000 "
                      "ALGOERRORTIMES=1.000000"),
              1);
    // A failed frame leaves its place in the output as it was: silence.
    EXPECT_EQ(out, std::vector<uint8_t>(in.size(), 0));
}

TEST(PipelineReportTest, MultichannelApplyErrorIsLoggedAndReportedOnce) {
    LogCapture log;
    PipelineHost host;
    FailingApply fail("Apply=-7");
    host.Run(FromInt32(Noise32(480 * 3, 8, 4), kS16), 480, 8, kS16, 2);
    EXPECT_EQ(log.Count("Quex_KIV_Apply result is -7"), 3) << log.Dump();
    EXPECT_EQ(Reports(log,
                      "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=-7.000000 "
                      "ALGOERRORTIMES=1.000000"),
              1);
}

TEST(PipelineReportTest, StatusLineComesWithTheBlockAfterEvery250) {
    LogCapture log;
    PipelineHost host;
    const std::string status =
            "KivOutProcPlaySamples currentStatus = enabled, enableCount is 250 ,countchans is 2, "
            "samples:240, format:1";
    const std::vector<uint8_t> block = FromInt32(Noise32(240, 2, 1), kS16);
    for (int b = 0; b < 250; ++b) {
        host.Run(block, 240, 2, kS16, 2);
    }
    EXPECT_EQ(log.Count(status), 0);
    host.Run(block, 240, 2, kS16, 2);
    EXPECT_EQ(log.Count(status, "orlune_mobile", ANDROID_LOG_INFO), 1) << log.Dump();
    for (int b = 0; b < 249; ++b) {
        host.Run(block, 240, 2, kS16, 2);
    }
    EXPECT_EQ(log.CountContaining("KivOutProcPlaySamples currentStatus"), 1);
}

}  // namespace
