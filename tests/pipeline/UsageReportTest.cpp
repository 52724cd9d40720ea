// The daily usage report of a run, with the platform clock moved on by the test: the counts
// that the pipeline gathered per block and per algorithm run come out as rates.
#include <dlfcn.h>

#include <memory>

#include <gtest/gtest.h>

#include <platform/clock.h>

#include "effect/orlune.h"
#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

int64_t gNow = 1000000000;
int64_t FakeNow() {
    return gNow;
}
constexpr int64_t kDay = 86400000000000LL;

std::vector<std::string> Reports(const LogCapture& log) {
    std::vector<std::string> out;
    for (const LogLine& line : log.Lines()) {
        if (line.tag == "tova_view") {
            out.push_back(line.message);
        }
    }
    return out;
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

TEST(PipelineUsageReportTest, DailyReportCarriesTheRatesOfTheBlocksAndRunsSinceTheLast) {
    orlune_platform::SetClockForTest(FakeNow);
    DeviceRoot root;
    WriteTestTuning(root);
    ASSERT_NE(dlopen((std::string(ORLUNE_STANDIN_DIR) + "/lib64orlune7_1.so").c_str(),
                     RTLD_NOW | RTLD_GLOBAL),
              nullptr);
    LogCapture log;
    std::unique_ptr<Orlune> effect(new Orlune());
    effect->KivOutProcPlayInit();
    effect->KivParamsSetInt(12, 1);
    effect->KivParamsSetInt(0, 1);
    effect->KivParamsSetInt(32, 1);

    std::vector<short> block(480 * 2, 1000);
    auto run = [&](int blocks) {
        for (int b = 0; b < blocks; ++b) {
            effect->KivOutProcPlaySamples(block.data(), 480, 2, AUDIO_FORMAT_PCM_16_BIT);
        }
    };
    run(400);
    effect->KivParamsSetInt(0, 0);
    run(100);
    EXPECT_TRUE(Reports(log).empty());
    gNow += kDay;
    run(1);  // block 501 sends what blocks 1 to 500 counted: 400 on, 500 runs of 10 ms
    std::vector<std::string> reports = Reports(log);
    ASSERT_EQ(reports.size(), 1u) << log.Dump();
    EXPECT_EQ(reports[0].rfind("report 916120002 ", 0), 0u) << reports[0];
    EXPECT_TRUE(EndsWith(reports[0],
                         " EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.800000 "
                         "SPEAKERUSAGERATE=1.000000 HEADPHONEUSAGERATE=0.000000 "
                         "BTUSAGERATE=0.000000 EFFECTUSAGETIME=5.000000"))
            << reports[0];

    // The next period starts empty: 250 blocks, all off, on the wired headset.
    effect->KivParamsSetInt(12, 2);
    run(249);
    gNow += kDay;
    run(1);
    reports = Reports(log);
    ASSERT_EQ(reports.size(), 2u) << log.Dump();
    EXPECT_TRUE(EndsWith(reports[1],
                         " EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.000000 "
                         "SPEAKERUSAGERATE=0.004000 HEADPHONEUSAGERATE=0.996000 "
                         "BTUSAGERATE=0.000000 EFFECTUSAGETIME=2.500000"))
            << reports[1];
    effect.reset();
    orlune_platform::SetClockForTest(nullptr);
}

}  // namespace
