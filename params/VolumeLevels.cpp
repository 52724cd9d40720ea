// Volume levels: per-scene threshold rows built from the configured raw words, and the rule
// that turns a stream volume index into one of seven levels.
#include <string.h>

#include "base/Log.h"
#include "effect/orlune.h"
#include "params/BlockRules.h"

namespace {

// The raw word that starts each scene's row. The last three scenes reuse the rows of GAME,
// MUSIC and MOVIE.
constexpr int kRowStart[SCENE_COUNT] = {1, 7, 13, 19, 25, 31, 7, 1, 13};

int LevelFromRow(const int16_t (&row)[kThresholdsPerScene], short index) {
    return pipeline::VolumeLevelOf(row, kThresholdsPerScene, index);
}

// Copies `count` raw words into `row`. A negative raw word becomes threshold 0 and is itself
// overwritten with -32768, so it stays negative: every row that copies it again logs it again
// with its own scene.
void RowFromRaw(PARAM_INDEX_ZELO_SCENE scene, unsigned short* raw, int count,
                int16_t (&row)[kThresholdsPerScene]) {
    if (count < 1 || raw == nullptr || scene < 0 || scene >= SCENE_COUNT) {
        return;
    }
    const int n = count < kThresholdsPerScene ? count : kThresholdsPerScene;
    for (int i = 0; i < n; ++i) {
        const int16_t value = static_cast<int16_t>(raw[i]);
        if (value < 0) {
            ORLUNE_LOGE(kTagMobile, " %d KivReadConfig volumeThrFixed error",
                        static_cast<int>(scene));
            row[i] = 0;
            raw[i] = 0x8000;
        } else {
            row[i] = value;
        }
    }
}

}  // namespace

void Orlune::ParseVolumeThr() {
    ApplyVolumeThr(ComputeVolumeThr());
}

// The raw words are process-wide and rewritten by loads: they are read under the load lock.
Orlune::VolumeThrRows Orlune::ComputeVolumeThr() {
    std::lock_guard<std::recursive_mutex> lock(ConfigLoadLock());
    VolumeThrRows rows = {};
    for (int scene = 0; scene < SCENE_COUNT; ++scene) {
        RowFromRaw(static_cast<PARAM_INDEX_ZELO_SCENE>(scene),
                   reinterpret_cast<unsigned short*>(&gVolumeThrRaw[kRowStart[scene]]),
                   kThresholdsPerScene, rows.rows[scene]);
    }
    rows.thresholdSwitch = gVolumeThrRaw[0] != 0;
    return rows;
}

void Orlune::ApplyVolumeThr(const VolumeThrRows& rows) {
    memcpy(volumeThresholds, rows.rows, sizeof(volumeThresholds));
    volumeThrSwitch = rows.thresholdSwitch;
}

void Orlune::VolumeThrToIndex(PARAM_INDEX_ZELO_SCENE scene, unsigned short* raw, int count) {
    if (scene >= 0 && scene < SCENE_COUNT) {
        RowFromRaw(scene, raw, count, volumeThresholds[scene]);
    }
}

void Orlune::VolumeIndexToVolLevel(short index) {
    if (sceneMode < 0 || sceneMode >= SCENE_COUNT) {
        return;  // no row for this scene: the level in force stays
    }
    const int level = LevelFromRow(volumeThresholds[sceneMode], index);
    if (level != volumeLevel) {
        volumeLevel = level;
    }
}

void Orlune::VolumeIndexToVolLevelHp(short index) {
    const int level = LevelFromRow(volumeThresholds[SCENE_MUSIC], index);
    if (level != hpVolumeLevel) {
        hpVolumeLevel = level;
    }
}
