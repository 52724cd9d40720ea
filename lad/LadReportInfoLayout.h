// Compile-time checks of the record layout that the detection library depends on.
#pragma once

#include "lad/LadReportInfo.h"

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
