// Small rules of the block, as pure functions of the instance's words: the left/right swap
// cross-fade's position, the start-up output guard's countdown, the UI rule that switches the
// algorithm off and the click remover's fade switch. The pipeline runs them; orlune-play's
// model of the instance calls the same functions, so that its report cannot drift from them.
#pragma once

#include <stdint.h>

#include "config/NameLists.h"

namespace pipeline {

// Swap cross-fade position: kSwapFadeFrames is normal, 0 swapped; one step per frame, so the
// fade takes 9600 frames (200 ms at 48 kHz).
constexpr int32_t kSwapFadeFrames = 9600;

// The step while a swap is wanted (towards swapped) or not (back to normal).
constexpr int32_t SwapStep(bool swapWanted) {
    return swapWanted ? -1 : 1;
}

// Where a re-initialisation puts the fade: at its target, so that no fade is heard across it.
constexpr int32_t SwapRestPos(bool swapWanted) {
    return swapWanted ? 0 : kSwapFadeFrames;
}

// Normal and heading to normal: nothing moves and no frame changes.
constexpr bool SwapAtRest(int32_t pos, int32_t step) {
    return pos == kSwapFadeFrames && step >= 0;
}

// The position after `frames` frames of `step` each. The position moves monotonically inside
// 0..kSwapFadeFrames, so clamping once equals clamping after every frame; below 1 is swapped.
constexpr int32_t AdvanceSwapPos(int32_t pos, int32_t step, int frames) {
    if (frames <= 0) {
        return pos;
    }
    const int64_t next = int64_t{pos} + int64_t{step} * frames;
    return next < 1 ? 0 : (next >= kSwapFadeFrames ? kSwapFadeFrames : static_cast<int32_t>(next));
}

// Start-up output guard: the start-guard id sets the countdown to kGuardStart while the widen
// flag is 1, and every stereo block takes kGuardPerBlock off, so the guard spans 8 blocks.
constexpr int32_t kGuardStart = 64;
constexpr int32_t kGuardPerBlock = 8;

constexpr bool GuardActive(int32_t countdown, int32_t widenEnable) {
    return countdown > 0 && widenEnable == 1;
}

// With UI type 0, headphone mode "off" (2), or smart mode (0) with the smart selector 1, turns
// the algorithm off for the block; the stereo path exempts the loudspeaker (device 1).
constexpr bool UiRuleDisables(int uiType, int hpMode, int hpSmartMode, int device,
                              bool exemptSpeaker) {
    const bool hpOff = hpMode == 2 || (hpMode == 0 && hpSmartMode == 1);
    return uiType == 0 && hpOff && !(exemptSpeaker && device == 1);
}

// Whether the click remover fades the edges it finds: always while the algorithm is on; with
// UI type 0 also in headphone mode "off" (2), with another UI type in the headphone modes that
// bypass the effect (3D off, game).
constexpr bool ClickRemoverFades(int uiType, bool algoEnabled, int hpMode, int hpModeIndex) {
    if (uiType == 0) {
        return algoEnabled || hpMode == 2;
    }
    return algoEnabled || hpModeIndex == HP_3D_OFF || hpModeIndex == HP_GAME;
}

// The volume level of a stream volume index under one scene's row of `count` thresholds: the
// first threshold the index does not exceed decides, above the last the level is LOUD. The row
// is not checked for order.
constexpr int VolumeLevelOf(const int16_t* row, int count, int index) {
    for (int i = 0; i < count; ++i) {
        if (index <= row[i]) {
            return i;
        }
    }
    return VOL_LOUD;
}

}  // namespace pipeline
