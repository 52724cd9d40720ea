// The host's integer, float and string setters: what each id records, what is refused, and
// the ids that act at once.
#include <stdlib.h>
#include <unistd.h>

#include <string>

#include "effect/LogTags.h"
#include "tests/params/ParamsFixture.h"

namespace {

using ParamSetTest = ParamsFixture;

TEST_F(ParamSetTest, NothingIsRecordedBeforeTheAlgorithmIsBound) {
    o->initialised = 0;
    o->KivParamsSetInt(0, 1);
    o->KivParamsSetInt(12, 2);
    o->KivParamsSetFloat(11, -3.0f);
    Orlune::gHpMapTable["HS"] = 4;
    o->KivParamsSetString(54, "HS");
    EXPECT_EQ(o->stereoWidenEnable, 0);
    EXPECT_EQ(o->mDeviceType, 0);
    EXPECT_NE(o->volumeDb, -3.0f);
    EXPECT_EQ(o->HP_TYPE, 0);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
}

TEST_F(ParamSetTest, EachSetIsLoggedAndInvalidIdsAreRefused) {
    o->KivParamsSetInt(12, 2);
    EXPECT_TRUE(log.Has("KivParamsSetInt: Param 12 is set to 2", kTagMobile, ANDROID_LOG_INFO));

    // 48 reaches no handler, so voice enhancement stays on.
    for (int id : {11, 29, 48, 49, 50, 54, 56, 99, 101, -1}) {
        o->KivParamsSetInt(id, 0);
        EXPECT_TRUE(log.Has("KivParamsSetInt 1586: Invalid param " + std::to_string(id) + " 0",
                            kTagMobile, ANDROID_LOG_WARN))
                << id;
    }
    EXPECT_EQ(Orlune::gVoiceEnhanceEnable, 1);

    // The APK handler itself does know 48.
    o->SetKivAPKParam(48, 0);
    EXPECT_EQ(Orlune::gVoiceEnhanceEnable, 0);

    log.Clear();
    o->KivParamsSetInt(34, 5);
    ASSERT_EQ(log.Lines().size(), 1u) << log.Dump();
    EXPECT_EQ(log.Lines()[0].message, "KivParamsSetInt: Param 34 is set to 5");

    o->SetKivHEQParam(40, 1);
    EXPECT_TRUE(log.Has("invalid HEQ parameter 40", kTagMobile, ANDROID_LOG_WARN));
}

TEST_F(ParamSetTest, HeadphoneModeIdDependsOnUiType) {
    Orlune::gUiType = 0;
    o->KivParamsSetInt(53, 4);
    EXPECT_EQ(o->HP_MODE, 0);
    o->KivParamsSetInt(30, 3);
    EXPECT_EQ(o->HP_MODE, 3);

    Orlune::gUiType = 1;
    o->KivParamsSetInt(30, 2);
    EXPECT_EQ(o->HP_MODE, 3);
    o->KivParamsSetInt(53, 4);
    EXPECT_EQ(o->HP_MODE, 4);
}

TEST_F(ParamSetTest, VolumeIndicesLogChangesAndPickRingOrAlarm) {
    o->KivParamsSetInt(45, 9);
    EXPECT_TRUE(Orlune::gIsAlarmMode);
    EXPECT_TRUE(log.Has("alarmVolumeIndex = 9, gIsAlarmMode:1", kTagMobile, ANDROID_LOG_INFO));
    o->KivParamsSetInt(43, 4);
    EXPECT_FALSE(Orlune::gIsAlarmMode);
    EXPECT_TRUE(log.Has("ringVolumeIndex = 4, gIsAlarmMode:0"));
    o->KivParamsSetInt(44, 8);
    o->KivParamsSetInt(46, 3);
    o->KivParamsSetInt(47, 2);
    EXPECT_TRUE(log.Has("musicVolumeIndex = 8"));
    EXPECT_TRUE(log.Has("hpVolumeIndex = 3"));
    EXPECT_TRUE(log.Has("btVolumeIndex = 2"));

    // An unchanged index neither logs nor flips the alarm mode.
    log.Clear();
    o->KivParamsSetInt(45, 9);
    o->KivParamsSetInt(44, 8);
    EXPECT_FALSE(Orlune::gIsAlarmMode);
    EXPECT_EQ(log.Lines().size(), 2u) << log.Dump();
}

// Counts the set-up calls that reach the instance's own virtual slot.
class RegionOrlune : public Orlune {
public:
    void KivOutProcPlayInit() override { ++initCalls; }
    int initCalls = 0;
};

TEST_F(ParamSetTest, RegionSwitchRerunsSetUpOnceThroughTheVirtualSlot) {
    std::unique_ptr<RegionOrlune> r = std::make_unique<RegionOrlune>();
    r->initialised = 1;
    r->KivParamsSetInt(1, 0);
    r->KivParamsSetInt(1, 2);
    EXPECT_EQ(r->initCalls, 0);
    EXPECT_FALSE(Orlune::gMusicRegionEnable);
    r->KivParamsSetInt(1, 1);
    EXPECT_EQ(r->initCalls, 1);
    EXPECT_TRUE(Orlune::gMusicRegionEnable);
    r->KivParamsSetInt(1, 1);
    EXPECT_EQ(r->initCalls, 1);
}

TEST_F(ParamSetTest, ReloadEmptiesEveryMapAndRereadsTheConfiguration) {
    char root[] = "/tmp/params_reload_XXXXXX";
    ASSERT_NE(mkdtemp(root), nullptr);
    setenv("ORLUNE_DEVICE_ROOT", root, 1);
    AddMode(0, 1);
    Orlune::gHpMapTable["DEFALUT"] = 0;
    o->volumeThresholds[SCENE_MUSIC][0] = 9;

    o->KivParamsSetInt(33, 0);
    EXPECT_FALSE(Orlune::gVituralMapTable.empty());
    o->KivParamsSetInt(33, 1);
    EXPECT_TRUE(log.Has("kiv config is updated by pc tool", kTagMobile, ANDROID_LOG_INFO));
    // No files under the device root: the maps stay empty, placeholders included, and the
    // rows are rebuilt from the (zero) raw thresholds.
    EXPECT_TRUE(Orlune::gVituralMapTable.empty());
    EXPECT_TRUE(Orlune::gRealMapTable.empty());
    EXPECT_TRUE(Orlune::gRealMapTableExt.empty());
    EXPECT_TRUE(Orlune::gHpMapTable.empty());
    EXPECT_EQ(o->volumeThresholds[SCENE_MUSIC][0], 0);
    unsetenv("ORLUNE_DEVICE_ROOT");
    rmdir(root);
}

TEST_F(ParamSetTest, FloatVolumeIsStoredAndLoggedOnChange) {
    o->KivParamsSetFloat(11, -10.5f);
    EXPECT_EQ(o->volumeDb, -10.5f);
    EXPECT_TRUE(log.Has("volumeDb = -10.500000", kTagMobile, ANDROID_LOG_INFO));
    log.Clear();
    o->KivParamsSetFloat(11, -10.5f);
    o->KivParamsSetFloat(12, 1.0f);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
}

TEST_F(ParamSetTest, DetectorVolumesNeedTheReportRecords) {
    o->KivParamsSetFloat(57, 0.5f);
    EXPECT_EQ(o->masterVolume, 0.0f);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();

    o->mLadInfoIn = new android::LadReportInfo();
    o->mLadInfoOut = new android::LadReportInfo();
    o->KivParamsSetFloat(57, 0.5f);
    o->KivParamsSetFloat(58, 0.25f);
    o->KivParamsSetFloat(59, 1.0f);
    EXPECT_EQ(o->masterVolume, 0.5f);
    EXPECT_EQ(o->typeVolume, 0.25f);
    EXPECT_EQ(o->clientVolume, 1.0f);
    EXPECT_TRUE(log.Has("masterVolume = 0.500000", kTagMobile, ANDROID_LOG_INFO));
    EXPECT_TRUE(log.Has("typeVolume = 0.250000"));
    EXPECT_TRUE(log.Has("clientVolume = 1.000000"));
    log.Clear();
    o->KivParamsSetFloat(57, 0.5f);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
}

TEST_F(ParamSetTest, HeadsetNameMapsToTypeByExactMatch) {
    Orlune::gHpMapTable = {{"DEFALUT", 0}, {"Vardo BX71", 14}};
    o->KivParamsSetString(54, "Vardo BX71");
    EXPECT_EQ(o->HP_TYPE, 14);
    o->KivParamsSetString(54, "vardo bx71");
    EXPECT_EQ(o->HP_TYPE, 14);
    EXPECT_TRUE(log.Has("SetString unknown headset name: vardo bx71, HP_TYPE stays 14", kTagMobile,
                        ANDROID_LOG_WARN))
            << log.Dump();
    o->KivParamsSetString(54, "DEFAULT");
    EXPECT_EQ(o->HP_TYPE, 14);
    o->KivParamsSetString(54, "DEFALUT");
    EXPECT_EQ(o->HP_TYPE, 0);
}

TEST_F(ParamSetTest, LastApplicationOfTheListGoesToBothReportRecords) {
    o->mLadInfoIn = new android::LadReportInfo();
    o->mLadInfoOut = new android::LadReportInfo();
    o->KivParamsSetString(56, "[com.a.music, com.b.video],,  [com.c.game]");
    EXPECT_STREQ(o->mLadInfoIn->playAppName.c_str(), "com.c.game");
    EXPECT_STREQ(o->mLadInfoOut->playAppName.c_str(), "com.c.game");

    // A list without a name changes nothing.
    o->KivParamsSetString(56, " ,[] ");
    EXPECT_STREQ(o->mLadInfoIn->playAppName.c_str(), "com.c.game");
}

TEST_F(ParamSetTest, OtherStringIdsAreLoggedAsUnsupported) {
    o->KivParamsSetString(55, "abc");
    EXPECT_TRUE(log.Has("SetString Unsupport param: 55, value: abc", kTagMobile, ANDROID_LOG_INFO));
}

}  // namespace
