// The steps of one pop-eliminator block that follow the size and rate checks, shared by
// FallingPopElim and the exported stand-alone functions.
#pragma once

#include <stdint.h>

#include "popelim/ProcessTypes.h"

namespace popelim {

// False, after the warning "Pointer is null", when the handle, the input or one of the handle's
// buffers is missing.
bool BlockPointersPresent(const ProcessHandle* handle, const void* input);

// Delays the block through the cache into the work buffer, then searches every channel for a
// raising edge and a falling edge and, when `enable` is set, fades over each one found.
// `bufferBytes` is the capacity of the work buffer; neither the copies nor the fades write past
// it. Returns the work buffer, or null when a copy fails.
int32_t* RunBlock(ProcessHandle* handle, const void* input, uint32_t size, bool enable,
                  uint32_t bufferBytes);

// The searches and fades of RunBlock on the first `frames` frames of a work buffer of
// `bufferSamples` samples: channel by channel, or for a stereo buffer of at most
// kStereoMaxFrames frames both channels at once. The two give the same samples and lines.
void SearchAndFadeChannels(int32_t* buffer, unsigned channels, const ProcessHandle& handle,
                           uint32_t size, bool enable, uint32_t frames, uint32_t bufferSamples);
void SearchAndFadeStereo(int32_t* buffer, const ProcessHandle& handle, uint32_t size, bool enable,
                         uint32_t frames, uint32_t bufferSamples);

// The row of `table` for a block of `size` bytes, or null when the size is not in it.
template <int N>
const SampleRateRow* FindRateRow(const SampleRateRow (&table)[N], unsigned size) {
    for (const SampleRateRow& row : table) {
        if (row.blockSize == size) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace popelim
