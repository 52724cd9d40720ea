// Volume threshold rows from the raw configuration words, and the level rule.
#include <memory>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/LogCapture.h"

namespace {

class VolumeLevels : public ::testing::Test {
protected:
    static void SetRaw(int first, std::initializer_list<int16_t> words) {
        for (int16_t w : words) {
            Orlune::gVolumeThrRaw[first++] = w;
        }
    }
    std::unique_ptr<Orlune> o = std::make_unique<Orlune>();
};

TEST_F(VolumeLevels, RowsAreCopiedFromTheirRawWordsAndANegativeWordIsLoggedPerRow) {
    for (int i = 1; i < kVolumeThrRawWords; ++i) {
        Orlune::gVolumeThrRaw[i] = static_cast<int16_t>(100 + i);
    }
    Orlune::gVolumeThrRaw[8] = -5;  // GAME position 1, copied into GAME_HIGH_TEMP
    LogCapture log;
    o->ParseVolumeThr();
    const int firstWord[SCENE_COUNT] = {1, 7, 13, 19, 25, 31, 7, 1, 13};
    for (int scene = 0; scene < SCENE_COUNT; ++scene) {
        for (int i = 0; i < kThresholdsPerScene; ++i) {
            const int word = firstWord[scene] + i;
            EXPECT_EQ(word == 8 ? 0 : 100 + word, o->volumeThresholds[scene][i])
                    << "scene " << scene << " position " << i;
        }
    }
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size()) << log.Dump();
    EXPECT_EQ(" 1 KivReadConfig volumeThrFixed error", lines[0].message);
    EXPECT_EQ(" 6 KivReadConfig volumeThrFixed error", lines[1].message);
    EXPECT_EQ(ANDROID_LOG_ERROR, lines[1].priority);
    EXPECT_EQ(-32768, Orlune::gVolumeThrRaw[8]);
    EXPECT_FALSE(o->volumeThrSwitch);
    // The overwritten word stays negative for every later parse, by any instance.
    Orlune::gVolumeThrRaw[0] = 2;
    log.Clear();
    o->ParseVolumeThr();
    EXPECT_TRUE(o->volumeThrSwitch);
    EXPECT_EQ(2, log.CountContaining("KivReadConfig volumeThrFixed error"));
}

TEST_F(VolumeLevels, FirstThresholdAtOrAboveTheIndexDecides) {
    SetRaw(1, {3, 6, 9, 11, 13, 15});  // MUSIC, also RING
    SetRaw(7, {10, 2, 20, 0, 0, 30});  // GAME: not in order, taken as it is
    o->ParseVolumeThr();               // MOVIE stays all zero
    const int cases[][3] = {
            {SCENE_MUSIC, -4, VOL_LOW},    {SCENE_MUSIC, 3, VOL_LOW},
            {SCENE_MUSIC, 4, VOL_ONE},     {SCENE_MUSIC, 9, VOL_TWO},
            {SCENE_MUSIC, 15, VOL_FIVE},   {SCENE_MUSIC, 16, VOL_LOUD},
            {SCENE_RING, 16, VOL_LOUD},    {SCENE_RING, 9, VOL_TWO},
            {SCENE_MUSIC, 65536, VOL_LOW},  // compared as a 16-bit 0
            {SCENE_GAME, 5, VOL_LOW},      {SCENE_GAME, 15, VOL_TWO},
            {SCENE_GAME, 25, VOL_FIVE},    {SCENE_MOVIE, 0, VOL_LOW},
            {SCENE_MOVIE, 1, VOL_LOUD},
    };
    for (const auto& [scene, index, level] : cases) {
        SCOPED_TRACE(testing::Message() << "scene " << scene << " index " << index);
        o->sceneMode = scene;
        o->VolumeIndexToVolLevel(static_cast<short>(index));
        EXPECT_EQ(level, o->volumeLevel);
        if (scene == SCENE_MUSIC) {  // headphones always use the MUSIC row
            o->sceneMode = SCENE_GAME;
            o->VolumeIndexToVolLevelHp(static_cast<short>(index));
            EXPECT_EQ(level, o->hpVolumeLevel);
        }
    }
}

}  // namespace
