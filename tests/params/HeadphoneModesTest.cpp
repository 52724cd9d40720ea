// Which tuning reaches the algorithm on headsets: the headphone mode and multichannel kind,
// the volume level of the headset's stream, the scene modes of the newer UI, and the
// fall-backs when a mode is not configured.
#include <algorithm>
#include <string>
#include <utility>

#include "effect/LogTags.h"
#include "tests/params/ParamsFixture.h"

namespace {

constexpr int16_t kRow[kThresholdsPerScene] = {2, 4, 6, 8, 10, 12};

class HeadphoneModesTest : public ParamsFixture {
protected:
    void SetUp() override {
        ParamsFixture::SetUp();
        std::copy(kRow, kRow + kThresholdsPerScene, o->volumeThresholds[SCENE_MUSIC]);
        Orlune::gUiType = 0;
        o->KivParamsSetInt(12, 2);
        o->KivParamsSetInt(14, kNoHeadsetTypeChange);
        // Every headphone mode key with volume level TWO (index 5) names real id 1000 + key.
        for (int index = HP_3D_OFF; index <= HP_CUSTOM; ++index) {
            for (int kind = DEFAULT_MODE; kind <= MULTI_MODE9; ++kind) {
                const int key = HpKey(index, kind, VOL_TWO);
                AddMode(41000 + key, 1000 + key);
            }
        }
    }
    static int HpKey(int index, int kind, int level) { return index * 80 + kind * 20 + level; }
    // The mode key of the records the algorithm received last.
    static int LastKey() { return LastMainId() - 1000; }
};

TEST_F(HeadphoneModesTest, SmartModePicksFromTheContentHints) {
    const struct {
        int smart, hint9, movie, hint10, mode;
    } cases[] = {{3, 0, 0, 0, 4}, {2, 1, 0, 0, 3}, {2, 0, 1, 0, 3}, {2, 0, 0, 1, 3},
                 {2, 0, 0, 0, 1}, {0, 1, 1, 1, 1}, {1, 1, 1, 1, 1}};
    o->KivParamsSetInt(30, 0);
    for (const auto& c : cases) {
        o->KivParamsSetInt(31, c.smart);
        o->KivParamsSetInt(9, c.hint9);
        o->KivParamsSetInt(8, c.movie);
        o->KivParamsSetInt(10, c.hint10);
        o->SetNsForHeadsetOrA2dp(2);
        EXPECT_EQ(o->hpModeIndex, c.mode) << c.smart << c.hint9 << c.movie << c.hint10;
        EXPECT_EQ(o->hpMultiKind, DEFAULT_MODE);
        EXPECT_EQ(LastKey(), HpKey(c.mode, DEFAULT_MODE, VOL_TWO));
    }
    // The same choice as a function of its own.
    o->KivParamsSetInt(31, 3);
    int channels = 10;
    o->SetHP3DMode(channels);
    EXPECT_EQ(o->hpModeIndex, 4);
    EXPECT_EQ(o->hpMultiKind, MULTI_MODE9);
}

TEST_F(HeadphoneModesTest, ManualModeIsShiftedByTheChannelLayout) {
    o->KivParamsSetInt(30, 1);
    o->KivParamsSetInt(17, 2);  // FRONT
    o->KivParamsSetInt(8, 1);
    log.Clear();
    o->SetNsForHeadsetOrA2dp(6);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_FRONT, MULTI_MOVIE_MODE, VOL_TWO));
    EXPECT_EQ(log.Count("FindParamForHP 2162: HP NvMode is currentParamMode: 202 "
                        "HP_3D_FRONT_MULTI_MOVIE_MODE_TWO currentRealParamID: 1202 "
                        "currentRealParamExtID: 1203",
                        kTagMobile, ANDROID_LOG_INFO),
              1)
            << log.Dump();

    o->KivParamsSetInt(8, 0);
    o->SetNsForHeadsetOrA2dp(6);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_FRONT, MULTI_MODE, VOL_TWO));
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_FRONT, DEFAULT_MODE, VOL_TWO));

    o->KivParamsSetInt(17, 3);  // WIDE on ten channels: mapped mode 15
    o->SetNsForHeadsetOrA2dp(10);
    EXPECT_EQ(o->hpModeIndex, HP_3D_WIDE);
    EXPECT_EQ(o->hpMultiKind, MULTI_MODE9);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_WIDE, MULTI_MODE9, VOL_TWO));
    // Channels go into the high byte of word 334; word 339 is the speaker's alone.
    EXPECT_EQ(static_cast<uint16_t>(LastCall().ext.words[334]) >> 8, 10);
    EXPECT_EQ(LastCall().ext.words[339], 0);
    EXPECT_EQ(log.CountContaining("HP NvMode"), 4);
}

TEST_F(HeadphoneModesTest, ModesBeyondSixteenFallBackToOff) {
    o->KivParamsSetInt(30, 1);
    o->KivParamsSetInt(17, 7);  // on stereo content mode 7 is a multichannel key
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(o->hpModeIndex, HP_3D_WIDE);
    EXPECT_EQ(o->hpMultiKind, MULTI_MODE);

    o->KivParamsSetInt(17, 14);
    o->SetNsForHeadsetOrA2dp(8);  // 14 + 4
    EXPECT_TRUE(log.Has("invalid mode 18, use normal instead", kTagMobile, ANDROID_LOG_WARN))
            << log.Dump();
    EXPECT_EQ(LastKey(), HpKey(HP_3D_OFF, DEFAULT_MODE, VOL_TWO));
    EXPECT_EQ(o->mEvents.hpRecorders[HP_REC_DEFAULT].totalFrames, 1u);

    o->KivParamsSetInt(17, -1);
    o->SetNsForHeadsetOrA2dp(10);  // -1 + 12 = 11: the movie range
    EXPECT_EQ(o->hpModeIndex, HP_3D_WIDE);
    EXPECT_EQ(o->hpMultiKind, MULTI_MOVIE_MODE);
}

TEST_F(HeadphoneModesTest, RangeSettersFallBackAsymmetrically) {
    o->SetMultiMovieMode(10);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(2, 2));
    // The two upper ranges ignore a value outside them ...
    o->SetMultiMovieMode(13);
    o->SetMultiMode9(12);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(2, 2));
    o->SetMultiMode9(16);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(4, 3));
    // ... the two lower ones fall back to 3D off.
    o->SetMultiMode(4);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(0, 0));
    o->SetMultiMode(5);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(1, 1));
    o->SetNormalMode(5);
    EXPECT_EQ(std::make_pair(o->hpModeIndex, o->hpMultiKind), std::make_pair(0, 0));
}

TEST_F(HeadphoneModesTest, HostOffRecordsTheIndexInForceBeforeUpdatingIt) {
    o->KivParamsSetInt(30, 2);
    o->KivParamsSetInt(46, 13);
    o->currentVolumeIndex = 1;
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(o->hpModeIndex, HP_3D_OFF);
    EXPECT_EQ(o->currentVolumeIndex, 13);
    EXPECT_EQ(o->hpVolumeLevel, VOL_LOUD);
    EXPECT_EQ(o->mEvents.hpRecorders[HP_REC_HIFI].totalFrames, 1u);
    EXPECT_EQ(o->mEvents.hpRecorders[HP_REC_HIFI].counts[0], 1u);
    EXPECT_EQ(o->mEvents.hpRecorders[HP_REC_DEFAULT].totalFrames, 0u);
    EXPECT_STREQ(o->KivParamsGet(android::String8("EFFECT_ENABLE_STATE")).c_str(), "0");
}

TEST_F(HeadphoneModesTest, BluetoothTakesItsOwnIndexAgainstTheMusicRow) {
    AddMode(41000 + HpKey(HP_3D_LISTEN, DEFAULT_MODE, VOL_FIVE), 7001);
    o->KivParamsSetInt(12, 3);
    o->KivParamsSetInt(46, 1);
    o->KivParamsSetInt(47, 11);
    o->sceneMode = SCENE_GAME;  // the scene row does not matter on headphones
    o->volumeThresholds[SCENE_GAME][5] = 0;
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(o->currentVolumeIndex, 11);
    EXPECT_EQ(LastMainId(), 7001);
    EXPECT_EQ(o->mEvents.hpRecorders[HP_REC_3DLISTEN].totalFrames, 1u);
}

TEST_F(HeadphoneModesTest, UnknownModeValueWithA3DModeChangesNothing) {
    o->KivParamsSetInt(30, 1);
    o->KivParamsSetInt(17, 2);
    o->SetNsForHeadsetOrA2dp(2);
    const int before = LastKey();
    o->KivParamsSetInt(30, 9);
    o->KivParamsSetInt(46, 13);  // would be another level if anything were looked up
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_TRUE(log.Has("SetHP3DModeAndType error, hpMode = 9, headphone3dMode = 2", kTagMobile,
                        ANDROID_LOG_ERROR));
    EXPECT_EQ(LastKey(), before);
    EXPECT_EQ(o->hpModeIndex, HP_3D_FRONT);

    // Without a 3D mode the same value means the custom equaliser.
    o->KivParamsSetInt(17, 0);
    o->KivParamsSetInt(46, 5);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_OFF, DEFAULT_MODE, VOL_TWO));
    EXPECT_EQ(static_cast<uint16_t>(LastCall().para.words[0]) & 0x84, 0x80);
}

TEST_F(HeadphoneModesTest, SceneModesOfTheNewerUi) {
    Orlune::gUiType = 1;
    const struct {
        int hpMode, channels, movie, index, kind, recorder;
        bool bypass;
    } cases[] = {
            {1, 8, 0, HP_MUSIC, MULTI_MODE, HP_REC_3DLISTEN, false},
            {2, 6, 1, HP_MOVIE, MULTI_MOVIE_MODE, HP_REC_3DFRONT, false},
            {3, 10, 0, HP_GAME, MULTI_MODE9, HP_REC_3DWIDE, true},
            {4, 2, 1, HP_CUSTOM, DEFAULT_MODE, HP_REC_3DGRAND, false},
            {0, 2, 0, HP_3D_OFF, DEFAULT_MODE, HP_REC_DEFAULT, true},
            {9, 2, 0, HP_3D_OFF, DEFAULT_MODE, HP_REC_DEFAULT, true},
    };
    for (const auto& c : cases) {
        o->HP_MODE = static_cast<int16_t>(c.hpMode);
        o->KivParamsSetInt(8, c.movie);
        o->mIoInfo.enable = 1;
        const uint32_t recorded = o->mEvents.hpRecorders[c.recorder].totalFrames;
        o->SetNsForHeadsetOrA2dp(c.channels);
        EXPECT_EQ(o->hpModeIndex, c.index) << c.hpMode;
        EXPECT_EQ(o->hpMultiKind, c.kind) << c.hpMode;
        EXPECT_EQ(LastKey(), HpKey(c.index, c.kind, VOL_TWO)) << c.hpMode;
        EXPECT_EQ(o->mIoInfo.enable, c.bypass ? 0 : 1) << c.hpMode;
        EXPECT_EQ(o->mEvents.hpRecorders[c.recorder].totalFrames, recorded + 1) << c.hpMode;
        // Only the custom scene lays the equaliser over the records.
        const bool eq = (static_cast<uint16_t>(LastCall().para.words[0]) & 0x80) != 0;
        EXPECT_EQ(eq, c.index == HP_CUSTOM) << c.hpMode;
    }
}

TEST_F(HeadphoneModesTest, MissingModesKeepThePreviousRecords) {
    o->KivParamsSetInt(30, 1);
    o->KivParamsSetInt(17, 1);
    o->SetNsForHeadsetOrA2dp(2);
    ASSERT_EQ(LastKey(), HpKey(HP_3D_LISTEN, DEFAULT_MODE, VOL_TWO));
    log.Clear();

    o->KivParamsSetInt(46, 3);  // level ONE is not configured
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(LastKey(), HpKey(HP_3D_LISTEN, DEFAULT_MODE, VOL_TWO));
    EXPECT_TRUE(log.Has("FindParamForHP 2146: HP do not find currentParamID currentParamMode: 81 ",
                        kTagMobile, ANDROID_LOG_DEBUG))
            << log.Dump();
    EXPECT_EQ(o->FindParamForHP(), -1);

    AddDanglingMode(41081, 5000);
    EXPECT_EQ(o->FindParamForHP(), -1);
    EXPECT_TRUE(
            log.Has("FindParamForHP 2153: HP do not find currentRealParamID or "
                    "currentRealParamExtID currentParamMode: 81 ",
                    kTagMobile, ANDROID_LOG_DEBUG));
    AddMode(41081, 5000);
    EXPECT_EQ(o->FindParamForHP(), 0);
}

TEST_F(HeadphoneModesTest, RingRestartsTheAlgorithmOnceOnHeadphones) {
    o->ringReinitPending = 1;
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(InitCalls(), 1);
    EXPECT_EQ(o->ringReinitPending, 0);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(InitCalls(), 1);
}

TEST_F(HeadphoneModesTest, FailedSetParameterIsLoggedAndCounted) {
    SetNextResult(-3);
    o->KivParamsSetNS(2);
    EXPECT_EQ(o->outputPath, OUTPUT_HEADSET);
    EXPECT_TRUE(log.Has("SetNsForHeadsetOrA2dp set parameter failed, ret = -3", kTagMobile,
                        ANDROID_LOG_ERROR));
    EXPECT_EQ(o->mEvents.errorCodes.lastErrorCode, -3);
}

}  // namespace
