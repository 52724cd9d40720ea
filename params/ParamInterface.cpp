// Integer parameters from the host. Setting a parameter only records it in the instance (or in
// a process-wide flag); the next processing block turns the recorded state into tuning. Only
// ids 1 (region), 33 (reload) and 100 (dump) act at once. A setter changes the instance under
// the instance lock, so the change lands between two blocks.
#include "effect/LogTags.h"
#include "effect/orlune.h"

namespace {

// Which handler an integer id goes to. Id 48 is known to the APK handler (voice enhancement)
// but deliberately not routed to it, so voice enhancement keeps its initial setting.
enum class Route { Invalid, Other, Apk, Heq, Device, Ignore, Dump };

Route RouteOf(int key) {
    constexpr int kOtherIds[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 32, 33, 35,
                                 36, 37, 40, 41, 42, 43, 44, 45, 46, 47, 51, 52, 55};
    constexpr int kApkIds[] = {15, 16, 17, 30, 31, 53};
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
    if ((key >= 18 && key <= 28) || key == 38 || key == 39) {
        return Route::Heq;
    }
    if (key >= 12 && key <= 14) {
        return Route::Device;
    }
    if (key == 34) {
        return Route::Ignore;
    }
    return key == 100 ? Route::Dump : Route::Invalid;
}

// How long a reload waits for blocks still reading the tables it replaced; what is left is
// freed by a later publication or instance deletion.
constexpr int kFreeWaitMs = 50;

}  // namespace

void Orlune::KivParamsSetInt(int key, int value) {
    if (initialised == 0) {
        return;
    }
    ORLUNE_LOGI("%s: Param %d is set to %d", "KivParamsSetInt", key, value);
    const Route route = RouteOf(key);
    // These read files or re-run set-up and take the locks they need themselves.
    if (route == Route::Dump) {
        SetAudioDump(value);
        return;
    }
    if (key == 1 || key == 33) {
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
            ORLUNE_LOGW("%s %d: Invalid param %d %d", "KivParamsSetInt", 1586, key, value);
            break;
    }
}

// Ids 1 and 33 are called without the instance lock, every other id with it.
void Orlune::SetKivOtherParam(int key, int value) {
    switch (key) {
        case 0:
            stereoWidenEnable = value;
            break;
        case 1:
            SwitchRegion(value);
            break;
        case 2:
        case 3:
            ringingState = value;
            if (value != 1) {
                sceneMode = sceneRequest;
            } else if (param32Value == 0) {
                ringPending = 1;
            }
            break;
        case 4:
            orientation = value;
            break;
        case 5:
            if (value != param5Flag) {
                param5Flag = (value != 0) ? 1 : 0;
                param5Step = (value == 0) ? 1 : -1;
            }
            break;
        case 6:
            ORLUNE_LOGW("this orlune version support zelo instead of STEREOWIDEN_IPGP_MODE");
            break;
        case 7:
            param7Value = value;
            if (stereoWidenEnable == 1) {
                mMuteCountdown = 64;
                mMuteArmed = 0;
            }
            break;
        case 8:
            multiMovieFlag = value;
            break;
        case 9:
            smartHint9 = value;
            break;
        case 10:
            smartHint10 = value;
            break;
        case 32:
            param32Value = value;
            break;
        case 33:
            if (value == 1) {
                ReloadConfiguration();
            }
            break;
        case 35:
            sceneRequest = value;
            sceneMode = value;
            break;
        case 36:
            highTempState = value;
            if (value == 1 && sceneMode == SCENE_GAME) {
                sceneMode = SCENE_GAME_HIGH_TEMP;
            }
            break;
        case 37:
            param37Flag = (value == 1) ? 1 : 0;
            break;
        case 40:
            gIsLoudRingVolumeMode = (value == 1);
            ORLUNE_LOGI("gIsLoudRingVolumeMode:%d", value == 1);
            break;
        case 41:
            gIsLoudMusicVolumeMode = (value == 1);
            ORLUNE_LOGI("gIsLoudMusicVolumeMode:%d", value == 1);
            break;
        case 42:
            gIsLoudAlarmVolumeMode = (value == 1);
            ORLUNE_LOGI("gIsLoudAlarmVolumeMode:%d", value == 1);
            break;
        case 43:
            if (value != ringVolumeIndex) {
                ringVolumeIndex = value;
                gIsAlarmMode = false;
                ORLUNE_LOGI("ringVolumeIndex = %d, gIsAlarmMode:%d", ringVolumeIndex, 0);
            }
            break;
        case 44:
            if (value != musicVolumeIndex) {
                ORLUNE_LOGI("musicVolumeIndex = %d", value);
                musicVolumeIndex = value;
            }
            break;
        case 45:
            if (value != alarmVolumeIndex) {
                alarmVolumeIndex = value;
                gIsAlarmMode = true;
                ORLUNE_LOGI("alarmVolumeIndex = %d, gIsAlarmMode:%d", alarmVolumeIndex, 1);
            }
            break;
        case 46:
            if (value != hpVolumeIndex) {
                hpVolumeIndex = value;
                ORLUNE_LOGI("hpVolumeIndex = %d", hpVolumeIndex);
            }
            break;
        case 47:
            if (value != btVolumeIndex) {
                btVolumeIndex = value;
                ORLUNE_LOGI("btVolumeIndex = %d", btVolumeIndex);
            }
            break;
        case 51:
            startStreamState = value;
            if (value == 3) {
                mLad.SetStartStream(mLadInfoIn, mLadInfoOut);
            }
            break;
        case 52:
            stopStreamState = value;
            if (value == 3) {
                mLad.SetStopStream(mLadInfoIn, mLadInfoOut);
            }
            break;
        case 55:
            foldState = value;
            break;
        default:
            ORLUNE_LOGW("invalid other parameter %d", key);
            break;
    }
}

void Orlune::SetKivAPKParam(int key, int value) {
    TablesPin tables(*this);  // the UI type
    switch (key) {
        case 15:
            HP_TYPE = static_cast<int16_t>(value);
            break;
        case 16:
            SPK_MODE = static_cast<int16_t>(value);
            break;
        case 17:
            HP_3D_MODE = static_cast<int16_t>(value);
            break;
        case 30:
            if (Tables().gUiType == 0) {
                HP_MODE = static_cast<int16_t>(value);
            }
            break;
        case 31:
            HP_SMART_MODE = static_cast<int16_t>(value);
            break;
        case 48:
            gVoiceEnhanceEnable = value;
            break;
        case 53:
            if (Tables().gUiType == 1) {
                HP_MODE = static_cast<int16_t>(value);
            }
            break;
        default:
            ORLUNE_LOGW("invalid APK parameter %d", key);
            break;
    }
}

void Orlune::SetKivHEQParam(int key, int value) {
    if (key >= 18 && key <= 28) {
        HP_EQ[key - 18] = static_cast<int16_t>(value);
    } else if (key == 38) {
        eqPreset = static_cast<int16_t>(value);
    } else if (key == 39) {
        gEqLimitValue = value;
    } else {
        ORLUNE_LOGW("invalid HEQ parameter %d", key);
    }
}

void Orlune::SetKivDeviceParam(int key, int value) {
    switch (key) {
        case 12:
            mDeviceType = value;
            break;
        case 13:
            btHeadsetType = value;
            break;
        case 14:
            wiredHeadsetType = value;
            break;
        default:
            ORLUNE_LOGW("invalid device parameter %d", key);
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

// The tuning tool on a PC pushed new XML files: drop every map (the key-0 placeholders too)
// and read both files again. The binary tables stay as loaded. The new tables are built beside
// the published ones and reach this instance's blocks together with its new threshold rows;
// other instances pick them up at their next block.
void Orlune::ReloadConfiguration() {
    {
        ConfigUpdate update;
        ParamTableSet& next = update.Tables();
        next.gHpMapTable.clear();
        next.gRealMapTable.clear();
        next.gRealMapTableExt.clear();
        next.gVituralMapTable.clear();
        ORLUNE_LOGI("kiv config is updated by pc tool");
        KivReadConfigFromXML(gMusicRegionEnable);
        KivReadConfigTableFromXML(gMusicRegionEnable);
        const VolumeThrRows thresholds = ComputeVolumeThr();
        KivInitConfigPointer();
        update.Finish();  // the direct tables are built before the block's lock is taken
        InstanceLock lock(*this);
        ApplyVolumeThr(thresholds);
        update.Publish(ConfigUpdate::Replaced::Keep);  // freed below, without the lock
    }
    // Blocks that started with the old tables end within a block's time.
    FreeReplacedTables(kFreeWaitMs);
}
