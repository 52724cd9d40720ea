// The bridge's own writes into the report record: flags, volume index and the bookkeeping of a
// change of application.
#include <gtest/gtest.h>

#include "lad/LoudAbnormalDetecter.h"
#include "tests/events/FakeClock.h"

namespace {

using android::LadReportInfo;
using android::LoudAbnormalDetecter;
using android::sp;
using android::String8;

TEST(LadReportInfoTest, InfoInitClearsBothFlagsOnly) {
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> info = new LadReportInfo();
    info->infoFlag0 = 1;
    info->infoFlag1 = 2;
    info->switchFlag1 = 1;
    lad.LadInfoInit(info);
    EXPECT_EQ(info->infoFlag0, 0);
    EXPECT_EQ(info->infoFlag1, 0);
    EXPECT_EQ(info->switchFlag1, 1);
    lad.LadInfoInit(nullptr);
}

TEST(LadReportInfoTest, VolumeIndexIsStored) {
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> info = new LadReportInfo();
    lad.SetLadVolumeIndex(info, 11);
    EXPECT_EQ(info->volumeIndex, 11);
    lad.SetLadVolumeIndex(info, -3);
    EXPECT_EQ(info->volumeIndex, -3);
    lad.SetLadVolumeIndex(nullptr, 5);
}

TEST(LadReportInfoTest, ChangeOfApplicationIsRecordedOncePerChange) {
    FakeClock clock(1000);
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> info = new LadReportInfo();
    info->metricA = -3.0f;
    info->metricB = -9.0f;
    info->switchFlag0 = 1;

    lad.SetLadPlayAppName(info, String8("com.example.player"));
    EXPECT_STREQ(info->playAppName.c_str(), "com.example.player");
    EXPECT_EQ(info->appSwitchTime, 1000);
    EXPECT_EQ(info->switchFlag0, 0);
    EXPECT_EQ(info->switchFlag1, 1);
    EXPECT_EQ(info->metricAAtSwitch, -3.0f);
    EXPECT_EQ(info->metricBAtSwitch, -9.0f);

    // The same name again: no new switch.
    clock.Set(2000);
    info->metricA = -1.0f;
    info->switchFlag0 = 1;
    info->switchFlag1 = 0;
    lad.SetLadPlayAppName(info, String8("com.example.player"));
    EXPECT_EQ(info->appSwitchTime, 1000);
    EXPECT_EQ(info->metricAAtSwitch, -3.0f);
    EXPECT_EQ(info->switchFlag0, 1);
    EXPECT_EQ(info->switchFlag1, 0);

    // Another name: a second switch with the metrics of that moment.
    clock.Set(3000);
    lad.SetLadPlayAppName(info, String8("com.example.game"));
    EXPECT_STREQ(info->playAppName.c_str(), "com.example.game");
    EXPECT_EQ(info->appSwitchTime, 3000);
    EXPECT_EQ(info->metricAAtSwitch, -1.0f);
    EXPECT_EQ(info->switchFlag0, 0);
    EXPECT_EQ(info->switchFlag1, 1);

    lad.SetLadPlayAppName(nullptr, String8("x"));
}

TEST(LadReportInfoTest, EmptyNameOnANewRecordIsNoChange) {
    FakeClock clock(42);
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> info = new LadReportInfo();
    lad.SetLadPlayAppName(info, String8(""));
    EXPECT_EQ(info->appSwitchTime, 0);
    EXPECT_EQ(info->switchFlag1, 0);
}

}  // namespace
