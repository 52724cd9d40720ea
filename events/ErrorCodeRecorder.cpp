#include "events/ErrorCodeRecorder.h"

#include <platform/clock.h>
#include <tovaview/TovaView.h>

#include "base/Log.h"
#include "events/EventKeys.h"
#include "events/OrluneEvent.h"

ErrorCodeRecorder::ErrorCodeRecorder() : lastSendTime(orlune_platform::MonotonicNs()) {}

void ErrorCodeRecorder::AddErrorCode(int code) {
    auto it = errorCounts.find(code);
    if (it != errorCounts.end()) {
        ++it->second;
    } else {
        ORLUNE_LOGD(kTagEvent, "%s: insert errorCode %d", "AddErrorCode", code);
        errorCounts.emplace(code, 1);
    }
    TriggerSendErrorCode(code);
    lastErrorCode = code;
}

bool ErrorCodeRecorder::IsNeedSendLog(int code) {
    if (code == 0 || lastSendTime == -1) {
        return false;
    }
    if (code == lastErrorCode) {
        if (orlune_platform::MonotonicNs() - lastSendTime < sendLogDuration) {
            return false;
        }
        ORLUNE_LOGD(kTagEvent, "need to send log");
        ORLUNE_LOGD(kTagEvent, "%s: same errorCode %d, time to send", "IsNeedSendLog", code);
        return true;
    }
    // A change of code is reported at once, whatever the time.
    ORLUNE_LOGD(kTagEvent, "%s: diff errorCode %d", "IsNeedSendLog", lastErrorCode);
    return true;
}

void ErrorCodeRecorder::TriggerSendErrorCode(int code) {
    if (IsNeedSendLog(code)) {
        SendLog(code);
    }
}

void ErrorCodeRecorder::SendLog(int code) {
    TovaEvent event(kUsageEventId);
    PutInEvent(event, code);
    TovaView::Report(event);
    ClearEvent();
    // One period on from the previous start, not from now, so the schedule stays fixed.
    lastSendTime += sendLogDuration;
}

void ErrorCodeRecorder::PutInEvent(TovaEvent& event, int code) {
    auto it = errorCounts.find(code);
    if (it == errorCounts.end()) {
        ORLUNE_LOGD(kTagEvent, "%s: do not find errorCode %d", "PutInEvent", code);
        return;
    }
    event.PutString(gKeyEffectName, gEffectNameValue);
    event.PutFloat(gKeyAlgoErrorCode, static_cast<float>(code));
    event.PutFloat(gKeyAlgoErrorTimes, static_cast<float>(it->second));
}

void ErrorCodeRecorder::ClearEvent() {
    errorCounts.clear();
}
