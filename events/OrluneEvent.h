// Usage statistics of one effect instance, reported once a day as one platform event.
#pragma once

#include <stdint.h>

#include "events/ErrorCodeRecorder.h"
#include "events/FrameRecorder.h"

class TovaEvent;

constexpr int kUsageEventId = 916120002;  // the platform's event id of the daily usage report
constexpr int kSpkRecorderCount = 8;      // speaker mode ids 0..7
constexpr int kHpRecorderCount = 6;       // headphone mode ids 0..5

// Speaker recorder slots, in member order; each slot's mode id (key row) is given beside it.
enum SpkRecorderSlot {
    SPK_REC_MUSIC = 0,      // mode 0
    SPK_REC_GAME = 1,       // mode 1
    SPK_REC_MOVIE = 2,      // mode 2
    SPK_REC_VE = 3,         // mode 7
    SPK_REC_EDUCATION = 4,  // mode 3
    SPK_REC_VIDEO = 5,      // mode 4
    SPK_REC_LOWPOWER = 6,   // mode 5
    SPK_REC_RING = 7,       // mode 6
};
// Headphone recorder slots; slot i has mode id i.
enum HpRecorderSlot {
    HP_REC_DEFAULT = 0,
    HP_REC_3DLISTEN = 1,
    HP_REC_3DFRONT = 2,
    HP_REC_3DWIDE = 3,
    HP_REC_3DGRAND = 4,
    HP_REC_HIFI = 5,
};

class OrluneEvents {
public:
    OrluneEvents();
    void AddEnableFrame(bool enabled);
    void AddVEFrame(bool ve);
    void AddDeviceFrame(int type);
    void AddAlgoRunTimes();
    void ClearEvent();
    void TriggerSendLog();
    void SendLog();
    void AddEvent(TovaEvent& event);
    void PutInEvent(TovaEvent& event);

    uint32_t totalFrames = 0;
    uint32_t enableFrames = 0;
    uint32_t disableFrames = 0;
    uint32_t veFrames = 0;
    uint32_t speakerFrames = 0;
    uint32_t headphoneFrames = 0;
    uint32_t btFrames = 0;
    uint32_t algoRunTimes = 0;
    SpkFrameRecorder spkRecorders[kSpkRecorderCount];
    HpFrameRecorder hpRecorders[kHpRecorderCount];
    ErrorCodeRecorder errorCodes;
    int64_t lastSendTime;                        // ns, monotonic; -1 disables reporting
    int64_t sendLogDuration = 86400000000000LL;  // 24 hours
};
