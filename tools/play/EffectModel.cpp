#include "tools/play/EffectModel.h"

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
                mSwapStep = v == 0 ? 1 : -1;
            }
            break;
        case kIdStartGuard:
            if (mWidenEnable == 1) {
                mMuteCountdown = 64;
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
    mSwapPos = mSwapWanted ? 0 : kSwapFadeFrames;
    mSwapStep = mSwapWanted ? -1 : 1;
}

void EffectModel::Block(int frames, bool stereo) {
    if (!(mSwapPos == kSwapFadeFrames && mSwapStep >= 0)) {
        const long pos = static_cast<long>(mSwapPos) + static_cast<long>(mSwapStep) * frames;
        mSwapPos = pos < 1 ? 0 : (pos >= kSwapFadeFrames ? kSwapFadeFrames : static_cast<int>(pos));
    }
    if (stereo && mMuteCountdown > 0) {
        mMuteCountdown -= 8;
    }
}

bool EffectModel::ClickRemoverOn() const {
    const bool hpIndexOff = mHpModeIndex == 0 || mHpModeIndex == 7;
    if (mUiType != 0) {
        return Enabled() || hpIndexOff;
    }
    // With UI type 0 the headphone "off" selectors switch the effect off away from the
    // loudspeaker, and selector 2 keeps the click remover fading regardless.
    const bool hpOff = mHpMode == 2 || (mHpMode == 0 && mHpSmartMode == 1);
    const bool enabled = Enabled() && !(hpOff && mDevice != 1);
    return enabled || mHpMode == 2;
}

EffectModel::Swap EffectModel::SwapState() const {
    if (mSwapPos > 0 && mSwapPos < kSwapFadeFrames) {
        return Swap::Fading;
    }
    return mSwapPos == 0 && mSwapWanted ? Swap::Swapped : Swap::Normal;
}
