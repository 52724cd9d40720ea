// Virtual parameter ids: the keys of the virtual map, each naming one tuning situation. The mode
// logic composes them on every block, the table pointers and the direct tables are set for
// their ranges, and the tools list, decode and draw them; all of them use the rules below.
//
//   loudspeaker  fold * 4000 + orientation * 400 + scene * 20 + level
//   headphones   41000 + mode * 80 + kind * 20 + level
//
// The numbers are the configuration files' interface and must not move.
#pragma once

#include <stdint.h>

#include "config/NameLists.h"

namespace vid {

// Loudspeaker coordinates and their counts. Each stride leaves room above its range: 20 ids per
// scene for 7 levels, 400 per orientation for 9 scenes, 4000 per fold state for 2 orientations.
constexpr int32_t kSpeakerSceneStride = 20;
constexpr int32_t kSpeakerOrientationStride = 400;
constexpr int32_t kSpeakerFoldStride = 4000;
constexpr int kSpeakerFolds = 3;         // FoldState: folded, full, half folded
constexpr int kSpeakerOrientations = 2;  // Orientation: portrait, landscape
constexpr int kSpeakerScenes = SCENE_COUNT;
constexpr int kLevels = VOL_LOUD + 1;  // VolumeLevel LOW .. LOUD, speaker and headphones

// Headphone coordinates. The base lies above every loudspeaker id; the part below it (mode *
// 80 + kind * 20 + level) is the "mode key" that the headphone log lines print.
constexpr int32_t kHeadphoneBase = 41000;
constexpr int32_t kHeadphoneKindStride = 20;      // 7 levels per kind
constexpr int32_t kHeadphoneModeStride = 80;      // 4 kinds per mode
constexpr int kHeadphoneModes = HP_CUSTOM + 1;    // HpModeIndex HP_3D_OFF .. HP_CUSTOM
constexpr int kHeadphoneKinds = MULTI_MODE9 + 1;  // HpMultiKind DEFAULT_MODE .. MULTI_MODE9

// Loudspeaker id. Host values are not range-checked, so the sum wraps around like 32-bit
// arithmetic: an id from out-of-range values names no mode instead of overflowing.
constexpr int32_t SpeakerId(int32_t fold, int32_t orientation, int32_t scene, int32_t level) {
    return static_cast<int32_t>(static_cast<uint32_t>(
            static_cast<uint64_t>(int64_t{fold} * kSpeakerFoldStride) +
            static_cast<uint64_t>(int64_t{orientation} * kSpeakerOrientationStride) +
            static_cast<uint64_t>(int64_t{scene} * kSpeakerSceneStride) +
            static_cast<uint64_t>(int64_t{level})));
}

// The headphone mode key (the id less kHeadphoneBase) and the headphone id.
constexpr int32_t HeadphoneKey(int32_t mode, int32_t kind, int32_t level) {
    return mode * kHeadphoneModeStride + kind * kHeadphoneKindStride + level;
}
constexpr int32_t HeadphoneIdOfKey(int32_t key) {
    return kHeadphoneBase + key;
}
constexpr int32_t HeadphoneId(int32_t mode, int32_t kind, int32_t level) {
    return HeadphoneIdOfKey(HeadphoneKey(mode, kind, level));
}

// The coordinates of an id composed by the rules above.
struct SpeakerCoordinates {
    int fold, orientation, scene, level;
};
struct HeadphoneCoordinates {
    int mode, kind, level;
};
constexpr SpeakerCoordinates DecodeSpeakerId(int32_t id) {
    return {id / kSpeakerFoldStride, id % kSpeakerFoldStride / kSpeakerOrientationStride,
            id % kSpeakerOrientationStride / kSpeakerSceneStride, id % kSpeakerSceneStride};
}
constexpr HeadphoneCoordinates DecodeHeadphoneId(int32_t id) {
    const int32_t key = id - kHeadphoneBase;
    return {key / kHeadphoneModeStride, key % kHeadphoneModeStride / kHeadphoneKindStride,
            key % kHeadphoneKindStride};
}

// The ids whose extended records get the binary tables: every loudspeaker id, and of the
// headphones only the default kind's levels LOW .. THREE, which is all the device's load visits.
constexpr int kHeadphoneTableLevels = VOL_THREE + 1;
constexpr bool HeadphoneIdGetsTables(int kind, int level) {
    return kind == DEFAULT_MODE && level < kHeadphoneTableLevels;
}

// The TWS scene whose tables a loudspeaker scene's records point at: portrait scenes 0..7 use
// TWS scenes 0..7, landscape scenes 0..7 TWS scenes 8..15; voice enhancement (scene 8) has no
// TWS scene of its own and borrows MOVIE's (2 portrait, 10 landscape).
constexpr int kTwsScenesPerOrientation = 8;
constexpr int SpeakerTwsScene(int orientation, int scene) {
    return orientation * kTwsScenesPerOrientation +
           (scene < SCENE_VOICEENHANCE ? scene : SCENE_MOVIE);
}

}  // namespace vid
