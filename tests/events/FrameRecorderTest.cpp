#include <gtest/gtest.h>

#include <string>

#include "effect/LogTags.h"
#include "events/FrameRecorder.h"
#include "tests/events/EventText.h"
#include "tests/support/LogCapture.h"

namespace {

const short kThresholds[6] = {10, 20, 30, 40, 50, 60};

class FrameRecorderTest : public ::testing::Test {
protected:
    void SetUp() override {
        SpkFrameRecorder::gFrameSums = 0;
        HpFrameRecorder::gFrameSums = 0;
    }
};

template <typename Recorder>
int BandOf(int volume) {
    Recorder recorder;
    recorder.RecordFrames(volume, kThresholds);
    for (int band = 0; band < kVolumeBands; ++band) {
        if (recorder.counts[band] != 0) {
            return band;
        }
    }
    return -1;
}

TEST_F(FrameRecorderTest, VolumeBandsAtTheThresholds) {
    EXPECT_EQ(BandOf<SpkFrameRecorder>(-5), 0);
    EXPECT_EQ(BandOf<SpkFrameRecorder>(10), 0);
    EXPECT_EQ(BandOf<SpkFrameRecorder>(11), 1);
    EXPECT_EQ(BandOf<SpkFrameRecorder>(41), 4);
    EXPECT_EQ(BandOf<SpkFrameRecorder>(60), 5);
    EXPECT_EQ(BandOf<SpkFrameRecorder>(61), 6);
    EXPECT_EQ(BandOf<HpFrameRecorder>(10), 0);
    EXPECT_EQ(BandOf<HpFrameRecorder>(60), 5);
    // Above every threshold the headphone recorder counts band 1, not band 6.
    EXPECT_EQ(BandOf<HpFrameRecorder>(61), 1);
    EXPECT_EQ(BandOf<HpFrameRecorder>(32767), 1);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums, 6u);
    EXPECT_EQ(HpFrameRecorder::gFrameSums, 4u);
}

TEST_F(FrameRecorderTest, AddFrameCountsValidLevelsAndLogsOthers) {
    LogCapture log;
    SpkFrameRecorder spk;
    HpFrameRecorder hp;
    spk.AddFrame(6);
    hp.AddFrame(0);
    spk.AddFrame(7);
    hp.AddFrame(-1);
    EXPECT_EQ(spk.counts[6], 1u);
    EXPECT_EQ(spk.totalFrames, 1u);
    EXPECT_EQ(hp.counts[0], 1u);
    EXPECT_EQ(hp.totalFrames, 1u);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums, 1u);
    EXPECT_EQ(HpFrameRecorder::gFrameSums, 1u);
    EXPECT_EQ(log.Count("AddFrame: invalid volumeLevel 7", kTagEvent, ANDROID_LOG_ERROR), 1);
    EXPECT_EQ(log.Count("AddFrame: invalid volumeLevel -1", kTagEvent, ANDROID_LOG_ERROR), 1);
}

TEST_F(FrameRecorderTest, SpeakerRatesAndKeys) {
    SpkFrameRecorder music;  // mode 0
    SpkFrameRecorder game;
    game.mode = 1;
    for (int i = 0; i < 12; ++i) {
        music.RecordFrames(5, kThresholds);
    }
    for (int i = 0; i < 9; ++i) {
        music.RecordFrames(25, kThresholds);
        music.RecordFrames(100, kThresholds);
    }
    for (int i = 0; i < 90; ++i) {
        game.RecordFrames(45, kThresholds);
    }
    EXPECT_FLOAT_EQ(music.GetParamUsageRate(), 0.25f);
    EXPECT_FLOAT_EQ(music.GetParamVolUsageRate(0), 0.4f);
    EXPECT_FLOAT_EQ(music.GetParamVolUsageRate(1), 0.0f);
    EXPECT_FLOAT_EQ(music.GetParamVolUsageRate(6), 0.3f);
    EXPECT_EQ(music.GetParamVolUsageRate(7), -1.0f);
    EXPECT_EQ(music.PrintRate(), 0);

    TovaEvent event(1);
    music.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "MUSICMODELOWVOLRATE=0.400000 MUSICMODEVOLUME1RATE=0.000000 "
              "MUSICMODEVOLUME2RATE=0.300000 MUSICMODEVOLUME3RATE=0.000000 "
              "MUSICMODEVOLUME4RATE=0.000000 MUSICMODEVOLUME5RATE=0.000000 "
              "MUSICMODELOUDVOLRATE=0.300000 MUSICMODERATE=0.250000");
}

TEST_F(FrameRecorderTest, SpeakerKeyRowsFollowTheModeId) {
    struct Row {
        const char* low;
        const char* band3;
        const char* loud;
        const char* share;
    };
    const Row rows[8] = {
            {"MUSICMODELOWVOLRATE", "MUSICMODEVOLUME3RATE", "MUSICMODELOUDVOLRATE",
             "MUSICMODERATE"},
            {"GAMEMODELOWVOLRATE", "GAMEMODEVOLUME3RATE", "GAMEMODELOUDVOLRATE", "GAMEMODERATE"},
            {"MOVIEMODELOWVOLRATE", "MOVIEMODEVOLUME3RATE", "MOVIEMODELOUDVOLRATE",
             "MOVIEMODERATE"},
            {"EDUCATIONMODELOWVOLRATE", "EDUCATIONMODEVOLUME3RATE", "EDUCATIONMODELOUDVOLRATE",
             "EDUCATIONMODERATE"},
            {"VIDEOMODELOWVOLRATE", "VIDEOMODEVOLUME3RATE", "VIDEOMODELOUDVOLRATE",
             "VIDEOMODERATE"},
            {"LOWPOWERMODELOWVOLRATE", "LOWPOWERMODEVOLUME3RATE", "LOWPOWERMODELOUDVOLRATE",
             "LOWPOWERMODERATE"},
            {"RINGLOWVOLRATE", "RINGVOLUME3RATE", "RINGLOUDVOLRATE", "RINGMODERATE"},
            {"VEMODELOWVOLRATE", "VEMODEVOLUME3RATE", "VEMODELOUDVOLRATE", "VEMODERATE"},
    };
    for (int mode = 0; mode < 8; ++mode) {
        SpkFrameRecorder::gFrameSums = 0;
        SpkFrameRecorder recorder;
        recorder.mode = static_cast<uint16_t>(mode);
        recorder.AddFrame(3);
        TovaEvent event(1);
        recorder.PutInEvent(event);
        const auto& values = event.Values();
        ASSERT_EQ(values.size(), 8u) << "mode " << mode;
        EXPECT_EQ(values[0].first, rows[mode].low);
        EXPECT_EQ(values[3].first, rows[mode].band3);
        EXPECT_EQ(values[3].second, "1.000000");
        EXPECT_EQ(values[6].first, rows[mode].loud);
        EXPECT_EQ(values[7].first, rows[mode].share);
    }
}

TEST_F(FrameRecorderTest, HeadphoneReportsLowBandAgainstTheRest) {
    HpFrameRecorder listen;
    listen.mode = 1;
    HpFrameRecorder other;
    other.mode = 0;
    for (int volume : {5, 15, 35, 99}) {
        listen.RecordFrames(volume, kThresholds);
        other.RecordFrames(volume, kThresholds);
    }
    EXPECT_EQ(listen.counts[1], 2u);  // 15, and 99 above all thresholds
    TovaEvent event(1);
    listen.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "HP3DLISTENLOWRATE=0.250000 HP3DLISTENONERATE=0.750000 "
              "HP3DLISTENMODERATE=0.500000");

    const char* keys[6][3] = {
            {"HPDEFAULTLOWRATE", "HPDEFAULTONERATE", "HPDEFAULTMODERATE"},
            {"HP3DLISTENLOWRATE", "HP3DLISTENONERATE", "HP3DLISTENMODERATE"},
            {"HP3DFRONTLOWRATE", "HP3DFRONTONERATE", "HP3DFRONTMODERATE"},
            {"HP3DWIDELOWRATE", "HP3DWIDEONERATE", "HP3DWIDEMODERATE"},
            {"HP3DGRANDLOWRATE", "HP3DGRANDONERATE", "HP3DGRANDMODERATE"},
            {"HPHIFILOWRATE", "HPHIFIONERATE", "HPHIFIMODERATE"},
    };
    for (int mode = 0; mode < 6; ++mode) {
        other.mode = static_cast<uint16_t>(mode);
        TovaEvent keyed(1);
        other.PutInEvent(keyed);
        ASSERT_EQ(keyed.Values().size(), 3u);
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(keyed.Values()[k].first, keys[mode][k]);
        }
    }
}

TEST_F(FrameRecorderTest, SpeakerClearFrameEmptiesEverything) {
    SpkFrameRecorder spk;
    spk.RecordFrames(15, kThresholds);
    spk.ClearFrame();
    EXPECT_EQ(spk.totalFrames, 0u);
    EXPECT_EQ(spk.counts[1], 0u);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums, 0u);
    EXPECT_EQ(spk.GetParamUsageRate(), -1.0f);
    EXPECT_EQ(spk.GetParamVolUsageRate(1), -1.0f);
    EXPECT_EQ(spk.PrintRate(), -1);
    TovaEvent event(1);
    spk.PutInEvent(event);
    EXPECT_TRUE(event.Values().empty());
}

TEST_F(FrameRecorderTest, HeadphoneClearFrameKeepsTheBandCounts) {
    HpFrameRecorder hp;
    hp.mode = 0;
    hp.RecordFrames(5, kThresholds);
    hp.RecordFrames(25, kThresholds);
    hp.ClearFrame();
    EXPECT_EQ(hp.totalFrames, 0u);
    EXPECT_EQ(HpFrameRecorder::gFrameSums, 0u);
    EXPECT_EQ(hp.counts[0], 1u);
    EXPECT_EQ(hp.counts[2], 1u);
    TovaEvent empty(1);
    hp.PutInEvent(empty);
    EXPECT_TRUE(empty.Values().empty());

    // The kept counts show up against the new total.
    hp.AddFrame(0);
    EXPECT_FLOAT_EQ(hp.GetParamVolUsageRate(0), 2.0f);
    TovaEvent event(1);
    hp.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "HPDEFAULTLOWRATE=2.000000 HPDEFAULTONERATE=1.000000 HPDEFAULTMODERATE=1.000000");
}

TEST_F(FrameRecorderTest, FramesWithoutAGrandTotalReportNothing) {
    HpFrameRecorder kept;
    HpFrameRecorder cleared;
    kept.RecordFrames(5, kThresholds);
    cleared.RecordFrames(5, kThresholds);
    cleared.ClearFrame();  // zeroes the class total under `kept`
    EXPECT_EQ(kept.totalFrames, 1u);
    EXPECT_EQ(kept.GetParamUsageRate(), -1.0f);
    EXPECT_EQ(kept.GetParamVolUsageRate(0), -1.0f);
    EXPECT_EQ(kept.PrintRate(), -1);
    TovaEvent event(1);
    kept.PutInEvent(event);
    EXPECT_TRUE(event.Values().empty());
}

TEST_F(FrameRecorderTest, NullThresholdsCountNothing) {
    LogCapture log;
    SpkFrameRecorder spk;
    HpFrameRecorder hp;
    spk.RecordFrames(5, nullptr);
    hp.RecordFrames(5, nullptr);
    EXPECT_EQ(spk.totalFrames + hp.totalFrames, 0u);
    EXPECT_EQ(log.Count("RecordFrames: thresholds are null", kTagEvent, ANDROID_LOG_ERROR), 2);
}

}  // namespace
