// The per-stream record shared with the loud-output detection library. The library reads and
// writes it by byte offset, so its layout is fixed (LP64).
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/String8.h>

namespace android {

class LadReportInfo : public RefBase {
public:
    LadReportInfo() = default;
    ~LadReportInfo() override = default;

    uint8_t data[7680] = {};  // the detection library's own
    uint8_t reserved0[12] = {};
    uint8_t infoFlag0 = 0;
    uint8_t infoFlag1 = 0;
    uint8_t reserved1[10] = {};
    String8 text0;
    uint8_t reserved2[8] = {};
    String8 text1;
    uint8_t reserved3[8] = {};
    int32_t volumeIndex = 0;
    uint8_t reserved4[20] = {};
    String8 playAppName;
    uint8_t reserved5[12] = {};
    float metricA = 0.0f;
    uint8_t reserved6[4] = {};
    float metricB = 0.0f;
    float metricAAtSwitch = 0.0f;
    uint8_t reserved7[4] = {};
    float metricBAtSwitch = 0.0f;
    uint8_t reserved8[20] = {};
    int64_t appSwitchTime = 0;
    uint8_t switchFlag0 = 0;
    uint8_t switchFlag1 = 0;
    uint8_t reserved9[22] = {};
};

}  // namespace android
