// Which tuning reaches the algorithm on headsets: the headphone mode and multichannel kind,
// the scene modes of the newer UI, the fall-backs, and the headset-type words and custom
// equaliser laid over the records.
#include <iterator>

#include "base/Log.h"
#include "config/VirtualIds.h"
#include "tests/params/ParamsFixture.h"

namespace {

class HeadphoneModesTest : public ParamsFixture {
protected:
    void SetUp() override {
        ParamsFixture::SetUp();
        o->KivParamsSetInt(kIdDeviceType, 2);
        o->KivParamsSetInt(kIdWiredHeadsetType, kNoHeadsetTypeChange);
        // Every headphone id at the default level TWO names its own records.
        for (int key = VOL_TWO; key <= vid::HeadphoneKey(HP_CUSTOM, MULTI_MODE9, VOL_TWO);
             key += vid::kHeadphoneKindStride) {
            AddMode(vid::HeadphoneIdOfKey(key), 1000 + key);
        }
        // Row r of the type table holds r * 0x100 + 0x10 + i: distinct per row and word, with
        // a high byte that shows whether a write kept or replaced it.
        ConfigUpdate update;
        for (int i = 0; i < kHpTypeRows * kHpTypeRowWords; ++i) {
            update.Tables().gParameterHpType[i] =
                    static_cast<int16_t>(i / kHpTypeRowWords * 0x100 + 0x10 + i % kHpTypeRowWords);
        }
    }
};

TEST_F(HeadphoneModesTest, ModeAndKindFromTheSettingsAndTheChannels) {
    const struct {
        int ui, hpMode, mode3d, smart, hint, channels, index, kind;  // hint: id 8, 9 or 10 set
    } cases[] = {
            // Smart mode picks from the content hints.
            {0, 0, 0, 3, 0, 2, 4, DEFAULT_MODE},
            {0, 0, 0, 2, 9, 2, 3, DEFAULT_MODE},
            {0, 0, 0, 2, 10, 2, 3, DEFAULT_MODE},
            {0, 0, 0, 2, 8, 6, 3, MULTI_MOVIE_MODE},
            {0, 0, 0, 2, 0, 2, 1, DEFAULT_MODE},
            {0, 0, 0, 1, 9, 2, 1, DEFAULT_MODE},
            {0, 2, 0, 0, 0, 2, HP_3D_OFF, DEFAULT_MODE},  // host off
            // Manual modes are shifted by the channel layout; beyond 16 is 3D off.
            {0, 1, 2, 0, 8, 6, HP_3D_FRONT, MULTI_MOVIE_MODE},
            {0, 1, 2, 0, 0, 6, HP_3D_FRONT, MULTI_MODE},
            {0, 1, 3, 0, 0, 10, HP_3D_WIDE, MULTI_MODE9},
            {0, 1, 14, 0, 0, 8, HP_3D_OFF, DEFAULT_MODE},
            // The newer UI's scenes.
            {1, 1, 0, 0, 0, 8, HP_MUSIC, MULTI_MODE},
            {1, 2, 0, 0, 8, 6, HP_MOVIE, MULTI_MOVIE_MODE},
            {1, 3, 0, 0, 0, 10, HP_GAME, MULTI_MODE9},
            {1, 4, 0, 0, 8, 2, HP_CUSTOM, DEFAULT_MODE},
            {1, 9, 0, 0, 0, 2, HP_3D_OFF, DEFAULT_MODE},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        SetUiType(static_cast<int16_t>(c.ui));
        const int sets[][2] = {{c.ui == 1 ? kIdHpModeUi1 : kIdHpModeUi0, c.hpMode},
                               {kIdHp3dMode, c.mode3d},
                               {kIdHpSmartMode, c.smart},
                               {kIdMultiMovie, c.hint == kIdMultiMovie},
                               {kIdSmartHintA, c.hint == kIdSmartHintA},
                               {kIdSmartHintB, c.hint == kIdSmartHintB}};
        for (const auto& set : sets) {
            o->KivParamsSetInt(set[0], set[1]);
        }
        o->mIoInfo.enable = 1;
        o->SetNsForHeadsetOrA2dp(c.channels);
        // Each situation reaches the records of its own id.
        EXPECT_EQ(LastMainId(), 1000 + vid::HeadphoneKey(c.index, c.kind, VOL_TWO));
        EXPECT_EQ(ExtWord(334) >> 8, c.channels);
        // Off: with the newer UI, index 0 and HP_GAME, which bypass the effect; else host mode
        // 2, and smart mode 1 in mode 0.
        const bool off = c.ui == 1 ? c.index == 0 || c.index == HP_GAME
                                   : c.hpMode == 2 || (c.hpMode == 0 && c.smart == 1);
        EXPECT_EQ(Get("EFFECT_ENABLE_STATE"), off ? "0" : "1");
        EXPECT_EQ(o->mIoInfo.enable, c.ui == 1 && off ? 0 : 1);
        // Only the custom scene lays the equaliser over the records.
        EXPECT_EQ((MainWord(0) & 0x80) != 0, c.index == HP_CUSTOM);
    }
    EXPECT_EQ(LastCall().ext.words[339], 0);  // the speaker's volume word is left alone
    // Each block hands its records over; a mode is logged when it changes.
    EXPECT_EQ(log.Count("FindParamForHP 2162: HP NvMode is currentParamMode: 202 "
                        "HP_3D_FRONT_MULTI_MOVIE_MODE_TWO currentRealParamID: 1202 "
                        "currentRealParamExtID: 1203",
                        kTagMobile, ANDROID_LOG_INFO),
              1)
            << log.Dump();
}

TEST_F(HeadphoneModesTest, MissingModesAndUnknownSettingsKeepTheRecordsAndFailuresAreReported) {
    o->KivParamsSetInt(kIdHpModeUi0, 1);
    o->KivParamsSetInt(kIdHp3dMode, 1);
    o->SetNsForHeadsetOrA2dp(2);
    const int listen = LastMainId();
    // Level ONE is not configured, then names records that are missing.
    o->KivParamsSetInt(kIdVolumeIndexHeadphone, 3);
    o->SetNsForHeadsetOrA2dp(2);
    AddMode(41081, 5000, false);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(LastMainId(), listen);
    // An unknown mode value with a 3D mode set changes nothing, not even the level.
    o->KivParamsSetInt(kIdHpModeUi0, 9);
    o->KivParamsSetInt(kIdHp3dMode, 2);
    o->KivParamsSetInt(kIdVolumeIndexHeadphone, 5);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_TRUE(log.Has("SetHP3DModeAndType error, hpMode = 9, headphone3dMode = 2", kTagMobile,
                        ANDROID_LOG_ERROR));
    EXPECT_EQ(LastMainId(), listen);
    nextResult = -3;
    o->KivParamsSetNS(2);
    EXPECT_EQ(o->outputPath, OUTPUT_HEADSET);
    EXPECT_EQ(log.CountContaining("ALGOERRORCODE=-3.000000", "tova_view"), 1);
}

// The row of the headset type lands on the record's fixed word positions.
TEST_F(HeadphoneModesTest, TypeRowLandsOnItsWords) {
    AudioOrluneMobilePara para;
    AudioOrluneMobileParaExt ext;
    std::fill(std::begin(para.words), std::end(para.words), static_cast<int16_t>(0xAB00));
    std::fill(std::begin(ext.words), std::end(ext.words), static_cast<int16_t>(0xCD00));
    auto words = [&](int first, int count) {
        return std::vector<uint16_t>(para.words + first, para.words + first + count);
    };
    using W = std::vector<uint16_t>;
    TablesPin tables(*o);  // as a block holds them
    o->KivSetHPType(para, ext, 5);
    // w[0] and w[5] are ORed with the old high byte; w[1..4] replace only the low byte.
    EXPECT_EQ(words(116, 4), (W{0xAB00, 0xAF10, 0xAF10, 0xAB00}));
    EXPECT_EQ(words(145, 6), (W{0xAB11, 0xAB12, 0xAB13, 0xAB14, 0xAF15, 0xAB00}));
    EXPECT_EQ(words(157, 5), words(145, 5));
    EXPECT_EQ(words(181, 6), (W{0x0516, 0x0517, 0x0518, 0x0519, 0x051A, 0xAB00}));
    EXPECT_EQ(words(229, 6), (W{0x051B, 0x051C, 0x051D, 0x051E, 0x051F, 0xAB00}));
    EXPECT_EQ(static_cast<uint16_t>(ext.words[334]), 0xCD05);
    EXPECT_EQ(ext.lphTable, &Orlune::gLphConfig[5]);
    // Types outside the table use row 3 and are written as 3.
    const int rows[][3] = {{20, 3, 3}, {17, 17, 17}, {-2, 3, 3}};
    for (const auto& r : rows) {
        o->KivSetHPType(para, ext, static_cast<short>(r[0]));
        EXPECT_EQ(words(181, 1)[0], r[1] * 0x100 + 0x16) << r[0];
        EXPECT_EQ(ext.lphTable, &Orlune::gLphConfig[r[1]]) << r[0];
        EXPECT_EQ(static_cast<uint16_t>(ext.words[334]), 0xCD00 + r[2]) << r[0];
    }
}

TEST_F(HeadphoneModesTest, OverlaysReachTheAlgorithm) {
    const int sets[][2] = {{kIdHpModeUi0, 3},   {kIdHpType, 6},         {kIdEqPreset, 6},
                           {kIdHpEqFirst, 250}, {kIdHpEqLast - 1, -12}, {kIdHpEqLast, 77}};
    for (const auto& s : sets) {  // custom equaliser of type 6; its preset limits bands to 200
        o->KivParamsSetInt(s[0], s[1]);
    }
    o->HP_PREGAIN = -300;
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(MainWord(145) >> 8, 200);
    EXPECT_EQ(MainWord(157) >> 8, 200);
    EXPECT_EQ(MainWord(166), 0xF400);
    EXPECT_EQ(ExtWord(332), 0x4D00);  // HP_EQ11 has no limit
    EXPECT_EQ(MainWord(0) & 0x84, 0x80);
    EXPECT_EQ(LastCall().para.words[6], -300);
    EXPECT_EQ(ExtWord(334), 0x0206);  // wired type 10 leaves the headphone type in place
    o->KivParamsSetInt(kIdWiredHeadsetType, 9);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(ExtWord(334), 0x0209);
    // On Bluetooth its own type is laid over last, and its own index sets the level.
    AddMode(vid::HeadphoneId(HP_3D_OFF, DEFAULT_MODE, VOL_FIVE), 7000);
    o->KivParamsSetInt(kIdDeviceType, 3);
    o->KivParamsSetInt(kIdBtHeadsetType, 20);
    o->KivParamsSetInt(kIdVolumeIndexBluetooth, 11);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(LastMainId(), 7000);
    EXPECT_EQ(ExtWord(334), 0x0203);
}

}  // namespace
