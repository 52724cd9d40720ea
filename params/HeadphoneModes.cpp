// Per-block tuning choice for wired and Bluetooth headsets: the headphone mode (a 3D rendering
// mode, a content scene or the custom equaliser), the content's channel layout and the volume
// level form a virtual id; the headset type and the equaliser are then laid over the records.
#include "base/Log.h"
#include "config/VirtualIds.h"
#include "effect/orlune.h"
#include "params/ParamHelpers.h"

namespace {

// The 3D mode that smart mode picks from the host's content hints.
short SmartHpMode(const Orlune& o) {
    if (o.HP_SMART_MODE == 3) {
        return HP_3D_GRAND;
    }
    if (o.HP_SMART_MODE == 2 &&
        (o.smartHint9 == 1 || o.multiMovieFlag == 1 || o.smartHint10 == 1)) {
        return HP_3D_WIDE;
    }
    return HP_3D_LISTEN;
}

// Sets the mode pair for `mode` when it lies in first..first+3; returns false otherwise.
bool SetModeInRange(Orlune& o, unsigned short mode, int first, int kind) {
    if (mode < first || mode > first + 3) {
        return false;
    }
    o.hpModeIndex = mode - first + 1;
    o.hpMultiKind = kind;
    return true;
}

}  // namespace

void Orlune::SetNsForHeadsetOrA2dp(int channels) {
    TablesPin tables(*this);  // the block's set when a block runs
    if (ringReinitPending == 1) {
        InitKiv(true);
        ringReinitPending = 0;
    }
    if (Tables().gUiType != 0) {
        SetHPSceneModeAndType(channels);
    } else {
        SetHP3DModeAndType(channels);
    }
    if (mDeviceType == 2 && wiredHeadsetType != kNoHeadsetTypeChange) {
        KivSetHPType(mCurPara, mCurParaExt, static_cast<short>(wiredHeadsetType));
    }
    if (mDeviceType == 3) {
        KivSetHPType(mCurPara, mCurParaExt, static_cast<short>(btHeadsetType));
    }
    params::SetHighByte(mCurParaExt.words[kExtWordChannels], channels);
    int32_t ret = params::CallSetPara(*this);
    if (ret != 0) {
        ORLUNE_LOGE(kTagMobile, "%s set parameter failed, ret = %d", "SetNsForHeadsetOrA2dp", ret);
        mEvents.errorCodes.AddErrorCode(ret);
    }
}

void Orlune::SetHP3DModeAndType(int& channels) {
    auto customEq = [this]() {
        hpModeIndex = HP_3D_OFF;
        hpMultiKind = DEFAULT_MODE;
        FindParamForHP();
        KivSetHPType(mCurPara, mCurParaExt, HP_TYPE);
        SetCustomEQ(mCurPara, mCurParaExt);
    };
    switch (HP_MODE) {
        case 0:  // smart
            KivSetHP3DMode(SmartHpMode(*this), channels);
            KivSetHPType(mCurPara, mCurParaExt, HP_TYPE);
            break;
        case 1:  // manual 3D
            if (HP_3D_MODE != 0) {
                KivSetHP3DMode(HP_3D_MODE, channels);
                KivSetHPType(mCurPara, mCurParaExt, HP_TYPE);
            } else {
                customEq();
            }
            break;
        case 2:  // switched off by the host
            mEvents.hpRecorders[HP_REC_HIFI].RecordFrames(currentVolumeIndex,
                                                          volumeThresholds[SCENE_MUSIC]);
            hpModeIndex = HP_3D_OFF;
            hpMultiKind = DEFAULT_MODE;
            FindParamForHP();
            break;
        case 3:  // custom equaliser
            customEq();
            break;
        default:
            if (HP_3D_MODE == 0) {
                customEq();
            } else {
                ORLUNE_LOGE(kTagMobile,
                            "SetHP3DModeAndType error, hpMode = %hd, headphone3dMode = %hd",
                            HP_MODE, HP_3D_MODE);
            }
            break;
    }
}

void Orlune::SetHPSceneModeAndType(int& channels) {
    int recorder = HP_REC_DEFAULT;
    if (HP_MODE >= 1 && HP_MODE <= 4) {
        hpModeIndex = HP_MODE + HP_3D_GRAND;  // 1..4 are HP_MUSIC .. HP_CUSTOM
        recorder = HP_MODE;                   // counted with 3D mode 1..4
    } else {
        hpModeIndex = HP_3D_OFF;
    }
    if (hpModeIndex == HP_3D_OFF || hpModeIndex == HP_GAME) {
        mIoInfo.enable = 0;  // these modes bypass the effect on this block
    }
    mEvents.hpRecorders[recorder].RecordFrames(currentVolumeIndex, volumeThresholds[SCENE_MUSIC]);
    if (channels == 2) {
        hpMultiKind = DEFAULT_MODE;
    } else if (channels == 10) {
        hpMultiKind = MULTI_MODE9;
    } else {
        hpMultiKind = (multiMovieFlag == 1) ? MULTI_MOVIE_MODE : MULTI_MODE;
    }
    FindParamForHP();
    KivSetHPType(mCurPara, mCurParaExt, HP_TYPE);
    if (hpModeIndex == HP_CUSTOM) {
        SetCustomEQ(mCurPara, mCurParaExt);
    }
}

void Orlune::SetHP3DMode(int& channels) {
    KivSetHP3DMode(HP_MODE == 0 ? SmartHpMode(*this) : HP_3D_MODE, channels);
}

void Orlune::KivSetHP3DMode(short mode, int channels) {
    // Multichannel content shifts the mode into the range of its kind: 5..8 plain
    // multichannel, 9..12 multichannel movie, 13..16 ten channels.
    short mapped = mode;
    if (mode != 0 && channels != 2) {
        int offset = (channels == 10) ? 12 : (multiMovieFlag == 1) ? 8 : 4;
        mapped = static_cast<short>(mode + offset);
    }
    if (mapped >= 1 && mapped <= 4) {
        SetNormalMode(mapped);
    } else if (mapped >= 5 && mapped <= 8) {
        SetMultiMode(mapped);
    } else if (mapped >= 9 && mapped <= 12) {
        SetMultiMovieMode(mapped);
    } else if (mapped >= 13 && mapped <= 16) {
        SetMultiMode9(mapped);
    } else {
        if (mapped != 0) {
            ORLUNE_LOGW(kTagMobile, "invalid mode %hd, use normal instead", mapped);
        }
        SetNormalMode(0);
    }
    // hpModeIndex is now 0..4, which is also the slot of its recorder.
    mEvents.hpRecorders[hpModeIndex].RecordFrames(currentVolumeIndex,
                                                  volumeThresholds[SCENE_MUSIC]);
    FindParamForHP();
}

// The two lower ranges fall back to 3D off; the two upper ones leave the pair alone (kept so).
void Orlune::SetNormalMode(unsigned short mode) {
    if (!SetModeInRange(*this, mode, 1, DEFAULT_MODE)) {
        hpModeIndex = HP_3D_OFF;
        hpMultiKind = DEFAULT_MODE;
    }
}

void Orlune::SetMultiMode(unsigned short mode) {
    if (!SetModeInRange(*this, mode, 5, MULTI_MODE)) {
        hpModeIndex = HP_3D_OFF;
        hpMultiKind = DEFAULT_MODE;
    }
}

void Orlune::SetMultiMovieMode(unsigned short mode) {
    SetModeInRange(*this, mode, 9, MULTI_MOVIE_MODE);
}

void Orlune::SetMultiMode9(unsigned short mode) {
    SetModeInRange(*this, mode, 13, MULTI_MODE9);
}

int Orlune::FindParamForHP() {
    if (mDeviceType == 2) {
        currentVolumeIndex = hpVolumeIndex;
    } else if (mDeviceType == 3) {
        currentVolumeIndex = btVolumeIndex;
    }
    VolumeIndexToVolLevelHp(static_cast<short>(currentVolumeIndex));

    const int32_t mode = vid::HeadphoneKey(hpModeIndex, hpMultiKind, hpVolumeLevel);
    RealParamIdStru ids = {};
    const AudioOrluneMobilePara* para = nullptr;
    const AudioOrluneMobileParaExt* ext = nullptr;
    switch (ResolveVirtualId(Tables(), vid::HeadphoneIdOfKey(mode), &ids, &para, &ext)) {
        case Resolve::NoVirtualId:
            ORLUNE_LOGD(kTagMobile, "%s %d: HP do not find currentParamID currentParamMode: %d ",
                        "FindParamForHP", 2146, mode);
            return -1;
        case Resolve::NoRealRecord:
            ORLUNE_LOGD(kTagMobile,
                        "%s %d: HP do not find currentRealParamID or currentRealParamExtID "
                        "currentParamMode: %d ",
                        "FindParamForHP", 2153, mode);
            return -1;
        case Resolve::Found:
            break;
    }
    mCurPara = *para;
    mCurParaExt = *ext;
    if (static_cast<int16_t>(mode) != static_cast<int16_t>(lastHpParamMode.load())) {
        lastHpParamMode = mode;
        ORLUNE_LOGI(kTagMobile,
                    "%s %d: HP NvMode is currentParamMode: %d %s_%s_%s currentRealParamID: %d "
                    "currentRealParamExtID: %d",
                    "FindParamForHP", 2162, mode, NameOf(kHpModeNames, hpModeIndex),
                    NameOf(kParamModeNames, hpMultiKind), NameOf(kVolumeLevelNames, hpVolumeLevel),
                    ids.ID, ids.EXTID);
    }
    return 0;
}
