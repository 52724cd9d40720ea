// Bridge to the closed loud-output detection library: loads it on demand and forwards the
// effect's buffers, stream start and stop and per-stream facts to its detector object. Every
// forwarding call does nothing while no detector is loaded. The effect makes every call but
// LoadLadProc with its instance lock held, so the writes into the report records (volume
// index, application name) fall between blocks and never meet the detector reading them.
#pragma once

#include <pthread.h>

#include <atomic>
#include <system/audio.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include "abi/LadReportInfo.h"
#include "abi/LoudDetector.h"

namespace android {

class LoudAbnormalDetecter : public RefBase {
public:
    LoudAbnormalDetecter();
    ~LoudAbnormalDetecter() override;

    void LoadLadProc(int type);
    void LadInit(int type);
    int LadDeinit();
    // The calls made on every block or frame take the records by reference: the detector's own
    // slots take them by value, so they are copied (two atomic counts each) only when a
    // detector is there to receive them.
    int SetInputBuffer(const sp<LadReportInfo>& info, const void* buffer, int frames,
                       int sampleRate, audio_format_t format, int channels);
    int SetOutputBuffer(const sp<LadReportInfo>& info, const void* buffer, int frames,
                        int sampleRate, audio_format_t format, int channels);
    int CheckBuffer(const sp<LadReportInfo>& first, const sp<LadReportInfo>& second);
    int UpdateProcTime(const sp<LadReportInfo>& first, const sp<LadReportInfo>& second);
    int SetStartStream(sp<LadReportInfo> first, sp<LadReportInfo> second);
    int SetStopStream(sp<LadReportInfo> first, sp<LadReportInfo> second);
    void LadInfoInit(sp<LadReportInfo> info);
    void SetLadVolumeIndex(const sp<LadReportInfo>& info, int index);
    void SetLadPlayAppName(sp<LadReportInfo> info, const String8& name);

    GetLadInstanceFn mGetLadInstance = nullptr;
    DeleteLadInstanceFn mDeleteLadInstance = nullptr;
    pthread_mutex_t mLock;
    sp<LoudDetector> mLad;
    // mLad's object once it is initialised. The forwarding calls read it without the lock:
    // loading may happen on the control thread while the effect's audio thread runs.
    std::atomic<LoudDetector*> mReady{nullptr};
    void* mVendorLadLibHandle = nullptr;
    bool mLoaded = false;
};

}  // namespace android
