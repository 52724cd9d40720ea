// Drives an instance only through the host's separately declared interface, one observable
// effect per virtual slot, to prove the slot order of the shipped library.
#include <gtest/gtest.h>

#include <vector>

#include "params/ParamIds.h"
#include "tests/support/HostEffect.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(HostViewTest, EachSlotReachesItsOperation) {
    HostLibrary lib;
    ASSERT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    LogCapture log;
    HostOrlune* inst = lib.Create();

    inst->KivOutProcPlayInit();  // slot 3
    EXPECT_TRUE(log.Has("LoadOrulneEffect 1075: Load orlune algo lib OK.")) << log.Dump();

    inst->KivParamsSetInt(kIdOrientation, 1);  // slot 4
    EXPECT_TRUE(log.Has("KivParamsSetInt: Param 4 is set to 1", "orlune_mobile", ANDROID_LOG_INFO));

    inst->KivParamsSetFloat(kIdVolumeDb, -10.0f);  // slot 5
    EXPECT_TRUE(log.Has("volumeDb = -10.000000", "orlune_mobile", ANDROID_LOG_INFO));

    inst->KivParamsSetString(99, "x");  // slot 6
    EXPECT_TRUE(
            log.Has("SetString Unsupport param: 99, value: x", "orlune_mobile", ANDROID_LOG_INFO));

    android::String8 reply = inst->KivParamsGet(android::String8("CHANNEL_SWAPPED"));  // 7
    EXPECT_STREQ(reply.c_str(), "CHANNEL_SWAPPED=false");

    // Slot 8: the first block comes back as the primed frame of silence.
    std::vector<short> block(480 * 2, 1000);
    inst->KivOutProcPlaySamples(block.data(), 480, 2, AUDIO_FORMAT_PCM_16_BIT);
    EXPECT_EQ(block, std::vector<short>(480 * 2, 0));

    EXPECT_FALSE(inst->GetProcessEnable());  // slot 9
    inst->SetProcessEnable(true);            // slot 10
    EXPECT_TRUE(inst->GetProcessEnable());

    lib.Delete(inst);  // slot 1, the deleting destructor
    EXPECT_TRUE(log.Has("DeleteOrluneInstance"));
}

}  // namespace
