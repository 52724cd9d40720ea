// The linear fades that soften a found edge, shared by FallingPopElim and the exported
// stand-alone functions.
//
// `Samples` reads and writes interleaved samples: `int32_t Get(unsigned index) const` and
// `void Set(unsigned index, int32_t value)`. Products are 64-bit and divisions truncate toward
// zero, so k × s cannot overflow.
#pragma once

#include <stdint.h>

#include "popelim/ProcessTypes.h"

namespace popelim {

// Frames in `bytes` for the handle's sample size and channel count; 0 when either is 0.
inline uint32_t FramesIn(const ProcessHandle& handle, uint32_t bytes) {
    const uint64_t frameBytes = static_cast<uint64_t>(handle.bitDepth) * handle.channelCount;
    return frameBytes == 0 ? 0 : static_cast<uint32_t>(bytes / frameBytes);
}

// Where a fade that starts at `pos` ends. The ramp runs to the block's end unless the frames
// left (unsigned, so a start beyond the block wraps to a huge count) exceed `curBufferSize`,
// a byte count: then it spans `curBufferSize` frames. The comparison of frames with bytes is
// how the eliminator has always behaved and is kept.
inline uint64_t FadeEnd(uint32_t blockFrames, uint32_t curBufferSize, uint32_t pos) {
    if (static_cast<uint32_t>(blockFrames - pos) > curBufferSize) {
        return static_cast<uint64_t>(pos) + curBufferSize;
    }
    return blockFrames;
}

// Number of leading frames of `channel` that lie inside a buffer of `bufferSamples` samples.
inline uint64_t WritableFrames(uint32_t bufferSamples, unsigned channels, unsigned channel) {
    if (channels == 0 || channel >= bufferSamples) {
        return 0;
    }
    return (static_cast<uint64_t>(bufferSamples) - channel + channels - 1) / channels;
}

// Gain k / n for the frames pos + k of the ramp [pos, end), n = end - pos; the ramp keeps its
// slope when `bufferSamples` cuts it short, only the writes past the buffer are dropped.
template <class Samples>
void RampUp(Samples& samples, uint64_t pos, uint64_t end, unsigned channels, unsigned channel,
            uint32_t bufferSamples) {
    if (end <= pos) {
        return;
    }
    const int64_t n = static_cast<int64_t>(end - pos);
    const uint64_t writable = WritableFrames(bufferSamples, channels, channel);
    const uint64_t stop = end < writable ? end : writable;
    for (uint64_t frame = pos; frame < stop; ++frame) {
        const unsigned index = static_cast<unsigned>(channel + frame * channels);
        const int64_t k = static_cast<int64_t>(frame - pos);
        samples.Set(index, static_cast<int32_t>(k * samples.Get(index) / n));
    }
}

// Fade-in of `channel` from frame `pos`; `blockBytes` is the size of the block being processed.
template <class Samples>
void FadeInFrom(Samples& samples, const ProcessHandle& handle, uint32_t blockBytes, uint32_t pos,
                unsigned channel, uint32_t bufferSamples) {
    const uint32_t blockFrames = FramesIn(handle, blockBytes);
    RampUp(samples, pos, FadeEnd(blockFrames, handle.curBufferSize, pos), handle.channelCount,
           channel, bufferSamples);
}

// V-shaped fade of `channel` with its bottom at frame `pos`: the gain falls from 1 toward
// 1 / pos over the frames before the edge, then rises from 0 as in FadeInFrom.
template <class Samples>
void FadeOutAt(Samples& samples, const ProcessHandle& handle, uint32_t blockBytes, uint32_t pos,
               unsigned channel, uint32_t bufferSamples) {
    if (pos != 0) {
        const unsigned channels = handle.channelCount;
        const uint64_t writable = WritableFrames(bufferSamples, channels, channel);
        const uint64_t stop = pos < writable ? pos : writable;
        for (uint64_t frame = 0; frame < stop; ++frame) {
            const unsigned index = static_cast<unsigned>(channel + frame * channels);
            const int64_t s = samples.Get(index);
            samples.Set(index, static_cast<int32_t>(s - static_cast<int64_t>(frame) * s / pos));
        }
    }
    FadeInFrom(samples, handle, blockBytes, pos, channel, bufferSamples);
}

}  // namespace popelim
