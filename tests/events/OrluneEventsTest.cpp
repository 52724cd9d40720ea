// Usage and error reports: what the recorders count, the keys and rates a report carries, and
// when reports go out.
#include <gtest/gtest.h>

#include "base/Log.h"
#include "events/ErrorCodeRecorder.h"
#include "events/FrameRecorder.h"
#include "events/OrluneEvent.h"
#include "tests/events/EventText.h"
#include "tests/events/FakeClock.h"

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
    OrluneEvents events;
    ErrorCodeRecorder recorder;
    LogCapture log;
};

std::vector<uint32_t> Counts(const uint32_t (&counts)[kVolumeBands]) {
    return std::vector<uint32_t>(counts, counts + kVolumeBands);
}

std::string ErrorReport(int code, int times) {
    return "report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=" + std::to_string(code) +
           ".000000 ALGOERRORTIMES=" + std::to_string(times) + ".000000";
}

TEST_F(OrluneEventsTest, ReportHoldsTheRecordersInMemberOrderThenTheEffectKeys) {
    // Music takes 30 of the 120 speaker blocks, spread over all bands; every other recorder
    // gets some too.
    for (int i = 0; i < 120; ++i) {
        const int slot = i < 30 ? SPK_REC_MUSIC : 1 + i % 7;
        events.spkRecorders[slot].RecordFrames(2 * i + 5, kThresholds);
    }
    for (HpFrameRecorder& hp : events.hpRecorders) {
        hp.RecordFrames(15, kThresholds);
    }
    for (int i = 0; i < 400; ++i) {
        events.AddEnableFrame(i < 300);
        events.AddDeviceFrame(i < 200 ? 1 : (i < 300 ? 2 : 3));
    }
    for (int i = 0; i < 6000; ++i) {
        events.AddAlgoRunTimes();
    }
    events.AddDeviceFrame(0);
    events.AddDeviceFrame(4);
    EXPECT_TRUE(log.Has("AddDeviceFrame: invalid device type 0", kTagEvent, ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("AddDeviceFrame: invalid device type 4", kTagEvent, ANDROID_LOG_ERROR));

    TovaEvent event(kUsageEventId);
    events.AddEvent(event);
    std::vector<std::string> keys;
    for (const auto& kv : event.Values()) {
        keys.push_back(kv.first);
    }
    // Eight speaker recorders of eight keys (mode ids 0, 1, 2, 7, 3, 4, 5, 6; the ring row has
    // no "MODE"), six headphone recorders of three, then the effect's six.
    ASSERT_EQ(keys.size(), 8u * 8 + 6 * 3 + 6);
    // (The effect's keys close the list: see the text below.)
    const std::pair<size_t, const char*> anchors[] = {
            {8, "GAMEMODELOWVOLRATE"}, {24, "VEMODELOWVOLRATE"}, {58, "RINGVOLUME2RATE"},
            {63, "RINGMODERATE"},      {64, "HPDEFAULTLOWRATE"}, {69, "HP3DLISTENMODERATE"},
            {81, "HPHIFIMODERATE"}};
    for (const auto& a : anchors) {
        EXPECT_EQ(keys[a.first], a.second) << a.first;
    }
    const std::string text = EventText(event);
    EXPECT_EQ(text.rfind("MUSICMODELOWVOLRATE=0.100000 MUSICMODEVOLUME1RATE=0.166667 "
                         "MUSICMODEVOLUME2RATE=0.166667 MUSICMODEVOLUME3RATE=0.166667 "
                         "MUSICMODEVOLUME4RATE=0.166667 MUSICMODEVOLUME5RATE=0.166667 "
                         "MUSICMODELOUDVOLRATE=0.066667 MUSICMODERATE=0.250000 GAME",
                         0),
              0u)
            << text;
    EXPECT_NE(text.find(" EFFECTNAME=ORLUNE ORLUNEENABLERATE=0.750000 SPEAKERUSAGERATE=0.500000 "
                        "HEADPHONEUSAGERATE=0.250000 BTUSAGERATE=0.250000 "
                        "EFFECTUSAGETIME=60.000000"),
              std::string::npos)
            << text;

    // A report empties every counter but leaves the error codes alone.
    events.errorCodes.lastSendTime = -1;
    events.errorCodes.AddErrorCode(4);
    events.SendLog();
    EXPECT_EQ(events.totalFrames + events.algoRunTimes + events.speakerFrames, 0u);
    EXPECT_EQ(events.hpRecorders[HP_REC_HIFI].counts[1] +
                      events.spkRecorders[SPK_REC_MUSIC].counts[1] +
                      events.spkRecorders[SPK_REC_MUSIC].totalFrames + SpkFrameRecorder::gFrameSums,
              0u);
    EXPECT_EQ(events.errorCodes.errorCounts.at(4), 1);
}

TEST_F(OrluneEventsTest, ReportIsDueDailyAndCatchesUpOnMissedDays) {
    clock.Set(kStart + kDay - 1);
    events.TriggerSendLog();
    EXPECT_TRUE(Reports(log).empty());

    // Two days without a call: the next two calls both report, the third does not.
    events.AddEnableFrame(true);
    clock.Set(kStart + 2 * kDay + 5);
    events.TriggerSendLog();
    events.TriggerSendLog();
    events.TriggerSendLog();
    const std::vector<std::string> reports = Reports(log);
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(log.Count("need to send log", kTagEvent, ANDROID_LOG_DEBUG), 2);
    EXPECT_EQ(reports[0].rfind("report 916120002 EFFECTNAME=ORLUNE ORLUNEENABLERATE=1.000000", 0),
              0u);
    EXPECT_EQ(reports[1], "report 916120002");  // empty: the first report cleared the counters

    events.lastSendTime = -1;
    clock.Set(kStart + 10 * kDay);
    events.TriggerSendLog();
    EXPECT_EQ(Reports(log).size(), 2u);
}

TEST_F(OrluneEventsTest, TriggerAlsoSendsTheDueErrorCode) {
    events.errorCodes.AddErrorCode(6);  // at once; its next period starts at kStart + kDay
    events.errorCodes.AddErrorCode(6);
    events.errorCodes.AddErrorCode(6);
    clock.Set(kStart + 2 * kDay);
    log.Clear();
    events.TriggerSendLog();  // both due: the error code first
    EXPECT_EQ(Reports(log), (std::vector<std::string>{ErrorReport(6, 2), "report 916120002"}));
}

TEST_F(OrluneEventsTest, VolumeBandsAtTheThresholds) {
    SpkFrameRecorder spk;
    HpFrameRecorder hp;
    for (int volume : {-5, 10, 11, 41, 60, 61}) {
        spk.RecordFrames(volume, kThresholds);
        hp.RecordFrames(volume, kThresholds);
    }
    // Above every threshold the headphone recorder counts band 1, not band 6.
    EXPECT_EQ(Counts(spk.counts), (std::vector<uint32_t>{2, 1, 0, 0, 1, 1, 1}));
    EXPECT_EQ(Counts(hp.counts), (std::vector<uint32_t>{2, 2, 0, 0, 1, 1, 0}));
    EXPECT_EQ(spk.totalFrames + hp.totalFrames, 12u);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums + HpFrameRecorder::gFrameSums, 12u);
}

// Headphones report band 0 apart from the sum of the others.
TEST_F(OrluneEventsTest, HeadphoneRatesOfBandZeroAndTheRest) {
    HpFrameRecorder hp;
    hp.mode = 0;
    hp.RecordFrames(5, kThresholds);
    hp.RecordFrames(25, kThresholds);
    hp.RecordFrames(61, kThresholds);
    TovaEvent event(1);
    hp.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "HPDEFAULTLOWRATE=0.333333 HPDEFAULTONERATE=0.666667 HPDEFAULTMODERATE=1.000000");
}

TEST_F(OrluneEventsTest, RepeatedCodeWaitsForThePeriodAndCarriesItsCount) {
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

TEST_F(OrluneEventsTest, EveryChangeOfCodeIsReportedAtOnce) {
    // The stored code starts at 0, so the first code is a change too.
    recorder.AddErrorCode(5);
    recorder.AddErrorCode(7);
    recorder.AddErrorCode(5);
    EXPECT_EQ(Reports(log),
              (std::vector<std::string>{ErrorReport(5, 1), ErrorReport(7, 1), ErrorReport(5, 1)}));
    EXPECT_EQ(recorder.lastSendTime, kStart + 3 * kDay);  // one period per report, not "now"
}

TEST_F(OrluneEventsTest, CodeZeroIsCountedButNeverReported) {
    recorder.AddErrorCode(0);
    recorder.AddErrorCode(0);
    clock.Set(kStart + 5 * kDay);
    recorder.TriggerSendErrorCode(0);
    EXPECT_EQ(recorder.errorCounts.at(0), 2);
    EXPECT_TRUE(Reports(log).empty());
}

}  // namespace
