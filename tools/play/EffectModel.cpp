#include "tools/play/EffectModel.h"

#include "params/BlockRules.h"
#include "params/ParamIds.h"

void EffectModel::Apply(const ParamEvent& e) {
    if (e.kind != ParamEvent::INT) {
        return;
    }
    const int v = e.intValue;
    switch (e.id) {
        case kIdWidenEnable:
            mWidenEnable = v;
            break;
        case kIdChannelSwap:
            if (v != (mSwapWanted ? 1 : 0)) {
                mSwapWanted = v != 0;
                mSwapStep = pipeline::SwapStep(mSwapWanted);
            }
            break;
        case kIdStartGuard:
            if (mWidenEnable == 1) {
                mMuteCountdown = pipeline::kGuardStart;
            }
            break;
        case kIdDeviceType:
            mDevice = v;
            break;
        case kIdHpModeUi0:
            mHpMode = mUiType == 0 ? v : mHpMode;
            break;
        case kIdHpModeUi1:
            mHpMode = mUiType != 0 ? v : mHpMode;
            break;
        case kIdHpSmartMode:
            mHpSmartMode = v;
            break;
        case kIdEffectEnable:
            mParam32 = v;
            break;
        case kIdSwapInhibit:
            mSwapInhibit = v == 1;
            break;
        default:
            break;
    }
}

void EffectModel::Reinitialised() {
    mMuteCountdown = 0;
    mSwapPos = pipeline::SwapRestPos(mSwapWanted);
    mSwapStep = pipeline::SwapStep(mSwapWanted);
}

void EffectModel::Block(int frames, bool stereo) {
    if (!pipeline::SwapAtRest(mSwapPos, mSwapStep)) {
        mSwapPos = pipeline::AdvanceSwapPos(mSwapPos, mSwapStep, frames);
    }
    if (stereo && mMuteCountdown > 0) {
        mMuteCountdown -= pipeline::kGuardPerBlock;
    }
}

bool EffectModel::ClickRemoverOn() const {
    // The stereo path's enable after the UI rule.
    const bool enabled =
            Enabled() && !pipeline::UiRuleDisables(mUiType, mHpMode, mHpSmartMode, mDevice, true);
    return pipeline::ClickRemoverFades(mUiType, enabled, mHpMode, mHpModeIndex);
}

EffectModel::Swap EffectModel::SwapState() const {
    if (mSwapPos > 0 && mSwapPos < pipeline::kSwapFadeFrames) {
        return Swap::Fading;
    }
    return mSwapPos == 0 && mSwapWanted ? Swap::Swapped : Swap::Normal;
}
