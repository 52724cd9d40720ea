// Forwarding through the bridge to the stand-in detector: each operation must land in its own
// virtual slot, and nothing is forwarded while no detector is loaded.
#include <android/log.h>
#include <gtest/gtest.h>

#include <math.h>
#include <stdint.h>
#include <string.h>

#include <vector>

#include "lad/LoudAbnormalDetecter.h"
#include "standin/louddetect/StandinData.h"
#include "tests/lad/LadTestRoot.h"
#include "tests/support/LogCapture.h"

namespace {

using android::LadReportInfo;
using android::LoudAbnormalDetecter;
using android::sp;

constexpr const char* kStandinTag = "louddetect_standin";
constexpr int kFrames = 480;
constexpr int kChannels = 2;

lad_standin::RecordData DataOf(const sp<LadReportInfo>& info) {
    lad_standin::RecordData data;
    memcpy(&data, info->data, sizeof data);
    return data;
}

std::vector<int32_t> Constant(int32_t value) {
    return std::vector<int32_t>(kFrames * kChannels, value);
}

class LadBridgeForwardTest : public LadTestRoot {
protected:
    void SetUp() override {
        LadTestRoot::SetUp();
        Preload(kStandinLad);
        lad.LoadLadProc(1);
        ASSERT_TRUE(lad.mLoaded);
    }

    LoudAbnormalDetecter lad;
    sp<LadReportInfo> in = new LadReportInfo();
    sp<LadReportInfo> out = new LadReportInfo();
};

TEST_F(LadBridgeForwardTest, InputBufferIsMeasuredIntoTheInputRecord) {
    std::vector<int32_t> half = Constant(1 << 30);  // -6.02 dBFS
    EXPECT_EQ(
            lad.SetInputBuffer(in, half.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels),
            0);
    EXPECT_NEAR(in->metricA, -6.0206f, 1e-3f);
    EXPECT_NEAR(in->metricB, -6.0206f, 1e-3f);
    EXPECT_EQ(DataOf(in).inputBlocks, 1u);
    EXPECT_EQ(DataOf(in).outputBlocks, 0u);
    EXPECT_EQ(out->metricA, 0.0f);

    // Peak and RMS differ for a signal that is loud only briefly.
    std::vector<int32_t> burst = Constant(0);
    burst[7] = INT32_MIN;
    lad.SetInputBuffer(in, burst.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels);
    EXPECT_FLOAT_EQ(in->metricA, 0.0f);
    EXPECT_NEAR(in->metricB, 10.0f * log10f(1.0f / (kFrames * kChannels)), 1e-3f);
}

TEST_F(LadBridgeForwardTest, OutputBufferIsMeasuredIntoTheOutputRecord) {
    std::vector<int32_t> quiet = Constant(1 << 27);  // -24.08 dBFS
    EXPECT_EQ(lad.SetOutputBuffer(out, quiet.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT,
                                  kChannels),
              0);
    EXPECT_NEAR(out->metricA, -24.0824f, 1e-3f);
    EXPECT_EQ(DataOf(out).outputBlocks, 1u);
    EXPECT_EQ(DataOf(out).inputBlocks + DataOf(in).outputBlocks, 0u);
    EXPECT_EQ(in->metricA, 0.0f);
}

TEST_F(LadBridgeForwardTest, DetectorResultsArePassedBackUnchanged) {
    std::vector<int32_t> samples = Constant(1);
    EXPECT_EQ(lad.SetInputBuffer(in, samples.data(), kFrames, 48000, AUDIO_FORMAT_PCM_16_BIT,
                                 kChannels),
              -1);
    EXPECT_EQ(
            lad.SetOutputBuffer(out, samples.data(), 0, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels),
            -1);
    EXPECT_EQ(lad.CheckBuffer(in, nullptr), -1);
}

TEST_F(LadBridgeForwardTest, CheckBufferComparesTheOutputWithTheLimit) {
    LogCapture log;
    std::vector<int32_t> input = Constant(1 << 30);
    std::vector<int32_t> loud = Constant(INT32_MAX);
    loud[1] = INT32_MIN;                             // exactly full scale
    std::vector<int32_t> quiet = Constant(1 << 28);  // -18.06 dBFS, under the -6 dBFS limit
    lad.SetInputBuffer(in, input.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels);

    lad.SetOutputBuffer(out, quiet.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels);
    EXPECT_EQ(lad.CheckBuffer(in, out), 0);
    EXPECT_EQ(log.CountContaining("loud output", kStandinTag), 0);
    EXPECT_EQ(out->infoFlag0, 0);

    lad.SetOutputBuffer(out, loud.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT, kChannels);
    EXPECT_EQ(lad.CheckBuffer(in, out), 1);
    EXPECT_TRUE(
            log.Has("loud output: peak 0.00 dBFS above limit -6.00 dBFS (input peak -6.02 "
                    "dBFS)",
                    kStandinTag, ANDROID_LOG_WARN))
            << log.Dump();
    EXPECT_EQ(out->infoFlag0, 1);

    lad.LadInfoInit(out);
    EXPECT_EQ(out->infoFlag0, 0);
}

TEST_F(LadBridgeForwardTest, ProcTimeAndStreamCallsReachTheirSlots) {
    LogCapture log;
    EXPECT_EQ(lad.UpdateProcTime(in, out), 0);
    EXPECT_EQ(DataOf(in).procTimeUpdates, 1u);
    EXPECT_EQ(DataOf(out).procTimeUpdates, 1u);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();

    EXPECT_EQ(lad.SetStartStream(in, out), 0);
    EXPECT_EQ(DataOf(in).streaming, 1u);
    EXPECT_EQ(DataOf(out).streaming, 1u);
    EXPECT_EQ(log.Count("stream start", kStandinTag), 1);
    EXPECT_EQ(log.Count("stream stop", kStandinTag), 0);

    EXPECT_EQ(lad.SetStopStream(in, out), 0);
    EXPECT_EQ(DataOf(in).streaming, 0u);
    EXPECT_EQ(log.Count("stream stop", kStandinTag), 1);
    EXPECT_EQ(DataOf(in).procTimeUpdates, 1u);
    EXPECT_EQ(DataOf(in).inputBlocks + DataOf(in).outputBlocks, 0u);
}

// The detection library is called by slot number, so check the numbering itself: operations
// from slot 2 in table order, with RefBase's own hooks not in front of them.
TEST_F(LadBridgeForwardTest, DetectorTableHasTheOperationsFromSlotTwo) {
    using InitFn = int (*)(android::LoudDetector*, int);
    using CheckFn = int (*)(android::LoudDetector*, sp<LadReportInfo>, sp<LadReportInfo>);
    using BufferFn = int (*)(android::LoudDetector*, sp<LadReportInfo>, const void*, int, int,
                             audio_format_t, int);
    android::LoudDetector* detector = lad.mLad.get();
    void* const* table = *reinterpret_cast<void* const* const*>(detector);
    LogCapture log;

    EXPECT_EQ(reinterpret_cast<InitFn>(table[2])(detector, 2), 0);
    EXPECT_TRUE(log.Has("init type 2, limit -0.10 dBFS (default)", kStandinTag)) << log.Dump();

    std::vector<int32_t> input = Constant(1 << 30);
    std::vector<int32_t> output = Constant(INT32_MIN);
    EXPECT_EQ(reinterpret_cast<BufferFn>(table[7])(detector, in, input.data(), kFrames, 48000,
                                                   AUDIO_FORMAT_PCM_32_BIT, kChannels),
              0);
    EXPECT_EQ(DataOf(in).inputBlocks, 1u);
    EXPECT_EQ(reinterpret_cast<BufferFn>(table[8])(detector, out, output.data(), kFrames, 48000,
                                                   AUDIO_FORMAT_PCM_32_BIT, kChannels),
              0);
    EXPECT_EQ(DataOf(out).outputBlocks, 1u);
    EXPECT_EQ(reinterpret_cast<CheckFn>(table[3])(detector, in, out), 1);
    EXPECT_EQ(reinterpret_cast<CheckFn>(table[4])(detector, in, out), 0);
    EXPECT_EQ(DataOf(in).procTimeUpdates, 1u);
    EXPECT_EQ(reinterpret_cast<CheckFn>(table[5])(detector, in, out), 0);
    EXPECT_EQ(log.Count("stream start", kStandinTag), 1);
    EXPECT_EQ(reinterpret_cast<CheckFn>(table[6])(detector, in, out), 0);
    EXPECT_EQ(log.Count("stream stop", kStandinTag), 1);
}

class LadBridgeUnloadedTest : public LadTestRoot {};

TEST_F(LadBridgeUnloadedTest, ForwardingWithoutADetectorDoesNothing) {
    LoudAbnormalDetecter lad;
    sp<LadReportInfo> in = new LadReportInfo();
    sp<LadReportInfo> out = new LadReportInfo();
    std::vector<int32_t> samples = Constant(INT32_MIN);
    LogCapture log;
    EXPECT_EQ(lad.SetInputBuffer(in, samples.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT,
                                 kChannels),
              0);
    EXPECT_EQ(lad.SetOutputBuffer(out, samples.data(), kFrames, 48000, AUDIO_FORMAT_PCM_32_BIT,
                                  kChannels),
              0);
    EXPECT_EQ(lad.CheckBuffer(in, out), 0);
    EXPECT_EQ(lad.UpdateProcTime(in, out), 0);
    EXPECT_EQ(lad.SetStartStream(in, out), 0);
    EXPECT_EQ(lad.SetStopStream(nullptr, nullptr), 0);
    lad.LadInit(1);  // no library: nothing to create
    EXPECT_EQ(lad.mLad, nullptr);
    EXPECT_EQ(in->metricA, 0.0f);
    EXPECT_EQ(out->metricA, 0.0f);
    EXPECT_EQ(DataOf(in).procTimeUpdates, 0u);
    EXPECT_TRUE(log.Lines().empty()) << log.Dump();
}

}  // namespace
