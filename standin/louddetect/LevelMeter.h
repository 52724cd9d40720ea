// Peak and RMS level of a block of interleaved signed 32-bit samples, in dB relative to full
// scale (2^31). Silence reads as kSilenceDbfs.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace lad_standin {

constexpr float kSilenceDbfs = -150.0f;

struct Levels {
    float peakDbfs;
    float rmsDbfs;
};

Levels MeasureInt32(const int32_t* samples, size_t count);

}  // namespace lad_standin
