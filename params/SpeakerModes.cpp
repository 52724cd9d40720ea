// Per-block tuning choice for the loudspeaker: the fold state, orientation, scene and volume
// level form a virtual id that resolves to the records handed to the algorithm.
#include <stdint.h>

#include "base/Log.h"
#include "config/VirtualIds.h"
#include "effect/orlune.h"
#include "params/ParamHelpers.h"

void Orlune::KivParamsSetNS(int channels) {
    if (mDeviceType == 2 || mDeviceType == 3) {
        outputPath = OUTPUT_HEADSET;
        SetNsForHeadsetOrA2dp(channels);
    } else {
        outputPath = OUTPUT_SPEAKER;
        SetNsForSpeaker(channels);
    }
    mIoInfo.volume = VolumeDbToInt(volumeDb);
}

void Orlune::SetNsForSpeaker(int channels) {
    TablesPin tables(*this);  // the block's set when a block runs
    SetSpkParam();
    params::SetHighByte(mCurParaExt.words[kExtWordChannels], channels);
    mCurParaExt.words[kExtWordVolume] = static_cast<int16_t>(VolumeDbToInt(volumeDb));
    int32_t ret = params::CallSetPara(*this);
    if (ret != 0) {
        ORLUNE_LOGE(kTagMobile, "%s set parameter failed, ret = %d", "SetNsForSpeaker", ret);
        mEvents.errorCodes.AddErrorCode(ret);
    }
}

void Orlune::SetSpkParam() {
    // Voice enhancement replaces MOVIE for good, not just for this block.
    if (gVoiceEnhanceEnable >= 1 && sceneMode == SCENE_MOVIE) {
        sceneMode = SCENE_VOICEENHANCE;
    }

    // The stream whose index the host set last decides between ring and alarm.
    const int32_t ringIndex = gIsAlarmMode ? alarmVolumeIndex : ringVolumeIndex;
    if (ringingState == 1) {
        sceneMode = SCENE_RING;
        ringReinitPending = 1;
        currentVolumeIndex = ringIndex;
    } else if (sceneMode == SCENE_RING) {
        currentVolumeIndex = ringIndex;
    } else {
        currentVolumeIndex = musicVolumeIndex;
        mLad.SetLadVolumeIndex(mLadInfoIn, currentVolumeIndex);
        mLad.SetLadVolumeIndex(mLadInfoOut, currentVolumeIndex);
    }

    // A scene the host made up has no threshold row: the level stays as it was.
    if (sceneMode >= 0 && sceneMode < SCENE_COUNT) {
        VolumeIndexToVolLevel(static_cast<short>(currentVolumeIndex));
    }
    RecordFrames();

    const int32_t virtualId = vid::SpeakerId(foldState, orientation, sceneMode, volumeLevel);
    RealParamIdStru ids = {};
    const AudioOrluneMobilePara* para = nullptr;
    const AudioOrluneMobileParaExt* ext = nullptr;
    switch (ResolveVirtualId(Tables(), virtualId, &ids, &para, &ext)) {
        case Resolve::NoVirtualId:
            ORLUNE_LOGD(kTagMobile, "%s %d: SPK do not find currentParamID currentParamMode: %d ",
                        "SetSpkParam", 2263, virtualId);
            return;
        case Resolve::NoRealRecord:
            ORLUNE_LOGD(kTagMobile,
                        "%s %d: SPK do not find currentRealParamID or currentRealParamExtID "
                        "currentParamMode: %d ",
                        "SetSpkParam", 2270, virtualId);
            return;
        case Resolve::Found:
            break;
    }
    mCurPara = *para;
    mCurParaExt = *ext;

    // Process-wide, like the device's: with two streams on different modes both log.
    if (static_cast<int16_t>(virtualId) == static_cast<int16_t>(lastSpkParamMode.load())) {
        return;
    }
    lastSpkParamMode = virtualId;
    ORLUNE_LOGI(kTagMobile,
                "%s %d: SPK NvMode is currentParamMode: %d %s_%s_%s_%s_%s currentRealParamID: %d "
                "currentRealParamExtID: %d",
                "SetSpkParam", 2280, virtualId, NameOf(kOutputPathNames, outputPath),
                NameOf(kFoldStateNames, foldState), NameOf(kOrientationNames, orientation),
                NameOf(kSceneNames, sceneMode), NameOf(kVolumeLevelNames, volumeLevel), ids.ID,
                ids.EXTID);
}

void Orlune::RecordFrames() {
    // Recorder slot of each scene; GAME_HIGH_TEMP is deliberately not counted.
    constexpr int kNoRecorder = -1;
    constexpr int kSlotOfScene[SCENE_COUNT] = {SPK_REC_MUSIC,     SPK_REC_GAME,  SPK_REC_MOVIE,
                                               SPK_REC_EDUCATION, SPK_REC_VIDEO, SPK_REC_LOWPOWER,
                                               kNoRecorder,       SPK_REC_RING,  SPK_REC_VE};
    if (sceneMode < 0 || sceneMode >= SCENE_COUNT || kSlotOfScene[sceneMode] == kNoRecorder) {
        return;
    }
    mEvents.spkRecorders[kSlotOfScene[sceneMode]].RecordFrames(currentVolumeIndex,
                                                               volumeThresholds[sceneMode]);
}
