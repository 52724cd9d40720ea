// Fixed name lists used in log lines, each indexed by its enumeration from 0.
#pragma once

enum OutputPath { OUTPUT_SPEAKER = 0, OUTPUT_HEADSET = 1, OUTPUT_BLUETOOTH = 2 };
enum FoldState { FOLD_FOLDED = 0, FOLD_FULL = 1, FOLD_HALF_FOLDED = 2 };
enum Orientation { ORIENTATION_PORTRAIT = 0, ORIENTATION_LANDSCAPE = 1 };
// Scene index; also the row index of the per-scene volume thresholds.
enum PARAM_INDEX_ZELO_SCENE {
    SCENE_MUSIC = 0,
    SCENE_GAME = 1,
    SCENE_MOVIE = 2,
    SCENE_EDUCATION = 3,
    SCENE_VIDEO = 4,
    SCENE_LOWPOWER = 5,
    SCENE_GAME_HIGH_TEMP = 6,
    SCENE_RING = 7,
    SCENE_VOICEENHANCE = 8,
    SCENE_COUNT = 9,
};
enum VolumeLevel { VOL_LOW = 0, VOL_ONE, VOL_TWO, VOL_THREE, VOL_FOUR, VOL_FIVE, VOL_LOUD };
enum HpModeIndex {
    HP_3D_OFF = 0,
    HP_3D_LISTEN = 1,
    HP_3D_FRONT = 2,
    HP_3D_WIDE = 3,
    HP_3D_GRAND = 4,
    HP_MUSIC = 5,
    HP_MOVIE = 6,
    HP_GAME = 7,
    HP_CUSTOM = 8,
};
enum HpMultiKind { DEFAULT_MODE = 0, MULTI_MODE = 1, MULTI_MOVIE_MODE = 2, MULTI_MODE9 = 3 };

inline constexpr const char* kOutputPathNames[] = {"SPEAKER", "HEADPSET", "BLUETOOTH"};
inline constexpr const char* kFoldStateNames[] = {"FOLDED", "FULL", "HALF_FOLDED"};
inline constexpr const char* kOrientationNames[] = {"PORTRAIT", "LANDSCAPE"};
inline constexpr const char* kSceneNames[] = {"MUSIC",          "GAME",  "MOVIE",
                                              "EDUCATION",      "VIDEO", "LOWPOWER",
                                              "GAME_HIGH_TEMP", "RING",  "VOICEENHANCE"};
inline constexpr const char* kVolumeLevelNames[] = {"LOW",  "ONE",  "TWO", "THREE",
                                                    "FOUR", "FIVE", "LOUD"};
inline constexpr const char* kHpModeNames[] = {"HP_3D_OFF",  "HP_3D_LISTEN", "HP_3D_FRONT",
                                               "HP_3D_WIDE", "HP_3D_GRAND",  "HP_MUSIC",
                                               "HP_MOVIE",   "HP_GAME",      "HP_CUSTOM"};
inline constexpr const char* kParamModeNames[] = {"DEFAULT_MODE", "MULTI_MODE", "MULTI_MOVIE_MODE",
                                                  "MULTI_MODE9"};

// Name of entry `i` of a list, or "UNKNOWN" when out of range (log lines never index past a
// list, whatever the host set).
template <typename T, int N>
constexpr const char* NameOf(const T (&list)[N], int i) {
    return (i >= 0 && i < N) ? list[i] : "UNKNOWN";
}
