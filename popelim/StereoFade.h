// The fades of EdgeFade.h for one channel of an interleaved stereo work buffer. The channel's
// samples are gathered into a line, the ramp is computed there in plain loops of fixed length
// that the compiler turns into vector code, and the results are put back.
//
// Each product k * s is below 2^40 in magnitude, so it is exact in double precision, and the
// correctly rounded quotient (k * s) / n truncates to exactly the integer quotient: a quotient
// that is not an integer lies at least 1 / n from the next one, far more than the rounding
// error of at most |k * s / n| * 2^-53. The results are those of RampDivider bit for bit.
#pragma once

#include <stdint.h>
#include <string.h>

#include "popelim/EdgeFade.h"
#include "popelim/ProcessTypes.h"

namespace popelim {

constexpr unsigned kFadeChunk = 16;
constexpr unsigned kFadeLine = kPopBlockBytes / 8 + kFadeChunk;  // 480 frames, whole chunks

namespace detail {

// trunc((k0 + i) * x[i] / n) for i < kFadeChunk, with 0 <= k0 + i < n.
inline void RampChunk(const int32_t* __restrict x, int32_t* __restrict y, double k0, double n) {
    for (int i = 0; i < static_cast<int>(kFadeChunk); ++i) {
        const double product = (k0 + static_cast<double>(i)) * static_cast<double>(x[i]);
        y[i] = static_cast<int32_t>(product / n);
    }
}

// `line` gets frames [from, from + count) of the channel at `data`, padded with zeros to
// whole chunks; returns the padded length.
inline unsigned Gather(const int32_t* data, unsigned from, unsigned count, int32_t* line) {
    const unsigned padded = (count + kFadeChunk - 1) / kFadeChunk * kFadeChunk;
    for (unsigned j = 0; j < count; ++j) {
        line[j] = data[2 * (from + j)];
    }
    memset(line + count, 0, (padded - count) * sizeof(int32_t));
    return padded;
}

}  // namespace detail

// RampUp on the channel at `data` of a stereo buffer whose frames beyond `writable` are not
// written; the stretch written lies within the first 480 frames.
inline void RampUpStereo(int32_t* data, uint64_t pos, uint64_t end, uint32_t writable) {
    const uint64_t stop = end < writable ? end : writable;
    if (end <= pos || stop <= pos) {
        return;
    }
    const unsigned first = static_cast<unsigned>(pos);
    const unsigned count = static_cast<unsigned>(stop - pos);
    const double n = static_cast<double>(end - pos);
    int32_t x[kFadeLine];
    int32_t y[kFadeLine];
    const unsigned padded = detail::Gather(data, first, count, x);
    for (unsigned c = 0; c < padded; c += kFadeChunk) {
        detail::RampChunk(x + c, y + c, static_cast<double>(c), n);
    }
    for (unsigned j = 0; j < count; ++j) {
        data[2 * (first + j)] = y[j];
    }
}

// FadeInFrom for a stereo channel.
inline void FadeInFromStereo(int32_t* data, const ProcessHandle& handle, uint32_t blockBytes,
                             uint32_t pos, uint32_t writable) {
    const uint32_t blockFrames = FramesIn(handle, blockBytes);
    RampUpStereo(data, pos, FadeEnd(blockFrames, handle.curBufferSize, pos), writable);
}

// FadeOutAt for a stereo channel.
inline void FadeOutAtStereo(int32_t* data, const ProcessHandle& handle, uint32_t blockBytes,
                            uint32_t pos, uint32_t writable) {
    const uint32_t stop = pos < writable ? pos : writable;
    if (pos != 0 && stop != 0) {
        int32_t x[kFadeLine];
        int32_t y[kFadeLine];
        const unsigned padded = detail::Gather(data, 0, stop, x);
        const double n = static_cast<double>(pos);
        for (unsigned c = 0; c < padded; c += kFadeChunk) {
            detail::RampChunk(x + c, y + c, static_cast<double>(c), n);
        }
        for (unsigned j = 0; j < stop; ++j) {
            data[2 * j] = x[j] - y[j];
        }
    }
    FadeInFromStereo(data, handle, blockBytes, pos, writable);
}

}  // namespace popelim
