// The instance's switches that no log line shows, followed from the parameters the harness
// sets and from the lines it does see: output device, run-time enable, headphone selector, the
// click remover's fade switch, the left/right swap cross-fade and the start-up output guard.
// The rules themselves are the library's (params/BlockRules.h).
#pragma once

#include "params/BlockRules.h"
#include "tools/play/PlayOptions.h"

class EffectModel {
public:
    enum class Swap { Normal, Fading, Swapped };

    void Apply(const ParamEvent& event);
    // The "InitKiv" line: buffers emptied, the swap jumps to its target, the guard ends.
    void Reinitialised();
    void SetUiType(int uiType) { mUiType = uiType; }
    // The headphone mode index in force, from the headphone tuning lines.
    void SetHeadphoneModeIndex(int index) { mHpModeIndex = index; }
    // One block of `frames` frames; `stereo` when it took the stereo path.
    void Block(int frames, bool stereo);

    int Device() const { return mDevice; }
    bool Headphones() const { return mDevice == 2 || mDevice == 3; }
    bool Enabled() const { return mWidenEnable != 0 && mParam32 != 0; }
    // Whether the pop eliminator fades the edges it finds in this block.
    bool ClickRemoverOn() const;
    Swap SwapState() const;
    // The cross-fade touches the audio only on the loudspeaker with the effect on.
    bool SwapAudible() const { return mDevice == 1 && Enabled() && !mSwapInhibit; }
    bool GuardActive() const { return pipeline::GuardActive(mMuteCountdown, mWidenEnable); }

private:
    int mUiType = 0;
    int mDevice = 0;
    int mWidenEnable = 0;  // kIdWidenEnable
    int mParam32 = 0;      // kIdEffectEnable
    int mHpMode = 1;       // kIdHpModeUi0 / kIdHpModeUi1; the first set-up makes it 1
    int mHpSmartMode = 0;  // kIdHpSmartMode
    int mHpModeIndex = 0;
    bool mSwapWanted = false;  // kIdChannelSwap
    int mSwapStep = 1;
    int mSwapPos = pipeline::kSwapFadeFrames;
    bool mSwapInhibit = false;  // kIdSwapInhibit
    int mMuteCountdown = 0;     // kIdStartGuard
};
