#include "events/OrluneEvent.h"

#include <platform/clock.h>
#include <tovaview/TovaView.h>

#include "base/Log.h"
#include "events/EventKeys.h"
#include "events/UsageRate.h"

// Rows by speaker mode id: 0 MUSIC, 1 GAME, 2 MOVIE, 3 EDUCATION, 4 VIDEO, 5 LOWPOWER, 6 RING,
// 7 VE. The ring row has no "MODE" in its keys.
#define ORLUNE_SPK_ROW(p)                                                                   \
    {                                                                                       \
        p "LOWVOLRATE", p "VOLUME1RATE", p "VOLUME2RATE", p "VOLUME3RATE", p "VOLUME4RATE", \
                p "VOLUME5RATE", p "LOUDVOLRATE"                                            \
    }

const std::string gSpkVolRateKeys[kSpkKeyRows][7] = {
        ORLUNE_SPK_ROW("MUSICMODE"), ORLUNE_SPK_ROW("GAMEMODE"),
        ORLUNE_SPK_ROW("MOVIEMODE"), ORLUNE_SPK_ROW("EDUCATIONMODE"),
        ORLUNE_SPK_ROW("VIDEOMODE"), ORLUNE_SPK_ROW("LOWPOWERMODE"),
        ORLUNE_SPK_ROW("RING"),      ORLUNE_SPK_ROW("VEMODE"),
};
#undef ORLUNE_SPK_ROW

const std::string gSpkModeRateKeys[kSpkKeyRows] = {
        "MUSICMODERATE", "GAMEMODERATE",     "MOVIEMODERATE", "EDUCATIONMODERATE",
        "VIDEOMODERATE", "LOWPOWERMODERATE", "RINGMODERATE",  "VEMODERATE",
};

// Rows by headphone mode id: 0 DEFAULT, 1 3DLISTEN, 2 3DFRONT, 3 3DWIDE, 4 3DGRAND, 5 HIFI.
const std::string gHpLowRateKeys[kHpKeyRows] = {
        "HPDEFAULTLOWRATE", "HP3DLISTENLOWRATE", "HP3DFRONTLOWRATE",
        "HP3DWIDELOWRATE",  "HP3DGRANDLOWRATE",  "HPHIFILOWRATE",
};
const std::string gHpUpperRateKeys[kHpKeyRows] = {
        "HPDEFAULTONERATE", "HP3DLISTENONERATE", "HP3DFRONTONERATE",
        "HP3DWIDEONERATE",  "HP3DGRANDONERATE",  "HPHIFIONERATE",
};
const std::string gHpModeRateKeys[kHpKeyRows] = {
        "HPDEFAULTMODERATE", "HP3DLISTENMODERATE", "HP3DFRONTMODERATE",
        "HP3DWIDEMODERATE",  "HP3DGRANDMODERATE",  "HPHIFIMODERATE",
};

const std::string gKeyEffectName = "EFFECTNAME";
const std::string gEffectNameValue = "ORLUNE";
const std::string gKeyEnableRate = "ORLUNEENABLERATE";
const std::string gKeySpeakerUsageRate = "SPEAKERUSAGERATE";
const std::string gKeyHeadphoneUsageRate = "HEADPHONEUSAGERATE";
const std::string gKeyBtUsageRate = "BTUSAGERATE";
const std::string gKeyEffectUsageTime = "EFFECTUSAGETIME";
const std::string gKeyAlgoErrorCode = "ALGOERRORCODE";
const std::string gKeyAlgoErrorTimes = "ALGOERRORTIMES";

namespace {

// Mode id (key row) of each speaker recorder, in member order.
constexpr uint16_t kSpkRecorderModes[kSpkRecorderCount] = {0, 1, 2, 7, 3, 4, 5, 6};

}  // namespace

OrluneEvents::OrluneEvents() : lastSendTime(orlune_platform::MonotonicNs()) {
    for (int i = 0; i < kSpkRecorderCount; ++i) {
        spkRecorders[i].mode = kSpkRecorderModes[i];
    }
    for (int i = 0; i < kHpRecorderCount; ++i) {
        hpRecorders[i].mode = static_cast<uint16_t>(i);
    }
}

void OrluneEvents::AddEnableFrame(bool enabled) {
    ++totalFrames;
    if (enabled) {
        ++enableFrames;
    } else {
        ++disableFrames;
    }
}

void OrluneEvents::AddVEFrame(bool ve) {
    if (ve) {
        ++veFrames;
    }
}

void OrluneEvents::AddDeviceFrame(int type) {
    switch (type) {
        case 1:
            ++speakerFrames;
            break;
        case 2:
            ++headphoneFrames;
            break;
        case 3:
            ++btFrames;
            break;
        default:
            ORLUNE_LOGE(kTagEvent, "%s: invalid device type %d", "AddDeviceFrame", type);
            break;
    }
}

void OrluneEvents::AddAlgoRunTimes() {
    ++algoRunTimes;
}

void OrluneEvents::ClearEvent() {
    totalFrames = 0;
    enableFrames = 0;
    disableFrames = 0;
    veFrames = 0;
    speakerFrames = 0;
    headphoneFrames = 0;
    btFrames = 0;
    algoRunTimes = 0;
    // Every recorder restarts completely here, the headphone band counts included.
    for (SpkFrameRecorder& recorder : spkRecorders) {
        recorder.ClearFrame();
    }
    for (HpFrameRecorder& recorder : hpRecorders) {
        recorder.totalFrames = 0;
        for (uint32_t& count : recorder.counts) {
            count = 0;
        }
    }
    SpkFrameRecorder::gFrameSums = 0;
    HpFrameRecorder::gFrameSums = 0;
}

void OrluneEvents::TriggerSendLog() {
    errorCodes.TriggerSendErrorCode(errorCodes.lastErrorCode);
    if (lastSendTime == -1 || orlune_platform::MonotonicNs() - lastSendTime < sendLogDuration) {
        return;
    }
    SendLog();
}

void OrluneEvents::SendLog() {
    ORLUNE_LOGD(kTagEvent, "need to send log");
    TovaEvent event(kUsageEventId);
    AddEvent(event);
    TovaView::Report(event);
    ClearEvent();
    // One period on from the previous start: a late report keeps the daily schedule, and a
    // device that slept for days catches up on consecutive calls.
    lastSendTime += sendLogDuration;
}

void OrluneEvents::AddEvent(TovaEvent& event) {
    for (const SpkFrameRecorder& recorder : spkRecorders) {
        recorder.PutInEvent(event);
    }
    for (const HpFrameRecorder& recorder : hpRecorders) {
        recorder.PutInEvent(event);
    }
    PutInEvent(event);
}

void OrluneEvents::PutInEvent(TovaEvent& event) {
    if (totalFrames == 0) {
        return;
    }
    event.PutString(gKeyEffectName, gEffectNameValue);
    event.PutFloat(gKeyEnableRate, UsageRate(enableFrames, totalFrames));
    event.PutFloat(gKeySpeakerUsageRate, UsageRate(speakerFrames, totalFrames));
    event.PutFloat(gKeyHeadphoneUsageRate, UsageRate(headphoneFrames, totalFrames));
    event.PutFloat(gKeyBtUsageRate, UsageRate(btFrames, totalFrames));
    // Each run is one 10 ms frame: the running time in seconds.
    event.PutFloat(gKeyEffectUsageTime, static_cast<float>(algoRunTimes) * 10.0f / 1000.0f);
}
