// Volume threshold rows from the raw configuration words, and the level rule.
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/LogCapture.h"

namespace {

void SetRaw(int first, std::initializer_list<int16_t> words) {
    std::copy(words.begin(), words.end(), Orlune::gVolumeThrRaw + first);
}

// A negative threshold word is an error of its row: logged, and that position is read as 0.
// The word stays marked for every later parse, by any instance.
TEST(VolumeLevels, NegativeWordIsLoggedAndReadAsZero) {
    auto o = std::make_unique<Orlune>();
    SetRaw(1, {3, -5, 9, 11, 13, 15});  // MUSIC
    LogCapture log;
    o->ParseVolumeThr();
    EXPECT_EQ(o->volumeThresholds[SCENE_MUSIC][1], 0);
    EXPECT_EQ(o->volumeThresholds[SCENE_MUSIC][2], 9);
    EXPECT_EQ(log.Count(" 0 KivReadConfig volumeThrFixed error", nullptr, ANDROID_LOG_ERROR), 1)
            << log.Dump();
    const int rows = log.CountContaining("KivReadConfig volumeThrFixed error");  // RING shares it
    log.Clear();
    o->ParseVolumeThr();
    EXPECT_EQ(log.CountContaining("KivReadConfig volumeThrFixed error"), rows);
}

TEST(VolumeLevels, FirstThresholdAtOrAboveTheIndexDecides) {
    auto o = std::make_unique<Orlune>();
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
