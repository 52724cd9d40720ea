// Counts the algorithm's non-zero result codes and reports them: a new code at once, a
// repeated code at most once per period.
#pragma once

#include <stdint.h>
#include <map>

class TovaEvent;

class ErrorCodeRecorder {
public:
    ErrorCodeRecorder();
    void AddErrorCode(int code);
    bool IsNeedSendLog(int code);
    void TriggerSendErrorCode(int code);
    void SendLog(int code);
    void PutInEvent(TovaEvent& event, int code);
    void ClearEvent();

    int32_t lastErrorCode = 0;
    int64_t lastSendTime;                        // ns, monotonic; -1 disables sending
    int64_t sendLogDuration = 86400000000000LL;  // 24 hours
    std::map<int32_t, int32_t> errorCounts;
};
