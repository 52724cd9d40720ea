// Loading the detection library: refusals, retries and the single successful load.
#include "tests/lad/LadTestRoot.h"

namespace {

using android::LoudAbnormalDetecter;

class LadBridgeLoadTest : public LadTestRoot {
protected:
    LogCapture log;
    LoudAbnormalDetecter lad;
};

TEST_F(LadBridgeLoadTest, BadTypeOrMissingConfigurationDoesNotOpenTheLibrary) {
    root.Remove("/odm/etc/kiv/lad_config_brisel.xml");
    root.WriteKiv("lad_config_dsp_orlune.xml", "<lad_config limit_dbfs=\"-2.5\"/>");
    Preload(kStandinLad);  // opening it would succeed
    lad.LoadLadProc(4);
    lad.LoadLadProc(-1);
    ASSERT_EQ(log.Count("invaild type, lad config is not support", nullptr, ANDROID_LOG_ERROR), 2)
            << log.Dump();
    lad.LoadLadProc(1);
    EXPECT_EQ(log.Count("lad config is not exist", nullptr, ANDROID_LOG_ERROR), 1) << log.Dump();
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    // The file is looked up per type.
    lad.LoadLadProc(3);
    EXPECT_TRUE(lad.mLoaded) << log.Dump();
    EXPECT_TRUE(log.Has("init type 3, limit -2.50 dBFS", kStandinTag));
}

TEST_F(LadBridgeLoadTest, OneSuccessfulLoadThenNothing) {
    Preload(kStandinLad);
    lad.LoadLadProc(1);
    ASSERT_TRUE(lad.mLoaded) << log.Dump();
    // Slot 2 of the detector ran with the type and read the type's file.
    EXPECT_EQ(log.Count("init type 1, limit -6.00 dBFS", kStandinTag), 1);
    char expected[128];
    snprintf(expected, sizeof expected, "LoadLadProc load lib success, mVendorLadLibHandle=%p",
             lad.mVendorLadLibHandle);
    EXPECT_TRUE(log.Has(expected, nullptr, ANDROID_LOG_DEBUG)) << log.Dump();

    void* handle = lad.mVendorLadLibHandle;
    android::LoudDetector* detector = lad.mLad.get();
    log.Clear();
    lad.LoadLadProc(1);
    lad.LoadLadProc(4);
    lad.LoadLadProc(0);  // no file for type 0, but nothing is checked any more
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
    EXPECT_EQ(lad.mVendorLadLibHandle, handle);
    EXPECT_EQ(lad.mLad.get(), detector);
}

TEST_F(LadBridgeLoadTest, FailedLoadsAreClosedAndRetriedLater) {
    lad.LoadLadProc(1);  // no library at all
    EXPECT_TRUE(log.Has("LoadLadProc,liblouddetect lib open fail.", nullptr, ANDROID_LOG_ERROR))
            << log.Dump();
    EXPECT_FALSE(lad.mLoaded);

    void* incomplete = Preload(kStandinLadWithoutDelete);
    lad.LoadLadProc(1);
    EXPECT_EQ(log.Count("LoadLadProc, LAD load class address fail.", nullptr, ANDROID_LOG_ERROR), 1)
            << log.Dump();
    EXPECT_FALSE(lad.mLoaded);
    EXPECT_EQ(lad.mVendorLadLibHandle, nullptr);
    // The bridge let go of its reference: once ours is closed too, the copy is unloaded.
    ASSERT_EQ(dlclose(incomplete), 0);
    EXPECT_FALSE(IsLoaded(kStandinLadWithoutDelete));

    Preload(kStandinLad);
    lad.LoadLadProc(1);
    EXPECT_TRUE(lad.mLoaded) << log.Dump();
}

TEST_F(LadBridgeLoadTest, DestructionReleasesTheDetectorAndClosesTheLibrary) {
    void* ours = Preload(kStandinLad);
    {
        LoudAbnormalDetecter local;
        local.LoadLadProc(1);
        ASSERT_EQ(dlclose(ours), 0);  // the bridge now holds the only reference
        EXPECT_TRUE(IsLoaded(kStandinLad));
    }
    EXPECT_EQ(log.Count("detector released", kStandinTag), 1);
    EXPECT_FALSE(IsLoaded(kStandinLad));
}

}  // namespace
