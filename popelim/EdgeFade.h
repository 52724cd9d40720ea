// The linear fades that soften a found edge, shared by FallingPopElim and the exported
// stand-alone functions. They work on one channel through a view of ChannelSamples.h.
//
// Products are 64-bit, so k × s cannot overflow, and the divisions truncate toward zero. Writes
// stop at `writable` frames, the end of the work buffer; a ramp cut short there keeps its slope.
#pragma once

#include <stdint.h>

#include "popelim/ProcessTypes.h"
#include "popelim/RampDivider.h"

namespace popelim {

// Frames in `bytes` for the handle's sample size and channel count; 0 when either is 0.
inline uint32_t FramesIn(const ProcessHandle& handle, uint32_t bytes) {
    const uint64_t frameBytes = static_cast<uint64_t>(handle.bitDepth) * handle.channelCount;
    return frameBytes == 0 ? 0 : static_cast<uint32_t>(bytes / frameBytes);
}

// Frames of `channel` that lie inside a buffer of `bufferSamples` interleaved samples.
inline uint32_t WritableFrames(uint32_t bufferSamples, unsigned channels, unsigned channel) {
    if (channels == 0 || channel >= channels || channel >= bufferSamples) {
        return 0;
    }
    return (bufferSamples - channel + channels - 1) / channels;
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

// Gain k / n on frame pos + k of the ramp [pos, end), n = end - pos.
template <class Samples>
void RampUp(Samples& samples, uint64_t pos, uint64_t end, uint32_t writable) {
    if (end <= pos) {
        return;
    }
    const RampDivider n(static_cast<int64_t>(end - pos));
    const uint64_t stop = end < writable ? end : writable;
    if (stop <= pos) {
        return;
    }
    const unsigned first = static_cast<unsigned>(pos);
    const unsigned count = static_cast<unsigned>(stop - pos);
    if (n.Short()) {
        for (unsigned k = 0; k < count; ++k) {
            samples.Set(first + k, n.ScaleShort(k, samples.Get(first + k)));
        }
        return;
    }
    for (unsigned k = 0; k < count; ++k) {
        samples.Set(first + k, static_cast<int32_t>(n.Divide(k * int64_t{samples.Get(first + k)})));
    }
}

// Fade-in from frame `pos`; `blockBytes` is the size of the block being processed.
template <class Samples>
void FadeInFrom(Samples& samples, const ProcessHandle& handle, uint32_t blockBytes, uint32_t pos,
                uint32_t writable) {
    const uint32_t blockFrames = FramesIn(handle, blockBytes);
    RampUp(samples, pos, FadeEnd(blockFrames, handle.curBufferSize, pos), writable);
}

// V-shaped fade with its bottom at frame `pos`: the gain falls from 1 toward 1 / pos over the
// frames before the edge, then rises from 0 as in FadeInFrom.
template <class Samples>
void FadeOutAt(Samples& samples, const ProcessHandle& handle, uint32_t blockBytes, uint32_t pos,
               uint32_t writable) {
    if (pos != 0) {
        const RampDivider q(pos);
        const uint32_t stop = pos < writable ? pos : writable;
        // s - (k × s) / q stays between 0 and s, inside 32 bits.
        if (q.Short()) {
            for (uint32_t frame = 0; frame < stop; ++frame) {
                const int32_t s = samples.Get(frame);
                samples.Set(frame, s - q.ScaleShort(frame, s));
            }
        } else {
            for (uint32_t frame = 0; frame < stop; ++frame) {
                const int64_t s = samples.Get(frame);
                samples.Set(frame, static_cast<int32_t>(s - q.Divide(frame * s)));
            }
        }
    }
    FadeInFrom(samples, handle, blockBytes, pos, writable);
}

}  // namespace popelim
