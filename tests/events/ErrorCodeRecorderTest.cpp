#include <gtest/gtest.h>

#include "events/ErrorCodeRecorder.h"
#include "tests/events/EventText.h"
#include "tests/events/FakeClock.h"

namespace {

constexpr int64_t kDay = FakeClock::kDayNs;
constexpr int64_t kStart = 5000;

std::string ErrorReport(int code, int times) {
    return "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=" + std::to_string(code) +
           ".000000 ALGOERRORTIMES=" + std::to_string(times) + ".000000";
}

class ErrorCodeRecorderTest : public ::testing::Test {
protected:
    FakeClock clock{kStart};
    ErrorCodeRecorder recorder;
    LogCapture log;
};

TEST_F(ErrorCodeRecorderTest, RepeatedCodeWaitsForThePeriodAndCarriesItsCount) {
    recorder.AddErrorCode(5);  // reported at once; the next period starts at kStart + kDay
    clock.Set(kStart + kDay);
    for (int i = 0; i < 9; ++i) {
        recorder.AddErrorCode(5);
        clock.Advance(kDay / 10);  // stays below kStart + 2 days
    }
    EXPECT_EQ(Reports(log).size(), 1u);
    clock.Set(kStart + 2 * kDay);
    log.Clear();
    recorder.AddErrorCode(5);
    EXPECT_EQ(Reports(log), std::vector<std::string>{ErrorReport(5, 10)});

    // Due again, but the code did not come back: the event goes out without error keys.
    clock.Set(kStart + 3 * kDay - 1);
    recorder.TriggerSendErrorCode(5);
    EXPECT_EQ(Reports(log).size(), 1u);
    clock.Set(kStart + 3 * kDay);
    recorder.TriggerSendErrorCode(5);
    EXPECT_EQ(Reports(log).back(), "report 916120002");
}

TEST_F(ErrorCodeRecorderTest, EveryChangeOfCodeIsReportedAtOnce) {
    // The stored code starts at 0, so the first code is a change too.
    recorder.AddErrorCode(5);
    recorder.AddErrorCode(7);
    recorder.AddErrorCode(5);
    EXPECT_EQ(Reports(log),
              (std::vector<std::string>{ErrorReport(5, 1), ErrorReport(7, 1), ErrorReport(5, 1)}));
    EXPECT_EQ(recorder.lastSendTime, kStart + 3 * kDay);  // one period per report, not "now"
}

TEST_F(ErrorCodeRecorderTest, CodeZeroAndADisabledRecorderNeverReport) {
    recorder.AddErrorCode(0);
    recorder.AddErrorCode(0);
    clock.Set(kStart + 5 * kDay);
    recorder.TriggerSendErrorCode(0);
    EXPECT_EQ(recorder.errorCounts.at(0), 2);
    EXPECT_FALSE(recorder.IsNeedSendLog(0));

    recorder.lastSendTime = -1;
    recorder.AddErrorCode(9);
    recorder.AddErrorCode(4);
    EXPECT_TRUE(Reports(log).empty());
    EXPECT_EQ(recorder.errorCounts.at(9), 1);
}

}  // namespace
