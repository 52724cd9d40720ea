// The daily usage report of a run, with the platform clock moved on by the test: the counts
// that the pipeline gathered per block and per algorithm run come out as rates.
#include <memory>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/events/FakeClock.h"
#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(PipelineUsageReportTest, DailyReportCarriesTheRatesOfTheBlocksAndRunsSinceTheLast) {
    FakeClock clock(1000000000);
    DeviceRoot root;
    WriteTestTuning(root);
    ASSERT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    LogCapture log;
    const auto effect = std::make_unique<Orlune>();
    effect->KivOutProcPlayInit();
    effect->KivParamsSetInt(kIdDeviceType, 1);
    effect->KivParamsSetInt(kIdWidenEnable, 1);
    effect->KivParamsSetInt(kIdEffectEnable, 1);
    std::vector<short> block(480 * 2, 1000);
    auto run = [&](int blocks) {
        for (int b = 0; b < blocks; ++b) {
            effect->KivOutProcPlaySamples(block.data(), 480, 2, kS16);
        }
    };
    run(400);
    effect->KivParamsSetInt(kIdWidenEnable, 0);
    run(100);
    EXPECT_EQ(log.CountContaining("report ", "tova_view"), 0);
    clock.Advance(FakeClock::kDayNs);
    run(1);  // block 501 sends what blocks 1 to 500 counted: 400 on, 500 runs of 10 ms
    EXPECT_EQ(log.CountContaining(" EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.800000 "
                                  "SPEAKERUSAGERATE=1.000000 HEADPHONEUSAGERATE=0.000000 "
                                  "BTUSAGERATE=0.000000 EFFECTUSAGETIME=5.000000",
                                  "tova_view"),
              1)
            << log.Dump();
}

}  // namespace
