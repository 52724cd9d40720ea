// The host's integer, float and string setters, and its key queries.
#include <stdlib.h>

#include "base/Log.h"
#include "tests/params/ParamsFixture.h"

namespace {

using ParamSetTest = ParamsFixture;

// Ids the host has no handler for are logged as warnings and change nothing.
TEST_F(ParamSetTest, UnknownIdsAreLoggedAndIgnored) {
    for (int id : {29, static_cast<int>(kIdVoiceEnhance), 101}) {
        o->KivParamsSetInt(id, 0);
        EXPECT_TRUE(log.Has("KivParamsSetInt 1586: Invalid param " + std::to_string(id) + " 0",
                            kTagMobile, ANDROID_LOG_WARN))
                << log.Dump();
    }
    EXPECT_EQ(Orlune::gVoiceEnhanceEnable, 1);  // kIdVoiceEnhance reaches no handler
    log.Clear();
    o->KivParamsSetInt(kIdIgnored, 5);  // accepted and ignored
    EXPECT_EQ(log.Lines().size(), 1u) << log.Dump();
}

TEST_F(ParamSetTest, StringIds) {
    {
        ConfigUpdate update;
        update.Tables().gHpMapTable = {{"DEFALUT", 0}, {"Vardo BX71", 14}};
    }
    o->KivParamsSetString(kIdHeadsetName, "Vardo BX71");
    o->KivParamsSetString(kIdHeadsetName, "vardo bx71");  // the match is exact
    EXPECT_EQ(o->HP_TYPE, 14);
    EXPECT_TRUE(log.Has("SetString unknown headset name: vardo bx71, HP_TYPE stays 14", kTagMobile,
                        ANDROID_LOG_WARN))
            << log.Dump();
    // The last application of the list goes to both report records.
    o->mLadInfoIn = new android::LadReportInfo();
    o->mLadInfoOut = new android::LadReportInfo();
    o->KivParamsSetString(kIdPlayingApps, "[com.a.music, com.b.video],,  [com.c.game]");
    o->KivParamsSetString(kIdPlayingApps, " ,[] ");  // no name: nothing changes
    EXPECT_STREQ(o->mLadInfoIn->playAppName.c_str(), "com.c.game");
    EXPECT_STREQ(o->mLadInfoOut->playAppName.c_str(), "com.c.game");
}

TEST_F(ParamSetTest, CompositeReplyIsSortedWithFloatValues) {
    o->KivParamsSetInt(kIdHpType, 7);         // HP_TYPE
    o->KivParamsSetInt(kIdHpEqFirst + 2, 2);  // HP_EQ3
    o->KivParamsSetInt(kIdHpEqLast, -3);      // HP_EQ11
    o->HP_PREGAIN = -32768;
    EXPECT_EQ(Get("HP_TYPE;HP_EQ3"), "HP_EQ3=2.000000;HP_TYPE=7.000000");
    EXPECT_EQ(Get("HP_PREGAIN;HP_EQ11;HP_EQ1"),
              "HP_EQ1=0.000000;HP_EQ11=-3.000000;HP_PREGAIN=-32768.000000");
    // The stereo widen value holds its own equals sign.
    EXPECT_EQ(Get("HIFIPARA"), "HIFIPARA=STEREOWIDEN_Enable=false");
    o->KivParamsSetInt(kIdWidenEnable, 1);
    EXPECT_EQ(Get("SPK_MODE;HIFIPARA"), "HIFIPARA=STEREOWIDEN_Enable=true;SPK_MODE=0.000000");
    EXPECT_EQ(Get("VOLUME;hp_type"), "");
    // Whole-string keys match only on their own.
    EXPECT_EQ(Get("CHANNEL_SWAPPED;HP_MODE"), "HP_MODE=0.000000");
}

}  // namespace
