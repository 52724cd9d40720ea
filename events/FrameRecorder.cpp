#include "events/FrameRecorder.h"

#include <tovaview/TovaView.h>

#include "base/Log.h"
#include "events/EventKeys.h"
#include "events/UsageRate.h"

std::atomic<uint32_t> SpkFrameRecorder::gFrameSums{0};
std::atomic<uint32_t> HpFrameRecorder::gFrameSums{0};

namespace {

constexpr int kThresholdCount = 6;  // a scene row's volume thresholds, bounding kVolumeBands bands

// First band whose threshold is at least `volume`; kThresholdCount when above all of them.
int FindBand(int volume, const short* thresholds) {
    for (int i = 0; i < kThresholdCount; ++i) {
        if (thresholds[i] >= volume) {
            return i;
        }
    }
    return kThresholdCount;
}

bool ValidThresholds(const short* thresholds) {
    if (thresholds == nullptr) {
        ORLUNE_LOGE(kTagEvent, "%s: thresholds are null", "RecordFrames");
        return false;
    }
    return true;
}

}  // namespace

// ---- speaker ----

void SpkFrameRecorder::RecordFrames(int volume, const short* thresholds) {
    if (!ValidThresholds(thresholds)) {
        return;
    }
    ++counts[FindBand(volume, thresholds)];
    ++totalFrames;
    ++gFrameSums;
}

void SpkFrameRecorder::ClearFrame() {
    totalFrames = 0;
    for (uint32_t& count : counts) {
        count = 0;
    }
    gFrameSums = 0;
}

void SpkFrameRecorder::PutInEvent(TovaEvent& event) const {
    const uint32_t sums = gFrameSums;  // other instances count into it too
    if (totalFrames == 0 || sums == 0 || mode >= kSpkKeyRows) {
        return;
    }
    for (int band = 0; band < kVolumeBands; ++band) {
        event.PutFloat(gSpkVolRateKeys[mode][band], UsageRate(counts[band], totalFrames));
    }
    event.PutFloat(gSpkModeRateKeys[mode], UsageRate(totalFrames, sums));
}

// ---- headphone ----

void HpFrameRecorder::RecordFrames(int volume, const short* thresholds) {
    if (!ValidThresholds(thresholds)) {
        return;
    }
    int band = FindBand(volume, thresholds);
    // The headphone report only tells band 0 from the rest, so a volume above every
    // threshold is kept in band 1.
    if (band == kThresholdCount) {
        band = 1;
    }
    ++counts[band];
    ++totalFrames;
    ++gFrameSums;
}

void HpFrameRecorder::PutInEvent(TovaEvent& event) const {
    const uint32_t sums = gFrameSums;  // other instances count into it too
    if (totalFrames == 0 || sums == 0 || mode >= kHpKeyRows) {
        return;
    }
    event.PutFloat(gHpLowRateKeys[mode], UsageRate(counts[0], totalFrames));
    float upper = 0.0f;
    for (int band = 1; band < kVolumeBands; ++band) {
        upper += UsageRate(counts[band], totalFrames);
    }
    event.PutFloat(gHpUpperRateKeys[mode], upper);
    event.PutFloat(gHpModeRateKeys[mode], UsageRate(totalFrames, sums));
}
