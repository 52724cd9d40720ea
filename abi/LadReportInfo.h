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

// The detection library reads and writes the record by these offsets.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(android::RefBase) == 16, "reference-counted base is 16 bytes");
static_assert(offsetof(android::LadReportInfo, data) == 16, "data");
static_assert(offsetof(android::LadReportInfo, infoFlag0) == 7708, "infoFlag0");
static_assert(offsetof(android::LadReportInfo, infoFlag1) == 7709, "infoFlag1");
static_assert(offsetof(android::LadReportInfo, text0) == 7720, "text0");
static_assert(offsetof(android::LadReportInfo, text1) == 7736, "text1");
static_assert(offsetof(android::LadReportInfo, volumeIndex) == 7752, "volumeIndex");
static_assert(offsetof(android::LadReportInfo, playAppName) == 7776, "playAppName");
static_assert(offsetof(android::LadReportInfo, metricA) == 7796, "metricA");
static_assert(offsetof(android::LadReportInfo, metricB) == 7804, "metricB");
static_assert(offsetof(android::LadReportInfo, metricAAtSwitch) == 7808, "metricAAtSwitch");
static_assert(offsetof(android::LadReportInfo, metricBAtSwitch) == 7816, "metricBAtSwitch");
static_assert(offsetof(android::LadReportInfo, appSwitchTime) == 7840, "appSwitchTime");
static_assert(offsetof(android::LadReportInfo, switchFlag0) == 7848, "switchFlag0");
static_assert(offsetof(android::LadReportInfo, switchFlag1) == 7849, "switchFlag1");
static_assert(sizeof(android::LadReportInfo) == 7872, "record size");
#pragma GCC diagnostic pop
