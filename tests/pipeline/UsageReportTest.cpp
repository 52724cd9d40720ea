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
            effect->KivOutProcPlaySamples(block.data(), 480, 2, kS16);
        }
    };
    run(400);
    effect->KivParamsSetInt(0, 0);
    run(100);
    EXPECT_EQ(log.CountContaining("report ", "tova_view"), 0);
    gNow += kDay;
    run(1);  // block 501 sends what blocks 1 to 500 counted: 400 on, 500 runs of 10 ms
    EXPECT_EQ(log.CountContaining("report 916120002 ", "tova_view"), 1) << log.Dump();
    EXPECT_EQ(log.CountContaining(" EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.800000 "
                                  "SPEAKERUSAGERATE=1.000000 HEADPHONEUSAGERATE=0.000000 "
                                  "BTUSAGERATE=0.000000 EFFECTUSAGETIME=5.000000",
                                  "tova_view"),
              1);

    effect.reset();
    orlune_platform::SetClockForTest(nullptr);
}

}  // namespace
