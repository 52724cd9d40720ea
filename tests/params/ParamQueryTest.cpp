// The host's key queries: whole-string keys first, then key=value requests answered from the
// recorded headphone fields.
#include <string>

#include "effect/LogTags.h"
#include "tests/params/ParamsFixture.h"

namespace {

class ParamQueryTest : public ParamsFixture {
protected:
    std::string Get(const char* keys) {
        return std::string(o->KivParamsGet(android::String8(keys)).c_str());
    }
};

TEST_F(ParamQueryTest, CompositeReplyIsSortedWithFloatValues) {
    o->KivParamsSetInt(15, 7);  // HP_TYPE
    o->KivParamsSetInt(20, 2);  // HP_EQ3
    EXPECT_EQ(Get("HP_TYPE;HP_EQ3"), "HP_EQ3=2.000000;HP_TYPE=7.000000");
    EXPECT_EQ(Get("HP_EQ3=x;HP_TYPE"), "HP_EQ3=2.000000;HP_TYPE=7.000000");

    o->KivParamsSetInt(28, -3);  // HP_EQ11
    o->HP_PREGAIN = -32768;
    o->KivParamsSetInt(31, 1);
    EXPECT_EQ(Get("HP_SMART_MODE;HP_PREGAIN;HP_EQ11;HP_EQ1"),
              "HP_EQ1=0.000000;HP_EQ11=-3.000000;HP_PREGAIN=-32768.000000;HP_SMART_MODE=1.000000");
}

TEST_F(ParamQueryTest, StereoWidenReplyHoldsItsOwnEqualsSign) {
    EXPECT_EQ(Get("HIFIPARA"), "HIFIPARA=STEREOWIDEN_Enable=false");
    o->KivParamsSetInt(0, 1);
    EXPECT_EQ(Get("HIFIPARA;SPK_MODE"), "HIFIPARA=STEREOWIDEN_Enable=true;SPK_MODE=0.000000");
    o->KivParamsSetInt(0, 2);
    EXPECT_EQ(Get("HIFIPARA"), "HIFIPARA=STEREOWIDEN_Enable=false");
}

TEST_F(ParamQueryTest, UnknownRequestsGiveAnEmptyReply) {
    EXPECT_EQ(Get("VOLUME;hp_type"), "");
    EXPECT_EQ(Get(""), "");
    // Whole-string keys match only on their own.
    EXPECT_EQ(Get("CHANNEL_SWAPPED;HP_MODE"), "HP_MODE=0.000000");
}

TEST_F(ParamQueryTest, ChannelSwappedIsClearedByReading) {
    EXPECT_EQ(Get("CHANNEL_SWAPPED"), "CHANNEL_SWAPPED=false");
    o->channelSwapped = 1;
    EXPECT_EQ(Get("CHANNEL_SWAPPED"), "CHANNEL_SWAPPED=true");
    EXPECT_EQ(Get("CHANNEL_SWAPPED"), "CHANNEL_SWAPPED=false");
}

TEST_F(ParamQueryTest, EnableStateFollowsHeadphoneModeWithoutUiType) {
    Orlune::gUiType = 0;
    const struct {
        int hpMode;
        int smartMode;
        const char* reply;
    } cases[] = {{2, 0, "0"}, {0, 1, "0"}, {0, 2, "1"}, {1, 1, "1"}, {3, 0, "1"}};
    for (const auto& c : cases) {
        o->HP_MODE = static_cast<int16_t>(c.hpMode);
        o->HP_SMART_MODE = static_cast<int16_t>(c.smartMode);
        EXPECT_EQ(Get("EFFECT_ENABLE_STATE"), c.reply) << c.hpMode << "/" << c.smartMode;
    }
}

TEST_F(ParamQueryTest, EnableStateFollowsModeIndexWithUiType) {
    Orlune::gUiType = 1;
    o->HP_MODE = 2;  // only the index in force counts now
    for (int index = 0; index <= HP_CUSTOM; ++index) {
        o->hpModeIndex = index;
        const bool off = index == HP_3D_OFF || index == HP_GAME;
        EXPECT_EQ(Get("EFFECT_ENABLE_STATE"), off ? "0" : "1") << index;
    }
}

TEST_F(ParamQueryTest, LoudModeKeysLogOnlyWhenOn) {
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_MUSIC"), "false");
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_RING"), "false");
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_ALARM"), "false");
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();

    Orlune::gIsLoudMusicVolumeMode = true;
    Orlune::gIsLoudRingVolumeMode = true;
    Orlune::gIsLoudAlarmVolumeMode = true;
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_MUSIC"), "true");
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_RING"), "true");
    EXPECT_EQ(Get("FULL_SCENE_LVM_Enable_ALARM"), "true");
    EXPECT_TRUE(log.Has("media get param gIsLoudMusicVolumeMode is true", kTagMobile,
                        ANDROID_LOG_INFO));
    EXPECT_TRUE(log.Has("ring get param gIsLoudRingVolumeMode is true"));
    EXPECT_TRUE(log.Has("alarm get param gIsLoudAlarmVolumeMode is true"));
}

}  // namespace
