// Loading the detection library: refusals, retries and the single successful load.
#include <android/log.h>
#include <errno.h>
#include <gtest/gtest.h>

#include "lad/LoudAbnormalDetecter.h"
#include "tests/lad/LadTestRoot.h"
#include "tests/support/LogCapture.h"

namespace {

using android::LoudAbnormalDetecter;

constexpr const char* kStandinTag = "louddetect_standin";

class LadBridgeLoadTest : public LadTestRoot {};

TEST_F(LadBridgeLoadTest, TypesOutsideZeroToThreeAreRefused) {
    Preload(kStandinLad);
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(4);
    lad.LoadLadProc(-1);
    EXPECT_EQ(log.Count("invaild type, lad config is not support", nullptr, ANDROID_LOG_ERROR), 2)
            << log.Dump();
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    EXPECT_EQ(log.CountContaining("init type", kStandinTag), 0);
    // The bridge logs without a tag, so liblog puts the program's name in its place.
    for (const LogLine& line : log.Lines()) {
        EXPECT_EQ(line.tag, program_invocation_short_name);
    }
}

TEST_F(LadBridgeLoadTest, MissingConfigurationDoesNotOpenTheLibrary) {
    // Nothing preloaded: an attempt to open the library would log its failure.
    RemoveConfig("lad_config_brisel.xml");
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    lad.LoadLadProc(0);  // no file for type 0 either
    EXPECT_EQ(log.Count("lad config is not exist", nullptr, ANDROID_LOG_ERROR), 2) << log.Dump();
    EXPECT_FALSE(log.Has("LoadLadProc,liblouddetect lib open fail."));
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
}

TEST_F(LadBridgeLoadTest, ConfigurationIsLookedUpPerType) {
    RemoveConfig("lad_config_brisel.xml");
    WriteConfig("lad_config_dsp_orlune.xml", "<lad_config limit_dbfs=\"-2.5\"/>");
    Preload(kStandinLad);
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    EXPECT_FALSE(lad.mLoaded);
    lad.LoadLadProc(3);
    EXPECT_TRUE(lad.mLoaded) << log.Dump();
    EXPECT_TRUE(log.Has("init type 3, limit -2.50 dBFS", kStandinTag));
}

TEST_F(LadBridgeLoadTest, AbsentLibraryLeavesTheBridgeUnloaded) {
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    EXPECT_TRUE(log.Has("LoadLadProc,liblouddetect lib open fail.", nullptr, ANDROID_LOG_ERROR))
            << log.Dump();
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    EXPECT_EQ(lad.mLad, nullptr);
}

TEST_F(LadBridgeLoadTest, SuccessfulLoadCreatesAndInitialisesTheDetector) {
    Preload(kStandinLad);
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    ASSERT_TRUE(lad.mLoaded) << log.Dump();
    EXPECT_NE(lad.mVendorLadLibHandle, nullptr);
    EXPECT_NE(lad.mGetLadInstance, nullptr);
    EXPECT_NE(lad.mDeleteLadInstance, nullptr);
    EXPECT_NE(lad.mLad, nullptr);
    // Slot 2 of the detector ran with the type and read the type's file.
    EXPECT_EQ(log.Count("init type 1, limit -6.00 dBFS", kStandinTag), 1);
    char expected[128];
    snprintf(expected, sizeof expected, "LoadLadProc load lib success, mVendorLadLibHandle=%p",
             lad.mVendorLadLibHandle);
    EXPECT_TRUE(log.Has(expected, nullptr, ANDROID_LOG_DEBUG)) << log.Dump();
}

TEST_F(LadBridgeLoadTest, SecondLoadDoesNothingWhateverTheType) {
    Preload(kStandinLad);
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    ASSERT_TRUE(lad.mLoaded);
    void* handle = lad.mVendorLadLibHandle;
    android::LoudDetector* detector = lad.mLad.get();
    LogCapture log;
    lad.LoadLadProc(1);
    lad.LoadLadProc(4);
    lad.LoadLadProc(0);  // no file for type 0, but nothing is checked any more
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
    EXPECT_EQ(lad.mVendorLadLibHandle, handle);
    EXPECT_EQ(lad.mLad.get(), detector);
}

TEST_F(LadBridgeLoadTest, LibraryWithoutDeleteEntryIsClosedAndRetriedLater) {
    void* incomplete = Preload(kStandinLadWithoutDelete);
    LogCapture log;
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    EXPECT_EQ(log.Count("LoadLadProc, LAD load class address fail.", nullptr, ANDROID_LOG_ERROR), 1)
            << log.Dump();
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    EXPECT_EQ(lad.mLad, nullptr);
    EXPECT_EQ(log.CountContaining("init type", kStandinTag), 0);

    // The bridge let go of its reference: once ours is closed too, the copy is unloaded.
    ASSERT_EQ(dlclose(incomplete), 0);
    EXPECT_FALSE(IsLoaded(kStandinLadWithoutDelete));

    // A later call tries again and now finds the complete library.
    Preload(kStandinLad);
    lad.LoadLadProc(1);
    EXPECT_TRUE(lad.mLoaded) << log.Dump();
    EXPECT_EQ(log.Count("init type 1, limit -6.00 dBFS", kStandinTag), 1);
}

TEST_F(LadBridgeLoadTest, DestructionReleasesTheDetectorAndClosesTheLibrary) {
    void* ours = Preload(kStandinLad);
    LogCapture log;
    {
        LoudAbnormalDetecter lad;
        lad.LoadLadProc(1);
        ASSERT_TRUE(lad.mLoaded);
        ASSERT_EQ(dlclose(ours), 0);  // the bridge now holds the only reference
        EXPECT_TRUE(IsLoaded(kStandinLad));
    }
    EXPECT_EQ(log.Count("detector released", kStandinTag), 1);
    EXPECT_FALSE(IsLoaded(kStandinLad));
}

TEST_F(LadBridgeLoadTest, DeinitClosesTheHandleButKeepsTheState) {
    Preload(kStandinLad);
    LoudAbnormalDetecter lad;
    lad.LoadLadProc(1);
    ASSERT_TRUE(lad.mLoaded);
    EXPECT_EQ(lad.LadDeinit(), 0);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    EXPECT_TRUE(lad.mLoaded);
    EXPECT_NE(lad.mLad, nullptr);
    EXPECT_EQ(lad.LadDeinit(), 0);
}

}  // namespace
