// Volume threshold rows from the raw configuration words, and the level rule.
#include <memory>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/LogCapture.h"

namespace {

class VolumeLevels : public ::testing::Test {
protected:
    // Raw words 1..36: row r (0..5) holds base + 6r + i, so every row is told apart.
    static void FillRaw(int base) {
        for (int i = 1; i < kVolumeThrRawWords; ++i) {
            Orlune::gVolumeThrRaw[i] = static_cast<int16_t>(base + i);
        }
    }
    std::unique_ptr<Orlune> o = std::make_unique<Orlune>();
};

TEST_F(VolumeLevels, RowsComeFromTheirRawWordsAndTheLastThreeAreCopies) {
    FillRaw(100);
    Orlune::gVolumeThrRaw[0] = 0;
    o->ParseVolumeThr();
    const int expectedFirstWord[SCENE_COUNT] = {1, 7, 13, 19, 25, 31, 7, 1, 13};
    for (int scene = 0; scene < SCENE_COUNT; ++scene) {
        for (int i = 0; i < kThresholdsPerScene; ++i) {
            EXPECT_EQ(100 + expectedFirstWord[scene] + i, o->volumeThresholds[scene][i])
                    << "scene " << scene << " position " << i;
        }
    }
    EXPECT_FALSE(o->volumeThrSwitch);
    Orlune::gVolumeThrRaw[0] = 2;
    o->ParseVolumeThr();
    EXPECT_TRUE(o->volumeThrSwitch);
}

TEST_F(VolumeLevels, NegativeWordIsLoggedForEveryRowThatCopiesIt) {
    FillRaw(0);
    Orlune::gVolumeThrRaw[8] = -5;  // GAME position 1, copied into GAME_HIGH_TEMP
    LogCapture log;
    o->ParseVolumeThr();
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size()) << log.Dump();
    EXPECT_EQ(" 1 KivReadConfig volumeThrFixed error", lines[0].message);
    EXPECT_EQ(" 6 KivReadConfig volumeThrFixed error", lines[1].message);
    EXPECT_EQ(ANDROID_LOG_ERROR, lines[1].priority);
    EXPECT_EQ(0, o->volumeThresholds[SCENE_GAME][1]);
    EXPECT_EQ(0, o->volumeThresholds[SCENE_GAME_HIGH_TEMP][1]);
    EXPECT_EQ(-32768, Orlune::gVolumeThrRaw[8]);
    // The overwritten word stays negative for every later parse, by any instance.
    log.Clear();
    auto second = std::make_unique<Orlune>();
    second->ParseVolumeThr();
    EXPECT_EQ(2, log.CountContaining("KivReadConfig volumeThrFixed error"));
}

TEST_F(VolumeLevels, MusicRowDecidesLevelsForMusicRingAndHeadphones) {
    const int16_t row[] = {3, 6, 9, 11, 13, 15};
    for (int i = 0; i < 6; ++i) {
        Orlune::gVolumeThrRaw[1 + i] = row[i];
    }
    o->ParseVolumeThr();
    struct {
        short index;
        int level;
    } cases[] = {{-4, VOL_LOW},
                 {3, VOL_LOW},
                 {4, VOL_ONE},
                 {9, VOL_TWO},
                 {15, VOL_FIVE},
                 {16, VOL_LOUD},
                 {static_cast<short>(65536), VOL_LOW}};
    for (int scene : {SCENE_MUSIC, SCENE_RING}) {
        o->sceneMode = scene;
        for (const auto& c : cases) {
            o->VolumeIndexToVolLevel(c.index);
            EXPECT_EQ(c.level, o->volumeLevel) << "scene " << scene << " index " << c.index;
            o->VolumeIndexToVolLevelHp(c.index);
            EXPECT_EQ(c.level, o->hpVolumeLevel) << "index " << c.index;
        }
    }
}

TEST_F(VolumeLevels, EmptyConfigurationGivesLowAtZeroAndLoudAbove) {
    o->ParseVolumeThr();
    o->sceneMode = SCENE_GAME;
    o->VolumeIndexToVolLevel(0);
    EXPECT_EQ(VOL_LOW, o->volumeLevel);
    o->VolumeIndexToVolLevel(1);
    EXPECT_EQ(VOL_LOUD, o->volumeLevel);
}

TEST_F(VolumeLevels, UnorderedRowsAreTakenAsTheyAre) {
    const int16_t row[] = {10, 2, 20, 0, 0, 30};
    for (int i = 0; i < 6; ++i) {
        Orlune::gVolumeThrRaw[7 + i] = row[i];  // GAME
    }
    o->ParseVolumeThr();
    o->sceneMode = SCENE_GAME;
    o->VolumeIndexToVolLevel(5);
    EXPECT_EQ(VOL_LOW, o->volumeLevel);
    o->VolumeIndexToVolLevel(15);
    EXPECT_EQ(VOL_TWO, o->volumeLevel);
    o->VolumeIndexToVolLevel(25);
    EXPECT_EQ(VOL_FIVE, o->volumeLevel);
}

TEST_F(VolumeLevels, CopyingIgnoresCountsBelowOneAndUnknownScenes) {
    unsigned short raw[8] = {4, 5, 6, 7, 8, 9, 10, 11};
    o->VolumeThrToIndex(SCENE_VIDEO, raw, 0);
    EXPECT_EQ(0, o->volumeThresholds[SCENE_VIDEO][0]);
    o->VolumeThrToIndex(SCENE_VIDEO, raw, 2);
    EXPECT_EQ(5, o->volumeThresholds[SCENE_VIDEO][1]);
    EXPECT_EQ(0, o->volumeThresholds[SCENE_VIDEO][2]);
    o->VolumeThrToIndex(SCENE_VIDEO, raw, 8);  // a row holds six
    EXPECT_EQ(9, o->volumeThresholds[SCENE_VIDEO][5]);
    EXPECT_EQ(0, o->volumeThresholds[SCENE_LOWPOWER][0]);
    o->VolumeThrToIndex(static_cast<PARAM_INDEX_ZELO_SCENE>(SCENE_COUNT), raw, 6);
    o->sceneMode = 12;
    o->volumeLevel = VOL_THREE;
    o->VolumeIndexToVolLevel(100);
    EXPECT_EQ(VOL_THREE, o->volumeLevel);
}

}  // namespace
