// The detector object of the loud-output detection library, called by virtual slot. It
// derives virtually from RefBase, as the platform's interfaces do, so that its own table
// starts with the two destructors followed by these operations (slots 2 to 8).
#pragma once

#include <system/audio.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include "abi/LadReportInfo.h"

namespace android {

class LoudDetector : public virtual RefBase {
protected:
    // Declared before the operations: new virtual functions take their slots in declaration
    // order, and the two destructors must be slots 0 and 1.
    ~LoudDetector() override = default;

public:
    virtual int Init(int type) = 0;                                                     // slot 2
    virtual int CheckBuffer(sp<LadReportInfo> first, sp<LadReportInfo> second) = 0;     // 3
    virtual int UpdateProcTime(sp<LadReportInfo> first, sp<LadReportInfo> second) = 0;  // 4
    virtual int StartStream(sp<LadReportInfo> first, sp<LadReportInfo> second) = 0;     // 5
    virtual int StopStream(sp<LadReportInfo> first, sp<LadReportInfo> second) = 0;      // 6
    virtual int SetInputBuffer(sp<LadReportInfo> info, const void* samples, int frames,
                               int sampleRate, audio_format_t format, int channels) = 0;  // 7
    virtual int SetOutputBuffer(sp<LadReportInfo> info, const void* samples, int frames,
                                int sampleRate, audio_format_t format, int channels) = 0;  // 8
};

}  // namespace android

// Entry points of the detection library, looked up by these unmangled names.
using GetLadInstanceFn = android::LoudDetector* (*)();
using DeleteLadInstanceFn = void (*)(android::LoudDetector*);
