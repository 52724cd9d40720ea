// Set-up of an instance for processing: binds the algorithm library, loads the process-wide
// configuration once, and prepares the algorithm, the pop eliminator, the loud-output
// detector and the sample buffers.
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <utility>

#include <platform/properties.h>
#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "base/Log.h"
#include "config/ConfigLoad.h"
#include "effect/OutChannels.h"
#include "effect/PipelineLimits.h"
#include "effect/orlune.h"

namespace {

constexpr const char* kUiTypeNode =
        "/proc/device-tree/soc/audio_alg_info/audio_capability/kiv_ui_type";
constexpr int kUiTypeLineBytes = 92;  // the node is read as one line of at most this many bytes

// The device tree states the UI type the product was built for; the configuration's own
// value stays in force, a mismatch is only reported.
void CompareUiType() {
    char resolved[PATH_MAX] = {};
    FILE* node = nullptr;
    if (orlune_platform::DevRealpath(kUiTypeNode, resolved) != nullptr) {
        node = OpenConfigFile(resolved, ConfigFileKind::Text).file;
    }
    if (node == nullptr) {
        ORLUNE_LOGI(kTagMobile, "open kivUiType failed");
        return;
    }
    char line[kUiTypeLineBytes] = {};
    if (fgets(line, sizeof(line), node) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "read KIV_UI_TYPE_DTSI failed");
    } else {
        ORLUNE_LOGI(kTagMobile, "kivUiType = %s", line);
        const int deviceUiType = atoi(line);
        const int16_t configured = PublishedTables().gUiType;  // stable under the load lock
        if (deviceUiType != configured) {
            ORLUNE_LOGE(kTagMobile, "xml ui type %d is diff from apk-dtsi ui type %d", configured,
                        deviceUiType);
        }
    }
    fclose(node);
}

// Reads the product's tuning once per process; later instances share the tables.
void LoadConfigurationOnce() {
    std::lock_guard<std::recursive_mutex> lock(ConfigLoadLock());
    if (Orlune::gLoadedBinParam) {
        return;
    }
    RunConfigLoad(Orlune::gMusicRegionEnable);
    Orlune::gLoadedBinParam = true;
    CompareUiType();
}

}  // namespace

// Set-up may run again while the stream plays (the region switch, id 1). Whatever a block
// uses is changed under the instance lock, in the steps' order; files are read, the
// detection library loaded and dump files opened outside it.
void Orlune::KivOutProcPlayInit() {
    char value[orlune_platform::kPropertyValueMax] = {};
    orlune_platform::PropertyGet("ro.config.kiv_moviemode", value, "false");
    {
        InstanceLock lock(*this);
        mIoInfo.frameLength = kAlgoFrame;
        mIoInfo.enable = 1;
        mIoInfo.inBuf = mIoBuffer;
        mIoInfo.outBuf = mIoBuffer;
        mMovieMode = (strcmp(value, "true") == 0) ? 1 : 0;
    }

    char steps[orlune_platform::kPropertyValueMax] = {};
    orlune_platform::PropertyGet("ro.config.media_vol_steps", steps, "0");
    gVolSteps = atoi(steps);
    ORLUNE_LOGI(kTagMobile, "gVolSteps:%d, gIsLoudMediaVolumeMode = %d", gVolSteps.load(),
                static_cast<int>(gIsLoudMediaVolumeMode));

    if (!LoadOrulneEffect()) {
        ORLUNE_LOGE(kTagMobile, "%s: load orlune effect fail.", "KivOutProcPlayInit");
        return;
    }

    char versions[kAlgoVersionBytes] = {};
    if (mAlgoGetVersion(versions) == 0) {
        // Each text is at most 64 bytes; a library that fills a field completely must not
        // make the log line read into the next one.
        versions[63] = '\0';
        versions[127] = '\0';
        versions[kAlgoVersionBytes - 1] = '\0';
        ORLUNE_LOGI(kTagMobile, "cgtVersion: %s, releaseVersion: %s, releaseDate: %s", versions,
                    versions + 64, versions + 128);
    }

    LoadConfigurationOnce();
    const VolumeThrRows thresholds = ComputeVolumeThr();
    android::sp<android::LadReportInfo> recordIn = new android::LadReportInfo();
    android::sp<android::LadReportInfo> recordOut = new android::LadReportInfo();
    {
        InstanceLock lock(*this);
        mEvents.ClearEvent();
        ApplyVolumeThr(thresholds);
        InitPopEliminate();
        InitKiv(true);
        // The records of the previous set-up, if any, are released after the lock, on this
        // thread.
        std::swap(mLadInfoIn, recordIn);
        std::swap(mLadInfoOut, recordOut);
        masterVolume = 0.0f;  // the stream volumes belong to the records
        typeVolume = 0.0f;
        clientVolume = 0.0f;
    }
    recordIn.clear();
    recordOut.clear();
    mLad.LoadLadProc(1);
    {
        InstanceLock lock(*this);
        mLad.LadInfoInit(mLadInfoIn);
        mLad.LadInfoInit(mLadInfoOut);
    }

    if (gAudiodumpCount != 0) {
        std::lock_guard<std::mutex> dumpLock(mDumpLock);
        if (DumpEnabled()) {
            ORLUNE_LOGI(kTagMobile, "%s %d: Audio dump has already been enabled", "SetAudioDump",
                        1752);
        } else {
            EnableAudioDump();
        }
    }
}

void Orlune::InitPopEliminate() {
    // Stereo, 4-byte samples, one algorithm frame per call, output type 0 (carried only).
    const ProcessConfig config = {2, 4, kPopBlockBytes, 0, AUDIO_FORMAT_PCM_32_BIT};
    // The block is delayed and faded in place in mIoBuffer, where the algorithm reads it.
    static_assert(sizeof(mIoBuffer) >= kPopBlockBytes, "a pop block fits the algorithm buffer");
    mPopElim->CuttingEdgeFadeinoutInit(&config, &mPopHandle, mIoBuffer, mPopCache);
}

// Called with the instance lock held (set-up, or the block itself).
void Orlune::InitKiv(bool resetGuard) {
    ORLUNE_LOGE(kTagMobile, "%s, tid:%d", "InitKiv", static_cast<int>(gettid()));
    mConfigChannelOut = orlune_platform::PropertyGetInt32("msc.brisel.config_channel_out", 2);
    mIoInfo.inChannels = mChannelCount != 0 ? mChannelCount : 2;

    mOutChannelCount = outchannels::AtInit(mConfigChannelOut, mDeviceType);
    mIoInfo.outChannels = mOutChannelCount;
    mIoInfo.resetWord = 0;

    if (mAlgoGetSize != nullptr) {
        int32_t sizes[kAlgoSizeWords] = {};
        const int32_t ret = mAlgoGetSize(sizes, &mIoInfo);
        ORLUNE_LOGI(kTagMobile, "%s: Get size ret = %d, stateSize = %d,%d,%d, scratchSize = %d",
                    "InitKiv", ret, sizes[0], sizes[1], sizes[2], sizes[3]);
    }
    if (mAlgoInit != nullptr) {
        const int32_t ret = mAlgoInit(mAlgoMemTable, mAlgoMemTable + kAlgoMemBanks);
        if (ret != 0) {
            ORLUNE_LOGE(kTagMobile, "%s: Algorithm orluneInitClass failed! ret = %d", "InitKiv",
                        ret);
            mEvents.errorCodes.AddErrorCode(ret);
        }
    }

    memset(mInputCache, 0, sizeof(mInputCache));
    memset(mOutputBuffer, 0, sizeof(mOutputBuffer));
    inBufOffset = 0;
    mMuteCountdown = 0;
    mResetRequest = 0;
    // One algorithm frame of silence for every output channel: the fixed latency.
    outBufOffset = mOutChannelCount == 4 ? 4 * kAlgoFrame : 2 * kAlgoFrame;

    if (resetGuard) {
        ringingState = 0;
    }
    // The swap fade jumps to its target: no fade is heard across a re-initialisation.
    mSwapPos = pipeline::SwapRestPos(param5Flag != 0);
    param5Step = pipeline::SwapStep(param5Flag != 0);
    if (!mHpDefaultsApplied) {
        HP_MODE = 1;      // manual 3D
        HP_EQ[10] = 100;  // the eleventh custom equaliser band
        wiredHeadsetType = kNoHeadsetTypeChange;
        mHpDefaultsApplied = true;
    }
    mPopElim->ClearCachedBuffer(&mPopHandle, static_cast<unsigned>(mPopCacheSize));
}
