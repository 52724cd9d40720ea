// The bridge to the detection library: loading it (refusals, retries, the single successful
// load), and once loaded, each operation landing in its own virtual slot of the detector; and
// the bridge's own writes into the report record.
#include <stdint.h>
#include <string.h>

#include <string>
#include <tuple>
#include <vector>

#include "standin/louddetect/StandinData.h"
#include "tests/events/FakeClock.h"
#include "tests/lad/LadTestRoot.h"

namespace {

using android::LadReportInfo;
using android::LoudAbnormalDetecter;
using android::sp;

constexpr int kFrames = 480;
constexpr int kChannels = 2;
constexpr audio_format_t kPcm32 = AUDIO_FORMAT_PCM_32_BIT;

lad_standin::RecordData DataOf(const sp<LadReportInfo>& info) {
    lad_standin::RecordData data;
    memcpy(&data, info->data, sizeof data);
    return data;
}

// Unloaded, the bridge forwards nothing (every pipeline test runs without a detector) but
// still writes its own fields of the report record.
TEST(LadBridgeUnloadedTest, TheBridgeStillWritesTheRecord) {
    FakeClock clock(1000);
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> info = new LadReportInfo();
    info->infoFlag0 = 1;
    info->infoFlag1 = 2;
    info->switchFlag0 = 1;
    lad.LadInfoInit(info);
    EXPECT_EQ(info->infoFlag0 + info->infoFlag1, 0);
    EXPECT_EQ(info->switchFlag0, 1);
    lad.SetLadVolumeIndex(info, -3);
    EXPECT_EQ(info->volumeIndex, -3);
    lad.LadInfoInit(nullptr);
    lad.SetLadVolumeIndex(nullptr, 5);
    lad.SetLadPlayAppName(nullptr, android::String8("x"));

    // A change of application is recorded with the metrics and time of that moment.
    info->metricA = -3.0f;
    info->metricB = -9.0f;
    lad.SetLadPlayAppName(info, android::String8("com.example.player"));
    EXPECT_EQ(std::make_tuple(std::string(info->playAppName.c_str()), info->appSwitchTime,
                              info->switchFlag0, info->switchFlag1, info->metricAAtSwitch,
                              info->metricBAtSwitch),
              std::make_tuple(std::string("com.example.player"), 1000, 0, 1, -3.0f, -9.0f));
    // The same name again is no change.
    clock.Set(2000);
    lad.SetLadPlayAppName(info, android::String8("com.example.player"));
    EXPECT_EQ(info->appSwitchTime, 1000);
}

class LadBridgeTest : public LadTestRoot {
protected:
    LogCapture log;
    LoudAbnormalDetecter lad;
};

TEST_F(LadBridgeTest, BadTypeOrMissingConfigurationDoesNotOpenTheLibrary) {
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

TEST_F(LadBridgeTest, OneSuccessfulLoadThenNothing) {
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

TEST_F(LadBridgeTest, FailedLoadsAreClosedAndRetriedLater) {
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

TEST_F(LadBridgeTest, DestructionReleasesTheDetectorAndClosesTheLibrary) {
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

// The detection library is called by slot number, so each bridge operation is paired with a
// direct call through the detector's table: operations from slot 2 in table order, with
// RefBase's own hooks not in front of them.
TEST_F(LadBridgeTest, EachOperationReachesItsOwnSlotAndReturnsItsResult) {
    Preload(kStandinLad);
    lad.LoadLadProc(1);
    ASSERT_TRUE(lad.mLoaded);
    sp<LadReportInfo> in = new LadReportInfo(), out = new LadReportInfo();
    const std::vector<int32_t> half(kFrames * kChannels, 1 << 30);  // -6.02 dBFS
    const std::vector<int32_t> full(kFrames * kChannels, INT32_MIN);
    using InitFn = int (*)(android::LoudDetector*, int);
    using PairFn = int (*)(android::LoudDetector*, sp<LadReportInfo>, sp<LadReportInfo>);
    using BufferFn = int (*)(android::LoudDetector*, sp<LadReportInfo>, const void*, int, int,
                             audio_format_t, int);
    android::LoudDetector* detector = lad.mLad.get();
    void* const* table = *reinterpret_cast<void* const* const*>(detector);
    auto pair = [&](int slot) { return reinterpret_cast<PairFn>(table[slot])(detector, in, out); };
    auto buffer = [&](int slot, sp<LadReportInfo> info, const std::vector<int32_t>& samples) {
        return reinterpret_cast<BufferFn>(table[slot])(detector, info, samples.data(), kFrames,
                                                       48000, kPcm32, kChannels);
    };
    EXPECT_EQ(reinterpret_cast<InitFn>(table[2])(detector, 2), 0);
    EXPECT_TRUE(log.Has("init type 2, limit -0.10 dBFS (default)", kStandinTag)) << log.Dump();

    EXPECT_EQ(lad.SetInputBuffer(in, half.data(), kFrames, 48000, kPcm32, kChannels), 0);
    EXPECT_EQ(buffer(7, in, half), 0);
    EXPECT_EQ(lad.SetOutputBuffer(out, full.data(), kFrames, 48000, kPcm32, kChannels), 0);
    EXPECT_EQ(buffer(8, out, full), 0);
    EXPECT_EQ(DataOf(in).inputBlocks + DataOf(out).outputBlocks, 4u);
    // The detector's verdict comes back unchanged, and it saw the records in their order.
    EXPECT_EQ(lad.CheckBuffer(in, out), 1);
    EXPECT_EQ(pair(3), 1);
    EXPECT_EQ(
            log.Count("loud output: peak 0.00 dBFS above limit -0.10 dBFS (input peak -6.02 dBFS)",
                      kStandinTag, ANDROID_LOG_WARN),
            2)
            << log.Dump();
    EXPECT_EQ(lad.UpdateProcTime(in, out), 0);
    EXPECT_EQ(pair(4), 0);
    EXPECT_EQ(DataOf(in).procTimeUpdates + DataOf(out).procTimeUpdates, 4u);
    EXPECT_EQ(lad.SetStartStream(in, out), 0);
    EXPECT_EQ(DataOf(in).streaming + DataOf(out).streaming, 2u);
    EXPECT_EQ(pair(6), 0);
    EXPECT_EQ(DataOf(in).streaming + DataOf(out).streaming, 0u);
    EXPECT_EQ(pair(5), 0);
    EXPECT_EQ(DataOf(in).streaming + DataOf(out).streaming, 2u);
    EXPECT_EQ(lad.SetStopStream(in, out), 0);
    EXPECT_EQ(DataOf(in).streaming + DataOf(out).streaming, 0u);
}

}  // namespace
