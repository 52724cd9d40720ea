// What a run reports: algorithm errors (logged per frame, reported as an event once) and the
// status line of every 250th block.
#include <stdlib.h>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(PipelineReportTest, ApplyErrorIsLoggedPerFrameAndReportedOnce) {
    struct Case {
        int channels, code;
        std::string line;
    };
    const Case kCases[] = {{2, -5, "KivApply: Orlune algorithm apply failed, ret = -5"},
                           {8, -7, "Quex_KIV_Apply result is -7"}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.line);
        LogCapture log;
        PipelineHost host;
        // The stand-in's Apply returns the code.
        setenv("ORLUNE_STANDIN_FAIL", ("Apply=" + std::to_string(c.code)).c_str(), 1);
        const std::vector<int32_t> out =
                host.Run16(Noise32(480 * 5, c.channels, 4), 480, c.channels, 2);
        unsetenv("ORLUNE_STANDIN_FAIL");
        EXPECT_EQ(log.Count(c.line, "orlune_mobile", ANDROID_LOG_ERROR), 5) << log.Dump();
        EXPECT_EQ(log.Count("report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=" +
                                    std::to_string(c.code) + ".000000 ALGOERRORTIMES=1.000000",
                            "tova_view"),
                  1);
        // A failed frame leaves its place in the output as it was: silence.
        EXPECT_EQ(out, std::vector<int32_t>(480 * 5 * 2, 0));
    }
}

TEST(PipelineReportTest, StatusLineComesWithTheBlockAfterEvery250) {
    LogCapture log;
    PipelineHost host;
    const std::vector<int32_t> block = Noise32(240, 2, 1);
    auto run = [&](int blocks) {
        for (int b = 0; b < blocks; ++b) {
            host.Run16(block, 240, 2, 2);
        }
        return log.CountContaining("KivOutProcPlaySamples currentStatus");
    };
    const std::string status = "KivOutProcPlaySamples currentStatus = enabled, enableCount is ";
    const std::string rest = " ,countchans is 2, samples:240, format:1";
    EXPECT_EQ(run(250), 0);
    EXPECT_EQ(run(1), 1);
    EXPECT_EQ(log.Count(status + "250" + rest, "orlune_mobile", ANDROID_LOG_INFO), 1) << log.Dump();
    EXPECT_EQ(run(249), 1);
    // The enable count runs on across periods (250 + 249), the block count starts again.
    EXPECT_EQ(run(1), 2);
    EXPECT_EQ(log.Count(status + "499" + rest), 1) << log.Dump();
}

// The stream volumes belong to the report records of the current set-up: a set-up that
// creates new records (here the region switch) starts them again, so the same value is a
// change once more.
TEST(PipelineReportTest, StreamVolumesStartAgainWithTheRecordsOfANewSetUp) {
    LogCapture log;
    PipelineHost host;
    const struct {
        int id;
        const char* line;
    } kCases[] = {{57, "masterVolume = 0.500000"},
                  {58, "typeVolume = 0.500000"},
                  {59, "clientVolume = 0.500000"}};
    for (const auto& c : kCases) {
        host.Effect()->KivParamsSetFloat(c.id, 0.5f);
        host.Effect()->KivParamsSetFloat(c.id, 0.5f);
    }
    host.Effect()->KivParamsSetInt(1, 1);
    EXPECT_EQ(log.CountContaining("InitKiv, tid:"), 2);  // set-up ran again
    for (const auto& c : kCases) {
        host.Effect()->KivParamsSetFloat(c.id, 0.0f);  // what fresh records hold: no change
        host.Effect()->KivParamsSetFloat(c.id, 0.5f);
        EXPECT_EQ(log.Count(c.line, "orlune_mobile", ANDROID_LOG_INFO), 2) << log.Dump();
    }
    EXPECT_EQ(log.CountContaining("Volume = 0.000000"), 0);
}

}  // namespace
