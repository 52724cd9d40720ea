// Which tuning reaches the algorithm on the loudspeaker: the virtual id from fold state,
// orientation, scene and volume level, the ring and alarm choice, the forced scenes, and the
// words written on top of the records.
#include "base/Log.h"
#include "tests/params/ParamsFixture.h"

namespace {

// Virtual id of a situation of the unfolded (FULL) device held upright.
int SpkId(int scene, int level) {
    return 4000 + scene * 20 + level;
}

// The device type is left at 0, which takes the loudspeaker path like 1.
using SpeakerModesTest = ParamsFixture;

TEST_F(SpeakerModesTest, VirtualIdCombinesTheCoordinates) {
    AddMode(4423, 11);  // FULL (the default), LANDSCAPE, GAME, THREE
    o->KivParamsSetInt(kIdOrientation, 1);
    o->KivParamsSetInt(kIdScene, 1);
    o->KivParamsSetInt(kIdVolumeIndexMusic, 7);
    o->KivParamsSetFloat(kIdVolumeDb, -12.7f);
    log.Clear();
    o->KivParamsSetNS(2);
    o->SetNsForSpeaker(8);
    EXPECT_EQ(LastMainId(), 11);
    EXPECT_EQ(o->mIoInfo.volume, -12);
    // Block channels in the high byte of word 334, the truncated volume in word 339.
    EXPECT_EQ(ExtWord(334), 0x0800);
    EXPECT_EQ(LastCall().ext.words[339], -12);
    // Handed over on every block, logged once.
    EXPECT_EQ(log.Count("SetSpkParam 2280: SPK NvMode is currentParamMode: 4423 "
                        "SPEAKER_FULL_LANDSCAPE_GAME_THREE currentRealParamID: 11 "
                        "currentRealParamExtID: 12",
                        kTagMobile, ANDROID_LOG_INFO),
              1)
            << log.Dump();
    // A failed call is logged and its new code reported at once.
    nextResult = -7;
    o->SetNsForSpeaker(2);
    EXPECT_TRUE(log.Has("SetNsForSpeaker set parameter failed, ret = -7", kTagMobile,
                        ANDROID_LOG_ERROR));
    EXPECT_EQ(log.CountContaining("ALGOERRORCODE=-7.000000", "tova_view"), 1);
}

TEST_F(SpeakerModesTest, SceneAndLevelOfEachBlock) {
    // Every scene and level names the real id 100 + 10 x scene + level; GAME at LOUD names
    // records that are missing.
    for (int scene = SCENE_MUSIC; scene < SCENE_COUNT; ++scene) {
        for (int level = VOL_LOW; level <= VOL_LOUD; ++level) {
            AddMode(SpkId(scene, level), 100 + 10 * scene + level);
        }
    }
    AddMode(SpkId(SCENE_GAME, VOL_LOUD), 999, false);
    o->volumeThresholds[SCENE_RING][0] = 3;  // the ring row differs from the others
    Orlune::gVoiceEnhanceEnable = 0;         // for the first row only
    const int cases[][5] = {
            // id, value, scene in force, its level (-1: records kept), blocks recorded
            {kIdScene, 2, SCENE_MOVIE, 2, 1},  // without voice enhancement
            {kIdScene, 0, SCENE_MUSIC, 2, 1},
            // the scene's row, the index taken as 16 bits
            {kIdVolumeIndexMusic, 2, SCENE_MUSIC, 0, 1},
            {kIdVolumeIndexMusic, 13, SCENE_MUSIC, 6, 1},
            {kIdVolumeIndexMusic, 65536 + 13, SCENE_MUSIC, 6, 1},
            {kIdVolumeIndexMusic, 5, SCENE_MUSIC, 2, 1},
            {kIdScene, 2, SCENE_VOICEENHANCE, 2, 1},         // MOVIE, with voice enhancement on
            {kIdVoiceEnhance, 0, SCENE_VOICEENHANCE, 2, 1},  // not routed: enhancement stays on
            {kIdHighTemp, 1, SCENE_VOICEENHANCE, 2, 1},      // a hot device changes only GAME ...
            {kIdScene, 1, SCENE_GAME, 2, 1},                 // ... and only when set while in GAME
            {kIdHighTemp, 1, SCENE_GAME_HIGH_TEMP, 2, 0},    // which records nothing
            {kIdScene, 1, SCENE_GAME, 2, 1},
            {kIdVolumeIndexMusic, 13, SCENE_GAME, -1, 1},
            {kIdVolumeIndexMusic, 5, SCENE_GAME, 2, 1},
            {kIdVolumeIndexAlarm, 3, SCENE_GAME, 2, 1},
            {kIdRingingState, 1, SCENE_RING, 0,
             1},  // ringing after an alarm index: that one, on the ring row
            {kIdVolumeIndexRing, 4, SCENE_RING, 1, 1},  // the ring stream set last
            {kIdRingingStateAlt, 0, SCENE_GAME, 2, 1},  // either id ends the ring
            {kIdScene, 40, 40, -1, 0},
            {kIdFoldState, 2147483647, 40, -1, 0},  // coordinates far out of range name no mode
            {kIdOrientation, -2147483647, 40, -1, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        const uint32_t recorded = SpkFrameRecorder::gFrameSums;
        const int last = LastMainId();
        o->KivParamsSetInt(c[0], c[1]);
        o->SetNsForSpeaker(2);
        EXPECT_EQ(o->sceneMode, c[2]);
        EXPECT_EQ(LastMainId(), c[3] < 0 ? last : 100 + 10 * c[2] + c[3]);
        EXPECT_EQ(LastCall().ext.words[kExtMarkerWord], LastMainId() + 1);
        EXPECT_EQ(SpkFrameRecorder::gFrameSums, recorded + c[4]);
        Orlune::gVoiceEnhanceEnable = 1;
    }
    EXPECT_EQ(o->mEvents.spkRecorders[SPK_REC_RING].counts[0], 1u);  // on the ring row, too
    EXPECT_EQ(log.CountContaining("SPEAKER_FULL_PORTRAIT_VOICEENHANCE_TWO"), 1) << log.Dump();
}

}  // namespace
