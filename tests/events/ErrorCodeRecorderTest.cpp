#include <gtest/gtest.h>
#include <tovaview/TovaView.h>

#include "effect/LogTags.h"
#include "events/ErrorCodeRecorder.h"
#include "tests/events/FakeClock.h"
#include "tests/events/ReportLines.h"

namespace {

constexpr int64_t kDay = FakeClock::kDayNs;
constexpr int64_t kStart = 5000;

std::string ErrorReport(int code, int times) {
    return "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=" + std::to_string(code) +
           ".000000 ALGOERRORTIMES=" + std::to_string(times) + ".000000";
}

TEST(ErrorCodeRecorderTest, StartsEmptyWithTheClockAndADayPeriod) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    long last = 0;
    long duration = 0;
    recorder.GetTime(last, duration);
    EXPECT_EQ(last, kStart);
    EXPECT_EQ(duration, kDay);
    EXPECT_EQ(recorder.lastErrorCode, 0);
    EXPECT_TRUE(recorder.errorCounts.empty());

    clock.Set(kStart + 777);
    recorder.sendLogDuration = 1;
    recorder.SetSendLogDuration();
    recorder.GetTime(last, duration);
    EXPECT_EQ(last, kStart + 777);
    EXPECT_EQ(duration, kDay);
}

TEST(ErrorCodeRecorderTest, FirstCodeIsReportedAtOnce) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    LogCapture log;
    recorder.AddErrorCode(-12);
    EXPECT_EQ(Reports(log), std::vector<std::string>{ErrorReport(-12, 1)});
    EXPECT_TRUE(log.Has("AddErrorCode: insert errorCode -12", kTagEvent, ANDROID_LOG_DEBUG));
    EXPECT_TRUE(log.Has("IsNeedSendLog: diff errorCode 0", kTagEvent, ANDROID_LOG_DEBUG));
    EXPECT_EQ(recorder.lastErrorCode, -12);
    EXPECT_TRUE(recorder.errorCounts.empty());
    EXPECT_EQ(recorder.lastSendTime, kStart + kDay);  // one period on, not "now"
}

TEST(ErrorCodeRecorderTest, RepeatedCodeWaitsForThePeriodAndCarriesItsCount) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    LogCapture log;
    recorder.AddErrorCode(5);  // reported at once; the next period starts at kStart + kDay
    clock.Set(kStart + kDay);
    for (int i = 0; i < 9; ++i) {
        recorder.AddErrorCode(5);
        clock.Advance(kDay / 10);  // stays below kStart + 2 days
    }
    EXPECT_EQ(Reports(log).size(), 1u);
    EXPECT_EQ(recorder.errorCounts.at(5), 9);

    clock.Set(kStart + 2 * kDay);
    log.Clear();
    recorder.AddErrorCode(5);
    EXPECT_EQ(Reports(log), std::vector<std::string>{ErrorReport(5, 10)});
    EXPECT_TRUE(log.Has("need to send log", kTagEvent, ANDROID_LOG_DEBUG));
    EXPECT_TRUE(
            log.Has("IsNeedSendLog: same errorCode 5, time to send", kTagEvent, ANDROID_LOG_DEBUG));
    EXPECT_EQ(recorder.lastSendTime, kStart + 2 * kDay);
}

TEST(ErrorCodeRecorderTest, AlternatingCodesAreEachReportedOnce) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    LogCapture log;
    recorder.AddErrorCode(5);
    recorder.AddErrorCode(7);
    recorder.AddErrorCode(5);
    EXPECT_EQ(Reports(log),
              (std::vector<std::string>{ErrorReport(5, 1), ErrorReport(7, 1), ErrorReport(5, 1)}));
    // Each line names the code stored before the new one.
    EXPECT_TRUE(log.Has("IsNeedSendLog: diff errorCode 0"));
    EXPECT_TRUE(log.Has("IsNeedSendLog: diff errorCode 5"));
    EXPECT_TRUE(log.Has("IsNeedSendLog: diff errorCode 7"));
    EXPECT_EQ(recorder.lastSendTime, kStart + 3 * kDay);
}

TEST(ErrorCodeRecorderTest, CodeZeroIsCountedButNeverReported) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    LogCapture log;
    recorder.AddErrorCode(0);
    recorder.AddErrorCode(0);
    clock.Set(kStart + 5 * kDay);
    recorder.TriggerSendErrorCode(0);
    EXPECT_TRUE(Reports(log).empty());
    EXPECT_EQ(recorder.errorCounts.at(0), 2);
    EXPECT_FALSE(recorder.IsNeedSendLog(0));
}

TEST(ErrorCodeRecorderTest, DueCodeThatDidNotReturnSendsAnEmptyEvent) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    recorder.AddErrorCode(3);
    LogCapture log;
    clock.Set(kStart + 2 * kDay - 1);
    recorder.TriggerSendErrorCode(3);
    EXPECT_TRUE(Reports(log).empty());
    clock.Set(kStart + 2 * kDay);
    recorder.TriggerSendErrorCode(3);
    EXPECT_EQ(Reports(log), std::vector<std::string>{"report 916120002"});
    EXPECT_TRUE(log.Has("PutInEvent: do not find errorCode 3", kTagEvent, ANDROID_LOG_DEBUG));
}

TEST(ErrorCodeRecorderTest, DisabledRecorderNeverReports) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    recorder.lastSendTime = -1;
    LogCapture log;
    recorder.AddErrorCode(9);
    clock.Set(kStart + 3 * kDay);
    recorder.AddErrorCode(9);
    recorder.AddErrorCode(4);
    EXPECT_TRUE(Reports(log).empty());
    EXPECT_EQ(recorder.errorCounts.at(9), 2);
    EXPECT_EQ(recorder.lastSendTime, -1);
}

TEST(ErrorCodeRecorderTest, SendLogReportsAtOnceAndEmptiesTheMap) {
    FakeClock clock(kStart);
    ErrorCodeRecorder recorder;
    recorder.lastSendTime = -1;  // no automatic reports
    recorder.AddErrorCode(8);
    recorder.AddErrorCode(8);
    recorder.AddErrorCode(2);
    recorder.lastSendTime = kStart;
    LogCapture log;
    TovaEvent event(1);
    recorder.AddEvent(event, 2);
    ASSERT_EQ(event.Values().size(), 3u);
    EXPECT_EQ(event.Values()[1].second, "2.000000");
    recorder.SendLog(8);
    EXPECT_EQ(Reports(log), std::vector<std::string>{ErrorReport(8, 2)});
    EXPECT_TRUE(recorder.errorCounts.empty());
    EXPECT_EQ(recorder.lastSendTime, kStart + kDay);
}

}  // namespace
