// Integer parameters from the host. Setting a parameter only records it in the instance (or in
// a process-wide flag); the next processing block turns the recorded state into tuning. Only
// kIdMusicRegion, kIdReloadConfig and kIdPcmDump act at once. A setter changes the instance
// under the instance lock, so the change lands between two blocks.
#include "base/Log.h"
#include "config/ConfigLoad.h"
#include "params/BlockRules.h"
#include "effect/orlune.h"
#include "params/ParamIds.h"

namespace {

// Which handler an integer id goes to. kIdVoiceEnhance is known to the APK handler but
// deliberately not routed to it, so voice enhancement keeps its initial setting.
enum class Route { Invalid, Other, Apk, Heq, Device, Ignore, Dump };

Route RouteOf(int key) {
    constexpr int kOtherIds[] = {kIdWidenEnable,
                                 kIdMusicRegion,
                                 kIdRingingState,
                                 kIdRingingStateAlt,
                                 kIdOrientation,
                                 kIdChannelSwap,
                                 kIdObsoleteIpgpMode,
                                 kIdStartGuard,
                                 kIdMultiMovie,
                                 kIdSmartHintA,
                                 kIdSmartHintB,
                                 kIdEffectEnable,
                                 kIdReloadConfig,
                                 kIdScene,
                                 kIdHighTemp,
                                 kIdSwapInhibit,
                                 kIdLoudRingMode,
                                 kIdLoudMusicMode,
                                 kIdLoudAlarmMode,
                                 kIdVolumeIndexRing,
                                 kIdVolumeIndexMusic,
                                 kIdVolumeIndexAlarm,
                                 kIdVolumeIndexHeadphone,
                                 kIdVolumeIndexBluetooth,
                                 kIdStartStream,
                                 kIdStopStream,
                                 kIdFoldState};
    constexpr int kApkIds[] = {kIdHpType,    kIdSpkMode,     kIdHp3dMode,
                               kIdHpModeUi0, kIdHpSmartMode, kIdHpModeUi1};
    for (int id : kOtherIds) {
        if (id == key) {
            return Route::Other;
        }
    }
    for (int id : kApkIds) {
        if (id == key) {
            return Route::Apk;
        }
    }
    if ((key >= kIdHpEqFirst && key <= kIdHpEqLast) || key == kIdEqPreset || key == kIdEqLimit) {
        return Route::Heq;
    }
    if (key >= kIdDeviceType && key <= kIdWiredHeadsetType) {
        return Route::Device;
    }
    if (key == kIdIgnored) {
        return Route::Ignore;
    }
    return key == kIdPcmDump ? Route::Dump : Route::Invalid;
}

// How long a reload waits for blocks still reading the tables it replaced; what is left is
// freed by a later publication or instance deletion.
constexpr int kFreeWaitMs = 50;

}  // namespace

void Orlune::KivParamsSetInt(int key, int value) {
    if (initialised == 0) {
        return;
    }
    ORLUNE_LOGI(kTagMobile, "%s: Param %d is set to %d", "KivParamsSetInt", key, value);
    const Route route = RouteOf(key);
    // These read files or re-run set-up and take the locks they need themselves.
    if (route == Route::Dump) {
        SetAudioDump(value);
        return;
    }
    if (key == kIdMusicRegion || key == kIdReloadConfig) {
        SetKivOtherParam(key, value);
        return;
    }
    InstanceLock lock(*this);
    switch (route) {
        case Route::Other:
            SetKivOtherParam(key, value);
            break;
        case Route::Apk:
            SetKivAPKParam(key, value);
            break;
        case Route::Heq:
            SetKivHEQParam(key, value);
            break;
        case Route::Device:
            SetKivDeviceParam(key, value);
            break;
        case Route::Ignore:
            break;
        case Route::Dump:
            break;
        case Route::Invalid:
            ORLUNE_LOGW(kTagMobile, "%s %d: Invalid param %d %d", "KivParamsSetInt", 1586, key,
                        value);
            break;
    }
}

// kIdMusicRegion and kIdReloadConfig come without the instance lock, every other id with it.
void Orlune::SetKivOtherParam(int key, int value) {
    switch (key) {
        case kIdWidenEnable:
            stereoWidenEnable = value;
            break;
        case kIdMusicRegion:
            SwitchRegion(value);
            break;
        case kIdRingingState:
        case kIdRingingStateAlt:
            ringingState = value;
            if (value != 1) {
                sceneMode = sceneRequest;
            } else if (param32Value == 0) {
                ringPending = 1;
            }
            break;
        case kIdOrientation:
            orientation = value;
            break;
        case kIdChannelSwap:
            if (value != param5Flag) {
                param5Flag = (value != 0) ? 1 : 0;
                param5Step = pipeline::SwapStep(value != 0);
            }
            break;
        case kIdObsoleteIpgpMode:
            ORLUNE_LOGW(kTagMobile,
                        "this orlune version support zelo instead of STEREOWIDEN_IPGP_MODE");
            break;
        case kIdStartGuard:
            param7Value = value;
            if (stereoWidenEnable == 1) {
                mMuteCountdown = pipeline::kGuardStart;
                mMuteArmed = 0;
            }
            break;
        case kIdMultiMovie:
            multiMovieFlag = value;
            break;
        case kIdSmartHintA:
            smartHint9 = value;
            break;
        case kIdSmartHintB:
            smartHint10 = value;
            break;
        case kIdEffectEnable:
            param32Value = value;
            break;
        case kIdReloadConfig:
            if (value == 1) {
                ReloadConfiguration();
            }
            break;
        case kIdScene:
            sceneRequest = value;
            sceneMode = value;
            break;
        case kIdHighTemp:
            highTempState = value;
            if (value == 1 && sceneMode == SCENE_GAME) {
                sceneMode = SCENE_GAME_HIGH_TEMP;
            }
            break;
        case kIdSwapInhibit:
            param37Flag = (value == 1) ? 1 : 0;
            break;
        case kIdLoudRingMode:
            gIsLoudRingVolumeMode = (value == 1);
            ORLUNE_LOGI(kTagMobile, "gIsLoudRingVolumeMode:%d", value == 1);
            break;
        case kIdLoudMusicMode:
            gIsLoudMusicVolumeMode = (value == 1);
            ORLUNE_LOGI(kTagMobile, "gIsLoudMusicVolumeMode:%d", value == 1);
            break;
        case kIdLoudAlarmMode:
            gIsLoudAlarmVolumeMode = (value == 1);
            ORLUNE_LOGI(kTagMobile, "gIsLoudAlarmVolumeMode:%d", value == 1);
            break;
        case kIdVolumeIndexRing:
            if (value != ringVolumeIndex) {
                ringVolumeIndex = value;
                gIsAlarmMode = false;
                ORLUNE_LOGI(kTagMobile, "ringVolumeIndex = %d, gIsAlarmMode:%d", ringVolumeIndex,
                            0);
            }
            break;
        case kIdVolumeIndexMusic:
            if (value != musicVolumeIndex) {
                ORLUNE_LOGI(kTagMobile, "musicVolumeIndex = %d", value);
                musicVolumeIndex = value;
            }
            break;
        case kIdVolumeIndexAlarm:
            if (value != alarmVolumeIndex) {
                alarmVolumeIndex = value;
                gIsAlarmMode = true;
                ORLUNE_LOGI(kTagMobile, "alarmVolumeIndex = %d, gIsAlarmMode:%d", alarmVolumeIndex,
                            1);
            }
            break;
        case kIdVolumeIndexHeadphone:
            if (value != hpVolumeIndex) {
                hpVolumeIndex = value;
                ORLUNE_LOGI(kTagMobile, "hpVolumeIndex = %d", hpVolumeIndex);
            }
            break;
        case kIdVolumeIndexBluetooth:
            if (value != btVolumeIndex) {
                btVolumeIndex = value;
                ORLUNE_LOGI(kTagMobile, "btVolumeIndex = %d", btVolumeIndex);
            }
            break;
        case kIdStartStream:
            startStreamState = value;
            if (value == 3) {
                mLad.SetStartStream(mLadInfoIn, mLadInfoOut);
            }
            break;
        case kIdStopStream:
            stopStreamState = value;
            if (value == 3) {
                mLad.SetStopStream(mLadInfoIn, mLadInfoOut);
            }
            break;
        case kIdFoldState:
            foldState = value;
            break;
        default:
            ORLUNE_LOGW(kTagMobile, "invalid other parameter %d", key);
            break;
    }
}

void Orlune::SetKivAPKParam(int key, int value) {
    TablesPin tables(*this);  // the UI type
    switch (key) {
        case kIdHpType:
            HP_TYPE = static_cast<int16_t>(value);
            break;
        case kIdSpkMode:
            SPK_MODE = static_cast<int16_t>(value);
            break;
        case kIdHp3dMode:
            HP_3D_MODE = static_cast<int16_t>(value);
            break;
        case kIdHpModeUi0:
            if (Tables().gUiType == 0) {
                HP_MODE = static_cast<int16_t>(value);
            }
            break;
        case kIdHpSmartMode:
            HP_SMART_MODE = static_cast<int16_t>(value);
            break;
        case kIdVoiceEnhance:
            gVoiceEnhanceEnable = value;
            break;
        case kIdHpModeUi1:
            if (Tables().gUiType == 1) {
                HP_MODE = static_cast<int16_t>(value);
            }
            break;
        default:
            ORLUNE_LOGW(kTagMobile, "invalid APK parameter %d", key);
            break;
    }
}

void Orlune::SetKivHEQParam(int key, int value) {
    if (key >= kIdHpEqFirst && key <= kIdHpEqLast) {
        HP_EQ[key - kIdHpEqFirst] = static_cast<int16_t>(value);
    } else if (key == kIdEqPreset) {
        eqPreset = static_cast<int16_t>(value);
    } else if (key == kIdEqLimit) {
        gEqLimitValue = value;
    } else {
        ORLUNE_LOGW(kTagMobile, "invalid HEQ parameter %d", key);
    }
}

void Orlune::SetKivDeviceParam(int key, int value) {
    switch (key) {
        case kIdDeviceType:
            mDeviceType = value;
            break;
        case kIdBtHeadsetType:
            btHeadsetType = value;
            break;
        case kIdWiredHeadsetType:
            wiredHeadsetType = value;
            break;
        default:
            ORLUNE_LOGW(kTagMobile, "invalid device parameter %d", key);
            break;
    }
}

// The region switch only goes one way; set-up is re-run through the instance's own virtual
// slot so that the region files are used if nothing was loaded yet.
void Orlune::SwitchRegion(int value) {
    bool expected = false;
    if (value == 1 && gMusicRegionEnable.compare_exchange_strong(expected, true)) {
        KivOutProcPlayInit();
    }
}

// The tuning tool on a PC pushed new XML files: they are read again (RunConfigReload), the
// binary tables stay as loaded. The new tables are built beside
// the published ones and reach this instance's blocks together with its new threshold rows;
// other instances pick them up at their next block.
void Orlune::ReloadConfiguration() {
    {
        ConfigUpdate update;
        RunConfigReload(gMusicRegionEnable);
        const VolumeThrRows thresholds = ComputeVolumeThr();  // from the new main XML
        update.Finish();  // the direct tables are built before the block's lock is taken
        InstanceLock lock(*this);
        ApplyVolumeThr(thresholds);
        update.Publish(ConfigUpdate::Replaced::Keep);  // freed below, without the lock
    }
    // Blocks that started with the old tables end within a block's time.
    FreeReplacedTables(kFreeWaitMs);
}
