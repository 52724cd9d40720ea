#include <gtest/gtest.h>

#include "effect/LogTags.h"
#include "events/OrluneEvent.h"
#include "tests/events/EventText.h"
#include "tests/events/FakeClock.h"
#include "tests/events/ReportLines.h"

namespace {

constexpr int64_t kDay = FakeClock::kDayNs;
constexpr int64_t kStart = 123456789;
const short kThresholds[6] = {10, 20, 30, 40, 50, 60};

class OrluneEventsTest : public ::testing::Test {
protected:
    void SetUp() override {
        SpkFrameRecorder::gFrameSums = 0;
        HpFrameRecorder::gFrameSums = 0;
    }
    FakeClock clock{kStart};
};

TEST_F(OrluneEventsTest, ConstructionSetsModesAndTheFirstPeriod) {
    OrluneEvents events;
    const uint16_t spkModes[8] = {0, 1, 2, 7, 3, 4, 5, 6};
    for (int i = 0; i < kSpkRecorderCount; ++i) {
        EXPECT_EQ(events.spkRecorders[i].mode, spkModes[i]) << "slot " << i;
    }
    for (int i = 0; i < kHpRecorderCount; ++i) {
        EXPECT_EQ(events.hpRecorders[i].mode, i);
    }
    long last = 0;
    long duration = 0;
    events.GetTime(last, duration);
    EXPECT_EQ(last, kStart);
    EXPECT_EQ(duration, kDay);
    EXPECT_EQ(events.totalFrames, 0u);
}

TEST_F(OrluneEventsTest, EmptyReportCarriesNoKeys) {
    OrluneEvents events;
    LogCapture log;
    events.SendLog();
    EXPECT_EQ(Reports(log), std::vector<std::string>{"report 916120002"});
    EXPECT_TRUE(log.Has("need to send log", kTagEvent, ANDROID_LOG_DEBUG));
    EXPECT_EQ(events.lastSendTime, kStart + kDay);
}

TEST_F(OrluneEventsTest, EffectLevelRates) {
    OrluneEvents events;
    for (int i = 0; i < 400; ++i) {
        events.AddEnableFrame(i < 300);
        events.AddDeviceFrame(i < 200 ? 1 : (i < 300 ? 2 : 3));
        events.AddVEFrame(i < 10);
    }
    for (int i = 0; i < 6000; ++i) {
        events.AddAlgoRunTimes();
    }
    EXPECT_EQ(events.enableFrames, 300u);
    EXPECT_EQ(events.disableFrames, 100u);
    EXPECT_EQ(events.veFrames, 10u);
    TovaEvent event(kUsageEventId);
    events.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.750000 SPEAKERUSAGERATE=0.500000 "
              "HEADPHONEUSAGERATE=0.250000 BTUSAGERATE=0.250000 EFFECTUSAGETIME=60.000000");
}

TEST_F(OrluneEventsTest, InvalidDeviceTypeIsLoggedAndIgnored) {
    OrluneEvents events;
    LogCapture log;
    events.AddDeviceFrame(0);
    events.AddDeviceFrame(4);
    EXPECT_EQ(events.speakerFrames + events.headphoneFrames + events.btFrames, 0u);
    EXPECT_TRUE(log.Has("AddDeviceFrame: invalid device type 0", kTagEvent, ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("AddDeviceFrame: invalid device type 4", kTagEvent, ANDROID_LOG_ERROR));
}

TEST_F(OrluneEventsTest, ReportPutsRecordersInMemberOrderThenEffectKeys) {
    OrluneEvents events;
    events.spkRecorders[SPK_REC_EDUCATION].RecordFrames(5, kThresholds);
    events.spkRecorders[SPK_REC_VE].RecordFrames(99, kThresholds);
    events.hpRecorders[HP_REC_HIFI].RecordFrames(15, kThresholds);
    events.AddEnableFrame(true);
    events.AddDeviceFrame(1);
    events.AddAlgoRunTimes();
    LogCapture log;
    events.SendLog();
    // The VE recorder (mode 7) sits before the education recorder (mode 3).
    EXPECT_EQ(Reports(log),
              std::vector<std::string>{
                      "report 916120002 "
                      "VEMODELOWVOLRATE=0.000000 VEMODEVOLUME1RATE=0.000000 "
                      "VEMODEVOLUME2RATE=0.000000 VEMODEVOLUME3RATE=0.000000 "
                      "VEMODEVOLUME4RATE=0.000000 VEMODEVOLUME5RATE=0.000000 "
                      "VEMODELOUDVOLRATE=1.000000 VEMODERATE=0.500000 "
                      "EDUCATIONMODELOWVOLRATE=1.000000 EDUCATIONMODEVOLUME1RATE=0.000000 "
                      "EDUCATIONMODEVOLUME2RATE=0.000000 EDUCATIONMODEVOLUME3RATE=0.000000 "
                      "EDUCATIONMODEVOLUME4RATE=0.000000 EDUCATIONMODEVOLUME5RATE=0.000000 "
                      "EDUCATIONMODELOUDVOLRATE=0.000000 EDUCATIONMODERATE=0.500000 "
                      "HPHIFILOWRATE=0.000000 HPHIFIONERATE=1.000000 HPHIFIMODERATE=1.000000 "
                      "EFFECTNAME=ORLUNE ORLUNEENABLERATE=1.000000 SPEAKERUSAGERATE=1.000000 "
                      "HEADPHONEUSAGERATE=0.000000 BTUSAGERATE=0.000000 "
                      "EFFECTUSAGETIME=0.010000"});
    // The report emptied every counter.
    EXPECT_EQ(events.totalFrames, 0u);
    EXPECT_EQ(events.algoRunTimes, 0u);
    EXPECT_EQ(events.spkRecorders[SPK_REC_VE].counts[6], 0u);
    EXPECT_EQ(events.hpRecorders[HP_REC_HIFI].counts[1], 0u);
}

TEST_F(OrluneEventsTest, ClearEventEmptiesCountersButKeepsModesTimesAndErrors) {
    OrluneEvents events;
    events.errorCodes.lastSendTime = -1;  // keep the error code in the map
    events.errorCodes.AddErrorCode(4);
    events.AddEnableFrame(false);
    events.AddVEFrame(true);
    events.AddDeviceFrame(2);
    events.AddDeviceFrame(3);
    events.AddAlgoRunTimes();
    events.spkRecorders[SPK_REC_RING].RecordFrames(35, kThresholds);
    events.hpRecorders[HP_REC_3DWIDE].RecordFrames(35, kThresholds);
    clock.Set(kStart + 50);
    events.ClearEvent();
    EXPECT_EQ(events.totalFrames + events.enableFrames + events.disableFrames + events.veFrames +
                      events.speakerFrames + events.headphoneFrames + events.btFrames +
                      events.algoRunTimes,
              0u);
    EXPECT_EQ(events.spkRecorders[SPK_REC_RING].totalFrames, 0u);
    EXPECT_EQ(events.spkRecorders[SPK_REC_RING].counts[3], 0u);
    EXPECT_EQ(events.hpRecorders[HP_REC_3DWIDE].totalFrames, 0u);
    EXPECT_EQ(events.hpRecorders[HP_REC_3DWIDE].counts[3], 0u);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums, 0u);
    EXPECT_EQ(HpFrameRecorder::gFrameSums, 0u);
    EXPECT_EQ(events.spkRecorders[SPK_REC_RING].mode, 6);
    EXPECT_EQ(events.hpRecorders[HP_REC_3DWIDE].mode, 3);
    EXPECT_EQ(events.lastSendTime, kStart);
    EXPECT_EQ(events.errorCodes.errorCounts.at(4), 1);
}

TEST_F(OrluneEventsTest, ReportIsDueAfterOneFullPeriod) {
    OrluneEvents events;
    LogCapture log;
    clock.Set(kStart + kDay - 1);
    EXPECT_FALSE(events.IsNeedSendLog());
    events.TriggerSendLog();
    EXPECT_TRUE(Reports(log).empty());
    EXPECT_FALSE(log.Has("need to send log"));

    clock.Set(kStart + kDay + 1000);
    EXPECT_TRUE(events.IsNeedSendLog());
    events.AddEnableFrame(true);
    events.TriggerSendLog();
    ASSERT_EQ(Reports(log).size(), 1u);
    EXPECT_EQ(Reports(log)[0].rfind("report 916120002 EFFECTNAME=ORLUNE", 0), 0u);
    // The schedule keeps its phase: the next period starts one day after the last one.
    EXPECT_EQ(events.lastSendTime, kStart + kDay);
    events.TriggerSendLog();
    EXPECT_EQ(Reports(log).size(), 1u);
}

TEST_F(OrluneEventsTest, TwoMissedDaysReportOnTwoConsecutiveCalls) {
    OrluneEvents events;
    events.AddEnableFrame(true);
    LogCapture log;
    clock.Set(kStart + 2 * kDay + 5);
    events.TriggerSendLog();
    events.TriggerSendLog();
    events.TriggerSendLog();
    const std::vector<std::string> reports = Reports(log);
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[0].rfind("report 916120002 EFFECTNAME=ORLUNE ORLUNEENABLERATE=1.000000", 0),
              0u);
    EXPECT_EQ(reports[1], "report 916120002");  // counters were emptied by the first
    EXPECT_EQ(events.lastSendTime, kStart + 2 * kDay);
}

TEST_F(OrluneEventsTest, DisabledScheduleNeverReports) {
    OrluneEvents events;
    events.lastSendTime = -1;
    LogCapture log;
    clock.Set(kStart + 10 * kDay);
    EXPECT_FALSE(events.IsNeedSendLog());
    events.TriggerSendLog();
    EXPECT_TRUE(Reports(log).empty());
    EXPECT_EQ(events.lastSendTime, -1);
}

TEST_F(OrluneEventsTest, TriggerAlsoSendsTheDueErrorCode) {
    OrluneEvents events;
    events.errorCodes.AddErrorCode(6);  // at once; its next period starts at kStart + kDay
    events.errorCodes.AddErrorCode(6);
    events.errorCodes.AddErrorCode(6);
    events.SetSendLogDuration();
    LogCapture log;
    clock.Set(kStart + kDay);
    events.TriggerSendLog();  // error schedule not yet due; usage schedule due now
    ASSERT_EQ(Reports(log).size(), 1u);
    EXPECT_EQ(Reports(log)[0], "report 916120002");
    clock.Set(kStart + 2 * kDay);
    log.Clear();
    events.TriggerSendLog();
    ASSERT_EQ(Reports(log).size(), 2u);
    EXPECT_EQ(Reports(log)[0],
              "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=6.000000 "
              "ALGOERRORTIMES=2.000000");
    EXPECT_EQ(Reports(log)[1], "report 916120002");
}

}  // namespace
