// The headset-type words and the custom equaliser laid over the headphone records, checked on
// the records themselves and on what the algorithm receives.
#include <algorithm>

#include "tests/params/ParamsFixture.h"

namespace {

uint16_t U(int16_t word) {
    return static_cast<uint16_t>(word);
}

class HeadphoneOverlaysTest : public ParamsFixture {
protected:
    void SetUp() override {
        ParamsFixture::SetUp();
        const int16_t musicRow[kThresholdsPerScene] = {2, 4, 6, 8, 10, 12};  // index 5: TWO
        std::copy(musicRow, musicRow + kThresholdsPerScene, o->volumeThresholds[SCENE_MUSIC]);
        // Row r of the type table holds r * 0x100 + 0x10 + i: distinct per row and word, with
        // a high byte that shows whether a write kept or replaced it.
        for (int r = 0; r < kHpTypeRows; ++r) {
            for (int i = 0; i < kHpTypeRowWords; ++i) {
                Orlune::gParameterHpType[r * kHpTypeRowWords + i] =
                        static_cast<int16_t>(r * 0x100 + 0x10 + i);
            }
        }
        for (int16_t& w : para.words) {
            w = static_cast<int16_t>(0xAB00);
        }
        for (int16_t& w : ext.words) {
            w = static_cast<int16_t>(0xCD00);
        }
    }
    AudioOrluneMobilePara para = {};
    AudioOrluneMobileParaExt ext = {};
};

TEST_F(HeadphoneOverlaysTest, TypeRowLandsOnItsWords) {
    o->KivSetHPType(para, ext, 5);
    // w[0] and w[5] are ORed with the old high byte; w[1..4] replace only the low byte.
    EXPECT_EQ(U(para.words[117]), 0xAF10);
    EXPECT_EQ(U(para.words[118]), 0xAF10);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(U(para.words[145 + i]), 0xAB11 + i) << i;
        EXPECT_EQ(U(para.words[157 + i]), 0xAB11 + i) << i;
    }
    EXPECT_EQ(U(para.words[149]), 0xAF15);
    EXPECT_EQ(U(para.words[161]), 0xAF15);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(U(para.words[181 + i]), 0x0516 + i) << i;
        EXPECT_EQ(U(para.words[229 + i]), 0x051B + i) << i;
    }
    EXPECT_EQ(U(para.words[185]), 0x051A);
    EXPECT_EQ(U(para.words[233]), 0x051F);
    // Untouched neighbours.
    EXPECT_EQ(U(para.words[116]), 0xAB00);
    EXPECT_EQ(U(para.words[150]), 0xAB00);
    EXPECT_EQ(U(para.words[186]), 0xAB00);
    EXPECT_EQ(U(para.words[234]), 0xAB00);
    EXPECT_EQ(U(ext.words[334]), 0xCD05);
    EXPECT_EQ(ext.lphTable, &Orlune::gLphConfig[5]);
}

TEST_F(HeadphoneOverlaysTest, TypesOutsideTheTableUseRowThree) {
    o->KivSetHPType(para, ext, 20);
    EXPECT_EQ(U(para.words[181]), 0x0316);
    EXPECT_EQ(U(ext.words[334]), 0xCD03);
    EXPECT_EQ(ext.lphTable, &Orlune::gLphConfig[3]);

    o->KivSetHPType(para, ext, 17);
    EXPECT_EQ(U(para.words[181]), 0x1116);
    EXPECT_EQ(U(ext.words[334]), 0xCD11);

    o->KivSetHPType(para, ext, -2);
    EXPECT_EQ(U(para.words[181]), 0x0316);
    EXPECT_EQ(ext.lphTable, &Orlune::gLphConfig[3]);
}

TEST_F(HeadphoneOverlaysTest, CustomEqualiserIsClampedAndWrittenBack) {
    o->KivParamsSetInt(38, 6);
    o->KivParamsSetInt(18, 250);  // HP_EQ1, above the default limit of 200
    o->KivParamsSetInt(27, -12);  // HP_EQ10
    o->KivParamsSetInt(28, 77);   // HP_EQ11, which has no limit
    o->HP_PREGAIN = -300;
    para.words[0] = 0x0004;
    para.words[1] = static_cast<int16_t>(0xFF7F);
    o->SetCustomEQ(para, ext);

    EXPECT_EQ(o->HP_EQ[0], 200);
    EXPECT_EQ(U(para.words[145]), 0xC800);
    EXPECT_EQ(U(para.words[157]), 0xC800);
    EXPECT_EQ(U(para.words[154]), 0xF400);
    EXPECT_EQ(U(para.words[166]), 0xF400);
    EXPECT_EQ(U(para.words[155]), 0xAB00);
    EXPECT_EQ(U(ext.words[332]), 0x4D00);
    EXPECT_EQ(U(para.words[0]), 0x0080);
    EXPECT_EQ(U(para.words[1]), 0xFFFB);
    EXPECT_EQ(para.words[5], -300);
    EXPECT_EQ(para.words[6], -300);
}

TEST_F(HeadphoneOverlaysTest, NoClampOutsideTheCustomPresetOrWithoutALimit) {
    o->KivParamsSetInt(18, 250);
    o->SetCustomEQ(para, ext);
    EXPECT_EQ(o->HP_EQ[0], 250);
    EXPECT_EQ(U(para.words[145]), 0xFA00);

    o->KivParamsSetInt(38, 6);
    o->KivParamsSetInt(39, 0);
    o->SetCustomEQ(para, ext);
    EXPECT_EQ(o->HP_EQ[0], 250);

    o->KivParamsSetInt(39, 100);
    o->SetCustomEQ(para, ext);
    EXPECT_EQ(o->HP_EQ[0], 100);
}

TEST_F(HeadphoneOverlaysTest, AlgorithmReceivesTypeAndEqualiserOverlays) {
    Orlune::gUiType = 0;
    AddMode(41002, 21);  // custom mode, level TWO
    o->KivParamsSetInt(12, 3);
    o->KivParamsSetInt(13, 20);  // Bluetooth type beyond the table
    o->KivParamsSetInt(15, 6);   // HP_TYPE
    o->KivParamsSetInt(30, 3);
    o->KivParamsSetInt(38, 6);
    o->KivParamsSetInt(19, 230);  // HP_EQ2
    o->SetNsForHeadsetOrA2dp(2);

    const SetParaCall& seen = LastCall();
    EXPECT_EQ(seen.para.words[kMainMarkerWord], 21);
    EXPECT_EQ(o->HP_EQ[1], 200);
    EXPECT_EQ(U(seen.para.words[146]) >> 8, 200);
    // The Bluetooth type is laid over last: row 3, and type 3 in word 334 below the channels.
    EXPECT_EQ(U(seen.para.words[181]), 0x0316);
    EXPECT_EQ(U(seen.ext.words[334]), 0x0203);
    EXPECT_EQ(seen.ext.lphTable, &Orlune::gLphConfig[3]);
}

TEST_F(HeadphoneOverlaysTest, WiredTypeTenLeavesTheHeadphoneType) {
    Orlune::gUiType = 0;
    AddMode(41002, 21);
    o->KivParamsSetInt(12, 2);
    o->KivParamsSetInt(14, 10);
    o->KivParamsSetInt(15, 6);
    o->KivParamsSetInt(30, 3);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(U(LastCall().para.words[181]), 0x0616);
    EXPECT_EQ(U(LastCall().ext.words[334]), 0x0206);

    o->KivParamsSetInt(14, 9);
    o->SetNsForHeadsetOrA2dp(2);
    EXPECT_EQ(U(LastCall().para.words[181]), 0x0916);
    EXPECT_EQ(U(LastCall().ext.words[334]), 0x0209);
}

}  // namespace
