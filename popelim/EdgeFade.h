// The linear fades that soften a found edge, shared by FallingPopElim and the exported
// stand-alone functions. They work on one channel through a view of ChannelSamples.h.
//
// Products are 64-bit, so k × s cannot overflow, and the divisions truncate toward zero. Writes
// stop at `writable` frames, the end of the work buffer; a ramp cut short there keeps its slope.
#pragma once

#include <stdint.h>

#include <string.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "popelim/ChannelSamples.h"
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

namespace detail {

// Frame first + k of a short ramp over n frames gets the gain k / n: a fade-in keeps
// (k × s) / n, a fade-out s - (k × s) / n.
template <class Samples>
void ScaleShortRun(Samples& samples, unsigned first, unsigned count, const RampDivider& n,
                   bool fadeOut) {
    for (unsigned k = 0; k < count; ++k) {
        const int32_t s = samples.Get(first + k);
        const int32_t scaled = n.ScaleShort(k, s);
        samples.Set(first + k, fadeOut ? s - scaled : scaled);
    }
}

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define POPELIM_VECTOR_FADES 1

typedef int32_t Int4 __attribute__((vector_size(16)));
typedef int32_t Int2 __attribute__((vector_size(8)));
typedef int64_t Long2 __attribute__((vector_size(16)));
typedef double Double2 __attribute__((vector_size(16)));

// Lanes 0, 1 and 2, 3 of `s` as doubles, exactly. Where the target has no whole-vector
// conversion: s + 2^31 as the low word under the high word of 2^52 is the double
// 2^52 + 2^31 + s, which avoids the per-lane conversions that the compiler falls back to.
inline void ToDoubles(Int4 s, Double2& d01, Double2& d23) {
#if defined(__SSE2__)
    d01 = reinterpret_cast<Double2>(_mm_cvtepi32_pd(reinterpret_cast<__m128i>(s)));
    d23 = reinterpret_cast<Double2>(
            _mm_cvtepi32_pd(reinterpret_cast<__m128i>(__builtin_shufflevector(s, s, 2, 3, 2, 3))));
#else
    const Int4 flip = {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN};
    const Int4 high = {0x43300000, 0x43300000, 0x43300000, 0x43300000};
    const Double2 bias = {0x1p52 + 0x1p31, 0x1p52 + 0x1p31};
    const Int4 u = s ^ flip;
    d01 = reinterpret_cast<Double2>(__builtin_shufflevector(u, high, 0, 4, 1, 5)) - bias;
    d23 = reinterpret_cast<Double2>(__builtin_shufflevector(u, high, 2, 6, 3, 7)) - bias;
#endif
}

// Both truncated toward zero (|d| < 2^31) into four lanes; where the target has no direct
// narrowing conversion, through 64-bit lanes, which it converts as a whole vector.
inline Int4 ToInts(Double2 d01, Double2 d23) {
#if defined(__SSE2__)
    return reinterpret_cast<Int4>(
            _mm_unpacklo_epi64(_mm_cvttpd_epi32(reinterpret_cast<__m128d>(d01)),
                               _mm_cvttpd_epi32(reinterpret_cast<__m128d>(d23))));
#else
    return __builtin_shufflevector(
            __builtin_convertvector(__builtin_convertvector(d01, Long2), Int2),
            __builtin_convertvector(__builtin_convertvector(d23, Long2), Int2), 0, 1, 2, 3);
#endif
}

// The gains k × BiasedInverse() of a ramp's frames, four per step from k = 0: frames k and k + 1
// in the first vector, k + 2 and k + 3 in the second, each product rounded as ScaleShort does.
class RampGains {
public:
    explicit RampGains(const RampDivider& n) : mInverse{n.BiasedInverse(), n.BiasedInverse()} {}
    Double2 First() const { return mK01 * mInverse; }
    Double2 Second() const { return mK23 * mInverse; }
    void Advance() {
        const Double2 step = {4.0, 4.0};
        mK01 += step;
        mK23 += step;
    }

private:
    Double2 mInverse;
    Double2 mK01 = {0.0, 1.0};
    Double2 mK23 = {2.0, 3.0};
};

// Four frames of one channel of an interleaved stereo buffer per step: the channel's samples are
// gathered into one vector, scaled in two double lanes each with the products rounded as
// ScaleShort rounds them, and put back between the other channel's.
template <bool kFadeOut>
void ScaleStereoRun(int32_t* data, unsigned count, const RampDivider& n) {
    RampGains gains(n);
    unsigned i = 0;
    // Four frames are read as eight samples; a frame after them keeps the last read inside the
    // channel's last frame.
    for (; i + 4 < count; i += 4) {
        Int4 a;
        Int4 b;
        memcpy(&a, data + 2 * i, sizeof(a));
        memcpy(&b, data + 2 * i + 4, sizeof(b));
        const Int4 s = __builtin_shufflevector(a, b, 0, 2, 4, 6);
        Double2 d01;
        Double2 d23;
        ToDoubles(s, d01, d23);
        Int4 q = ToInts(d01 * gains.First(), d23 * gains.Second());
        if (kFadeOut) {
            q = s - q;
        }
        const Int4 ya = __builtin_shufflevector(q, a, 0, 5, 1, 7);
        const Int4 yb = __builtin_shufflevector(q, b, 2, 5, 3, 7);
        memcpy(data + 2 * i, &ya, sizeof(ya));
        memcpy(data + 2 * i + 4, &yb, sizeof(yb));
        gains.Advance();
    }
    for (; i < count; ++i) {
        const int32_t s = data[2 * i];
        const int32_t scaled = n.ScaleShort(i, s);
        data[2 * i] = kFadeOut ? s - scaled : scaled;
    }
}

inline void ScaleShortRun(FixedStrideSamples<2>& samples, unsigned first, unsigned count,
                          const RampDivider& n, bool fadeOut) {
    int32_t* data = samples.data + 2 * first;
    if (fadeOut) {
        ScaleStereoRun<true>(data, count, n);
    } else {
        ScaleStereoRun<false>(data, count, n);
    }
}

// Both channels of the stereo frames [0, count) from `data` at once, four frames per step: the
// two samples of a frame share its gain, and the products are rounded as ScaleShort rounds them.
template <bool kFadeOut>
void ScaleFramePairs(int32_t* data, unsigned count, const RampDivider& n) {
    RampGains gains(n);
    unsigned i = 0;
    for (; i + 4 <= count; i += 4) {
        Int4 a;  // frames i and i + 1
        Int4 b;  // frames i + 2 and i + 3
        memcpy(&a, data + 2 * i, sizeof(a));
        memcpy(&b, data + 2 * i + 4, sizeof(b));
        const Double2 g01 = gains.First();
        const Double2 g23 = gains.Second();
        Double2 a0, a1, b0, b1;
        ToDoubles(a, a0, a1);
        ToDoubles(b, b0, b1);
        Int4 qa = ToInts(a0 * __builtin_shufflevector(g01, g01, 0, 0),
                         a1 * __builtin_shufflevector(g01, g01, 1, 1));
        Int4 qb = ToInts(b0 * __builtin_shufflevector(g23, g23, 0, 0),
                         b1 * __builtin_shufflevector(g23, g23, 1, 1));
        if (kFadeOut) {
            qa = a - qa;
            qb = b - qb;
        }
        memcpy(data + 2 * i, &qa, sizeof(qa));
        memcpy(data + 2 * i + 4, &qb, sizeof(qb));
        gains.Advance();
    }
    for (; i < count; ++i) {
        for (unsigned c = 0; c < 2; ++c) {
            const int32_t s = data[2 * i + c];
            const int32_t scaled = n.ScaleShort(i, s);
            data[2 * i + c] = kFadeOut ? s - scaled : scaled;
        }
    }
}
#endif

}  // namespace detail

// The frames of the ramp [pos, end) that lie in the first `writable` frames.
struct RampSpan {
    unsigned first;
    unsigned count;
    int64_t length;  // end - pos, what the gains divide by
};

inline bool RampInside(uint64_t pos, uint64_t end, uint32_t writable, RampSpan& span) {
    const uint64_t stop = end < writable ? end : writable;
    if (end <= pos || stop <= pos) {
        return false;
    }
    span = RampSpan{static_cast<unsigned>(pos), static_cast<unsigned>(stop - pos),
                    static_cast<int64_t>(end - pos)};
    return true;
}

// Gain k / n on frame pos + k of the ramp [pos, end), n = end - pos.
template <class Samples>
void RampUp(Samples& samples, uint64_t pos, uint64_t end, uint32_t writable) {
    RampSpan span;
    if (!RampInside(pos, end, writable, span)) {
        return;
    }
    const RampDivider n(span.length);
    if (n.Short()) {
        detail::ScaleShortRun(samples, span.first, span.count, n, false);
        return;
    }
    for (unsigned k = 0; k < span.count; ++k) {
        const unsigned frame = span.first + k;
        samples.Set(frame, static_cast<int32_t>(n.Divide(k * int64_t{samples.Get(frame)})));
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
            detail::ScaleShortRun(samples, 0, stop, q, true);
        } else {
            for (uint32_t frame = 0; frame < stop; ++frame) {
                const int64_t s = samples.Get(frame);
                samples.Set(frame, static_cast<int32_t>(s - q.Divide(frame * s)));
            }
        }
    }
    FadeInFrom(samples, handle, blockBytes, pos, writable);
}

// FadeInFrom and FadeOutAt on both channels of an interleaved stereo buffer, for an edge the two
// share and `writable` frames of each: one pass over the frames instead of one per channel, with
// the same results. False, with nothing written, where the target has no vector fades or a ramp
// is too long for ScaleShort: the caller then fades each channel on its own.
#if defined(POPELIM_VECTOR_FADES)
inline bool FadeInBoth(int32_t* buffer, const ProcessHandle& handle, uint32_t blockBytes,
                       uint32_t pos, uint32_t writable) {
    RampSpan span;
    if (!RampInside(pos, FadeEnd(FramesIn(handle, blockBytes), handle.curBufferSize, pos), writable,
                    span)) {
        return true;
    }
    const RampDivider n(span.length);
    if (!n.Short()) {
        return false;
    }
    detail::ScaleFramePairs<false>(buffer + 2 * span.first, span.count, n);
    return true;
}

inline bool FadeOutBoth(int32_t* buffer, const ProcessHandle& handle, uint32_t blockBytes,
                        uint32_t pos, uint32_t writable) {
    const uint64_t end = FadeEnd(FramesIn(handle, blockBytes), handle.curBufferSize, pos);
    // Both ramps are checked before the first one writes.
    if (pos == 0) {
        return false;
    }
    const RampDivider q(pos);
    if (!q.Short() || end - pos > static_cast<uint64_t>(kShortRampMax)) {
        return false;
    }
    detail::ScaleFramePairs<true>(buffer, pos < writable ? pos : writable, q);
    return FadeInBoth(buffer, handle, blockBytes, pos, writable);
}
#else
inline bool FadeInBoth(int32_t*, const ProcessHandle&, uint32_t, uint32_t, uint32_t) {
    return false;
}
inline bool FadeOutBoth(int32_t*, const ProcessHandle&, uint32_t, uint32_t, uint32_t) {
    return false;
}
#endif

}  // namespace popelim
