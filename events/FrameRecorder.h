// Per-mode counters of processed blocks by volume band, for the daily usage event.
#pragma once

#include <stdint.h>

#include <atomic>

class TovaEvent;

constexpr int kVolumeBands = 7;  // the seven volume levels of the tuning

class SpkFrameRecorder {
public:
    SpkFrameRecorder() = default;
    // Band = first i in 0..5 with thresholds[i] >= volume, 6 above all six.
    void RecordFrames(int volume, const short* thresholds);
    void ClearFrame();
    void PutInEvent(TovaEvent& event) const;

    uint16_t mode = 0;  // row of the speaker key tables
    uint32_t totalFrames = 0;
    uint32_t counts[kVolumeBands] = {};

    // Blocks recorded by all speaker recorders together, of every instance.
    static std::atomic<uint32_t> gFrameSums;
};

class HpFrameRecorder {
public:
    HpFrameRecorder() = default;
    // As the speaker recorder, but a volume above all six thresholds counts in band 1.
    void RecordFrames(int volume, const short* thresholds);
    void PutInEvent(TovaEvent& event) const;

    uint16_t mode = 5;  // row of the headphone key tables; the owner overwrites it
    uint32_t totalFrames = 0;
    uint32_t counts[kVolumeBands] = {};

    static std::atomic<uint32_t> gFrameSums;
};
