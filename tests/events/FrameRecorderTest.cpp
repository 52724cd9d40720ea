#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "events/FrameRecorder.h"
#include "tests/events/EventText.h"

namespace {

const short kThresholds[6] = {10, 20, 30, 40, 50, 60};

class FrameRecorderTest : public ::testing::Test {
protected:
    void SetUp() override {
        SpkFrameRecorder::gFrameSums = 0;
        HpFrameRecorder::gFrameSums = 0;
    }
};

std::vector<uint32_t> Counts(const uint32_t (&counts)[kVolumeBands]) {
    return std::vector<uint32_t>(counts, counts + kVolumeBands);
}

TEST_F(FrameRecorderTest, VolumeBandsAtTheThresholds) {
    SpkFrameRecorder spk;
    HpFrameRecorder hp;
    for (int volume : {-5, 10, 11, 41, 60, 61}) {
        spk.RecordFrames(volume, kThresholds);
        hp.RecordFrames(volume, kThresholds);
    }
    // Above every threshold the headphone recorder counts band 1, not band 6.
    EXPECT_EQ(Counts(spk.counts), (std::vector<uint32_t>{2, 1, 0, 0, 1, 1, 1}));
    EXPECT_EQ(Counts(hp.counts), (std::vector<uint32_t>{2, 2, 0, 0, 1, 1, 0}));
    EXPECT_EQ(spk.totalFrames + hp.totalFrames, 12u);
    EXPECT_EQ(SpkFrameRecorder::gFrameSums + HpFrameRecorder::gFrameSums, 12u);
}

// Headphones report band 0 apart from the sum of the others.
TEST_F(FrameRecorderTest, HeadphoneRatesOfBandZeroAndTheRest) {
    HpFrameRecorder hp;
    hp.mode = 0;
    hp.RecordFrames(5, kThresholds);
    hp.RecordFrames(25, kThresholds);
    hp.RecordFrames(61, kThresholds);
    TovaEvent event(1);
    hp.PutInEvent(event);
    EXPECT_EQ(EventText(event),
              "HPDEFAULTLOWRATE=0.333333 HPDEFAULTONERATE=0.666667 HPDEFAULTMODERATE=1.000000");
}

}  // namespace
