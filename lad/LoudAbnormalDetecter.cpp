#include "lad/LoudAbnormalDetecter.h"

#include <dlfcn.h>
#include <unistd.h>

#include <platform/clock.h>
#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "base/Log.h"

namespace android {

namespace {

constexpr int kLadConfigTypes = 4;  // detector types 0..3, one configuration file each

// The detection library reads its configuration itself; the bridge only checks that the file
// for the requested type exists.
const char* const kLadConfigFiles[kLadConfigTypes] = {
        "/odm/etc/kiv/lad_config_dts.xml",
        "/odm/etc/kiv/lad_config_brisel.xml",
        "/odm/etc/kiv/lad_config_lowlatency.xml",
        "/odm/etc/kiv/lad_config_dsp_orlune.xml",
};

bool ConfigFileRefused(const char* path) {
    const ConfigFileOpen config = OpenConfigFile(path, ConfigFileKind::Xml);
    if (config.file != nullptr) {
        fclose(config.file);
    }
    return config.refused;
}

constexpr const char* kLadLibName = "liblouddetect.so";

class LockGuard {
public:
    explicit LockGuard(pthread_mutex_t* lock) : mLock(lock) { pthread_mutex_lock(mLock); }
    ~LockGuard() { pthread_mutex_unlock(mLock); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;

private:
    pthread_mutex_t* mLock;
};

}  // namespace

LoudAbnormalDetecter::LoudAbnormalDetecter() {
    // The bridge lives inline in the effect instance and is destroyed directly, never through
    // a strong pointer. With a weak lifetime RefBase frees its counter block in that case too.
    extendObjectLifetime(OBJECT_LIFETIME_WEAK);
    pthread_mutex_init(&mLock, nullptr);
}

LoudAbnormalDetecter::~LoudAbnormalDetecter() {
    if (mVendorLadLibHandle != nullptr) {
        // The detector object's code lives in the library: drop it while it is still mapped.
        mReady.store(nullptr);
        mLad.clear();
        dlclose(mVendorLadLibHandle);
        mVendorLadLibHandle = nullptr;
    }
    pthread_mutex_destroy(&mLock);
}

void LoudAbnormalDetecter::LoadLadProc(int type) {
    LockGuard guard(&mLock);
    if (mLoaded) {
        return;
    }
    if (type < 0 || type >= kLadConfigTypes) {
        ORLUNE_LOGE(kTagNone, "invaild type, lad config is not support");
        return;
    }
    // A configuration that is not a regular file of sane size counts as absent, so that the
    // detector's library never opens it (a FIFO would block it).
    if (orlune_platform::DevAccess(kLadConfigFiles[type], F_OK) != 0 ||
        ConfigFileRefused(kLadConfigFiles[type])) {
        ORLUNE_LOGE(kTagNone, "lad config is not exist");
        return;
    }
    mVendorLadLibHandle = dlopen(kLadLibName, RTLD_LAZY);
    if (mVendorLadLibHandle == nullptr) {
        ORLUNE_LOGE(kTagNone, "%s,liblouddetect lib open fail.", "LoadLadProc");
        return;
    }
    mGetLadInstance =
            reinterpret_cast<GetLadInstanceFn>(dlsym(mVendorLadLibHandle, "GetLadInstance"));
    mDeleteLadInstance =
            reinterpret_cast<DeleteLadInstanceFn>(dlsym(mVendorLadLibHandle, "DeleteLadInstance"));
    if (mGetLadInstance == nullptr || mDeleteLadInstance == nullptr) {
        ORLUNE_LOGE(kTagNone, "%s, LAD load class address fail.", "LoadLadProc");
        mGetLadInstance = nullptr;
        mDeleteLadInstance = nullptr;
        dlclose(mVendorLadLibHandle);
        mVendorLadLibHandle = nullptr;
        return;
    }
    mLoaded = true;
    LadInit(type);
    ORLUNE_LOGD(kTagNone, "%s load lib success, mVendorLadLibHandle=%p", "LoadLadProc",
                mVendorLadLibHandle);
}

// Runs once, from LoadLadProc: the detector is handed to the forwarding calls only after its
// initialisation, and is never replaced while they may use it.
void LoudAbnormalDetecter::LadInit(int type) {
    if (mGetLadInstance == nullptr) {
        return;  // no library loaded
    }
    mLad = mGetLadInstance();
    if (mLad != nullptr) {
        mLad->Init(type);
        mReady.store(mLad.get(), std::memory_order_release);
    }
}

int LoudAbnormalDetecter::LadDeinit() {
    if (mVendorLadLibHandle == nullptr) {
        return 0;
    }
    int ret = dlclose(mVendorLadLibHandle);
    mVendorLadLibHandle = nullptr;
    return ret;
}

int LoudAbnormalDetecter::SetInputBuffer(const sp<LadReportInfo>& info, const void* buffer,
                                         int frames, int sampleRate, audio_format_t format,
                                         int channels) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    return lad->SetInputBuffer(info, buffer, frames, sampleRate, format, channels);
}

int LoudAbnormalDetecter::SetOutputBuffer(const sp<LadReportInfo>& info, const void* buffer,
                                          int frames, int sampleRate, audio_format_t format,
                                          int channels) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    return lad->SetOutputBuffer(info, buffer, frames, sampleRate, format, channels);
}

int LoudAbnormalDetecter::CheckBuffer(const sp<LadReportInfo>& first,
                                      const sp<LadReportInfo>& second) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    return lad->CheckBuffer(first, second);
}

int LoudAbnormalDetecter::UpdateProcTime(const sp<LadReportInfo>& first,
                                         const sp<LadReportInfo>& second) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    return lad->UpdateProcTime(first, second);
}

int LoudAbnormalDetecter::SetStartStream(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    sp<LadReportInfo> firstCopy = first;
    sp<LadReportInfo> secondCopy = second;
    return lad->StartStream(firstCopy, secondCopy);
}

int LoudAbnormalDetecter::SetStopStream(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    LoudDetector* lad = mReady.load(std::memory_order_acquire);
    if (lad == nullptr) {
        return 0;
    }
    sp<LadReportInfo> firstCopy = first;
    sp<LadReportInfo> secondCopy = second;
    return lad->StopStream(firstCopy, secondCopy);
}

void LoudAbnormalDetecter::LadInfoInit(sp<LadReportInfo> info) {
    if (info == nullptr) {
        return;
    }
    info->infoFlag0 = 0;
    info->infoFlag1 = 0;
}

void LoudAbnormalDetecter::SetLadVolumeIndex(const sp<LadReportInfo>& info, int index) {
    if (info == nullptr) {
        return;
    }
    info->volumeIndex = index;
}

void LoudAbnormalDetecter::SetLadPlayAppName(sp<LadReportInfo> info, const String8& name) {
    if (info == nullptr) {
        return;
    }
    if (name != info->playAppName) {
        info->switchFlag0 = 0;
        info->switchFlag1 = 1;
        info->metricAAtSwitch = info->metricA;
        info->metricBAtSwitch = info->metricB;
        info->appSwitchTime = orlune_platform::MonotonicNs();
    }
    LockGuard guard(&mLock);
    info->playAppName = name;
}

}  // namespace android
