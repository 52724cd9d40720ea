// Which tuning reaches the algorithm on the loudspeaker: the virtual id from fold state,
// orientation, scene and volume level, the ring and alarm choice, the forced scenes, and the
// words written on top of the records.
#include <algorithm>
#include <string>

#include "effect/LogTags.h"
#include "tests/params/ParamsFixture.h"

namespace {

constexpr int16_t kRow[kThresholdsPerScene] = {2, 4, 6, 8, 10, 12};

class SpeakerModesTest : public ParamsFixture {
protected:
    void SetUp() override {
        ParamsFixture::SetUp();
        for (auto& row : o->volumeThresholds) {
            std::copy(kRow, kRow + kThresholdsPerScene, row);
        }
        o->KivParamsSetInt(12, 1);
    }
    // Virtual id of a speaker situation.
    static int SpkId(int fold, int orientation, int scene, int level) {
        return fold * 4000 + orientation * 400 + scene * 20 + level;
    }
};

TEST_F(SpeakerModesTest, VirtualIdCombinesTheCoordinates) {
    AddMode(4423, 11);  // FULL, LANDSCAPE, GAME, THREE
    o->KivParamsSetInt(55, 1);
    o->KivParamsSetInt(4, 1);
    o->KivParamsSetInt(35, 1);
    o->KivParamsSetInt(44, 7);
    o->KivParamsSetFloat(11, -12.7f);
    log.Clear();

    o->KivParamsSetNS(2);
    ASSERT_EQ(CallCount(), 1u);
    EXPECT_EQ(LastMainId(), 11);
    EXPECT_EQ(LastExtId(), 12);
    EXPECT_EQ(o->volumeLevel, VOL_THREE);
    EXPECT_EQ(o->outputPath, OUTPUT_SPEAKER);
    EXPECT_EQ(o->mIoInfo.volume, -12);
    // Block channels in the high byte of word 334, the truncated volume in word 339.
    EXPECT_EQ(static_cast<uint16_t>(LastCall().ext.words[334]), 0x0200);
    EXPECT_EQ(LastCall().ext.words[339], -12);
    EXPECT_EQ(log.Count("SetSpkParam 2280: SPK NvMode is currentParamMode: 4423 "
                        "SPEAKER_FULL_LANDSCAPE_GAME_THREE currentRealParamID: 11 "
                        "currentRealParamExtID: 12",
                        kTagMobile, ANDROID_LOG_INFO),
              1)
            << log.Dump();

    // The same situation is handed over again on every block but logged only once.
    o->SetNsForSpeaker(8);
    ASSERT_EQ(CallCount(), 2u);
    EXPECT_EQ(LastMainId(), 11);
    EXPECT_EQ(static_cast<uint16_t>(LastCall().ext.words[334]), 0x0800);
    EXPECT_EQ(log.CountContaining("SPK NvMode"), 1);
}

TEST_F(SpeakerModesTest, VolumeLevelFollowsTheSceneRowAsSixteenBits) {
    for (int level = VOL_LOW; level <= VOL_LOUD; ++level) {
        AddMode(SpkId(1, 0, SCENE_MUSIC, level), 100 + 2 * level);
    }
    const struct {
        int index;
        int level;
    } cases[] = {{2, 0}, {3, 1}, {12, 5}, {13, 6}, {-5, 0}, {65536, 0}, {65536 + 13, 6}};
    for (const auto& c : cases) {
        o->KivParamsSetInt(44, c.index);
        o->SetNsForSpeaker(2);
        EXPECT_EQ(o->volumeLevel, c.level) << c.index;
        EXPECT_EQ(LastMainId(), 100 + 2 * c.level) << c.index;
    }
}

TEST_F(SpeakerModesTest, RingingTakesTheRingRowAndTheStreamSetLast) {
    const int16_t ringRow[kThresholdsPerScene] = {1, 3, 5, 7, 9, 11};
    std::copy(ringRow, ringRow + kThresholdsPerScene, o->volumeThresholds[SCENE_RING]);
    AddMode(SpkId(1, 0, SCENE_RING, 4), 31);  // alarm index 9
    AddMode(SpkId(1, 0, SCENE_RING, 1), 33);  // ring index 2
    AddMode(SpkId(1, 0, SCENE_GAME, 2), 35);  // music index 5 after the ring ends

    o->KivParamsSetInt(35, 1);
    o->KivParamsSetInt(43, 2);
    o->KivParamsSetInt(45, 9);
    o->KivParamsSetInt(2, 1);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(o->sceneMode, SCENE_RING);
    EXPECT_EQ(o->ringReinitPending, 1);
    EXPECT_EQ(o->currentVolumeIndex, 9);
    EXPECT_EQ(LastMainId(), 31);

    // Setting the ring index again hands the choice back to the ring stream.
    o->KivParamsSetInt(43, 3);
    o->KivParamsSetInt(43, 2);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 33);

    // The ring scene outlives the ringing flag until the host ends it.
    o->ringingState = 0;
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 33);
    o->KivParamsSetInt(3, 0);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(o->sceneMode, SCENE_GAME);
    EXPECT_EQ(LastMainId(), 35);
}

TEST_F(SpeakerModesTest, MusicIndexIsHandedToBothReportRecords) {
    o->mLadInfoIn = new android::LadReportInfo();
    o->mLadInfoOut = new android::LadReportInfo();
    o->KivParamsSetInt(44, 6);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(o->mLadInfoIn->volumeIndex, 6);
    EXPECT_EQ(o->mLadInfoOut->volumeIndex, 6);

    // While ringing, the detector keeps the music index.
    o->KivParamsSetInt(43, 1);
    o->KivParamsSetInt(2, 1);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(o->currentVolumeIndex, 1);
    EXPECT_EQ(o->mLadInfoIn->volumeIndex, 6);
}

TEST_F(SpeakerModesTest, MovieIsProcessedAsVoiceEnhancement) {
    AddMode(SpkId(1, 0, SCENE_VOICEENHANCE, VOL_TWO), 41);
    AddMode(SpkId(1, 0, SCENE_MOVIE, VOL_TWO), 43);
    o->KivParamsSetInt(35, 2);
    o->KivParamsSetInt(48, 0);  // not routed: voice enhancement stays on
    o->SetNsForSpeaker(2);
    EXPECT_EQ(o->sceneMode, SCENE_VOICEENHANCE);
    EXPECT_EQ(LastMainId(), 41);
    EXPECT_EQ(log.CountContaining("SPEAKER_FULL_PORTRAIT_VOICEENHANCE_TWO"), 1) << log.Dump();
    EXPECT_EQ(o->mEvents.spkRecorders[SPK_REC_VE].totalFrames, 1u);
    EXPECT_EQ(o->mEvents.spkRecorders[SPK_REC_MOVIE].totalFrames, 0u);

    Orlune::gVoiceEnhanceEnable = 0;
    o->KivParamsSetInt(35, 2);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 43);
}

TEST_F(SpeakerModesTest, HotGameHasItsOwnTuningAndNoRecorder) {
    AddMode(SpkId(1, 0, SCENE_GAME_HIGH_TEMP, VOL_TWO), 51);
    o->KivParamsSetInt(35, 1);
    o->KivParamsSetInt(36, 1);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 51);
    uint32_t recorded = 0;
    for (const auto& r : o->mEvents.spkRecorders) {
        recorded += r.totalFrames;
    }
    EXPECT_EQ(recorded, 0u);
}

TEST_F(SpeakerModesTest, EachSceneCountsInItsOwnRecorder) {
    const struct {
        int scene;
        int slot;
    } cases[] = {{SCENE_MUSIC, SPK_REC_MUSIC},         {SCENE_GAME, SPK_REC_GAME},
                 {SCENE_EDUCATION, SPK_REC_EDUCATION}, {SCENE_VIDEO, SPK_REC_VIDEO},
                 {SCENE_LOWPOWER, SPK_REC_LOWPOWER},   {SCENE_RING, SPK_REC_RING}};
    o->KivParamsSetInt(44, 11);  // band 5 of the row
    o->KivParamsSetInt(43, 11);  // the ring scene counts the ring stream
    for (const auto& c : cases) {
        o->KivParamsSetInt(35, c.scene);
        o->SetNsForSpeaker(2);
        EXPECT_EQ(o->mEvents.spkRecorders[c.slot].totalFrames, 1u) << c.scene;
        EXPECT_EQ(o->mEvents.spkRecorders[c.slot].counts[5], 1u) << c.scene;
    }
    // A scene the host made up counts nowhere and names no mode.
    o->KivParamsSetInt(35, 40);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums, 6u);
}

TEST_F(SpeakerModesTest, MissingIdsKeepThePreviousRecords) {
    AddMode(SpkId(1, 0, SCENE_MUSIC, VOL_TWO), 61);
    o->SetNsForSpeaker(2);
    ASSERT_EQ(LastMainId(), 61);
    log.Clear();

    o->KivParamsSetInt(44, 13);  // LOUD: not configured
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 61);
    EXPECT_EQ(LastExtId(), 62);
    EXPECT_TRUE(log.Has("SetSpkParam 2263: SPK do not find currentParamID currentParamMode: 4006 ",
                        kTagMobile, ANDROID_LOG_DEBUG))
            << log.Dump();

    AddDanglingMode(SpkId(1, 0, SCENE_MUSIC, VOL_LOUD), 63);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 61);
    EXPECT_TRUE(
            log.Has("SetSpkParam 2270: SPK do not find currentRealParamID or "
                    "currentRealParamExtID currentParamMode: 4006 ",
                    kTagMobile, ANDROID_LOG_DEBUG));

    // Only the extended record present is still not enough.
    AudioOrluneMobileParaExt ext = {};
    Orlune::gRealMapTableExt[64] = ext;
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 61);
}

TEST_F(SpeakerModesTest, OutOfRangeCoordinatesNameNoMode) {
    AddMode(SpkId(1, 0, SCENE_MUSIC, VOL_TWO), 71);
    o->SetNsForSpeaker(2);
    o->KivParamsSetInt(55, 2147483647);
    o->KivParamsSetInt(4, -2147483647);
    o->SetNsForSpeaker(2);
    EXPECT_EQ(LastMainId(), 71);
    EXPECT_EQ(log.CountContaining("SPK do not find currentParamID"), 1);
}

TEST_F(SpeakerModesTest, FailedSetParameterIsLoggedAndCounted) {
    SetNextResult(-7);
    o->SetNsForSpeaker(2);
    EXPECT_TRUE(log.Has("SetNsForSpeaker set parameter failed, ret = -7", kTagMobile,
                        ANDROID_LOG_ERROR));
    // A new code goes to the error recorder, which reports it at once.
    EXPECT_EQ(o->mEvents.errorCodes.lastErrorCode, -7);
    EXPECT_EQ(log.CountContaining("ALGOERRORCODE=-7.000000", "tova_view"), 1) << log.Dump();

    SetNextResult(0);
    log.Clear();
    o->SetNsForSpeaker(2);
    EXPECT_EQ(log.CountContaining("set parameter failed"), 0);
}

TEST_F(SpeakerModesTest, NanVolumeGivesZero) {
    o->KivParamsSetFloat(11, __builtin_nanf(""));
    o->KivParamsSetNS(2);
    EXPECT_EQ(o->mIoInfo.volume, 0);
    EXPECT_EQ(LastCall().ext.words[339], 0);
}

}  // namespace
