// Skips over idle stretches of one channel of an interleaved stereo work buffer, four frames at
// a time. `data` points at the channel's first sample (frame f is data[2 f]). Each skip returns
// the first frame of the four that may hold a hit, or where fewer than five frames are left; the
// caller goes on frame by frame from there.
//
// Written with the vector extension of GCC and clang (any target), mapped onto the target's
// 128-bit vectors.
#pragma once

#include <stdint.h>
#include <string.h>

namespace popelim {

typedef int32_t Lanes __attribute__((vector_size(16)));
typedef uint32_t ULanes __attribute__((vector_size(16)));
typedef uint64_t Halves __attribute__((vector_size(16)));

inline Lanes Splat(int32_t x) {
    return Lanes{x, x, x, x};
}

// |level| (|sample| / 65536, 0 to 32768) of frames f to f + 3 of the channel. Reads data[2 f]
// to data[2 f + 7], so the other channel's sample of frame f + 4 must lie inside the buffer.
inline Lanes AbsLevels4(const int32_t* data, unsigned frame) {
    Lanes a, b;
    memcpy(&a, data + 2 * frame, sizeof(a));
    memcpy(&b, data + 2 * frame + 4, sizeof(b));
    const Lanes own = __builtin_shufflevector(a, b, 0, 2, 4, 6);
    const Lanes sign = own >> 31;
    // In unsigned arithmetic, so that |INT32_MIN| = 2^31 gives 32768.
    const ULanes magnitude = reinterpret_cast<ULanes>(own ^ sign) - reinterpret_cast<ULanes>(sign);
    return reinterpret_cast<Lanes>(magnitude >> 16);
}

inline bool AnyLane(Lanes mask) {
    const Halves halves = reinterpret_cast<Halves>(mask);
    return (halves[0] | halves[1]) != 0;
}

// Skips frames whose quietness (|level| < 10) differs from `quiet`.
inline unsigned SkipUntilQuietIs(const int32_t* data, unsigned from, unsigned frames, bool quiet) {
    const Lanes ten = Splat(10);
    const Lanes flip = Splat(quiet ? 0 : -1);
    unsigned i = from;
    while (i + 8 < frames) {
        const Lanes hits =
                ((AbsLevels4(data, i) < ten) ^ flip) | ((AbsLevels4(data, i + 4) < ten) ^ flip);
        if (AnyLane(hits)) {
            break;
        }
        i += 8;
    }
    if (i + 4 < frames && !AnyLane((AbsLevels4(data, i) < ten) ^ flip)) {
        i += 4;
    }
    return i;
}

// Frames of `cur` (whose previous frames are `prev`) that drop by at least 101 to below a tenth
// of the frame before: |cur| < |prev / 10| is 10 |cur| + 10 <= |prev| for integer levels.
inline Lanes DropLanes(Lanes prev, Lanes cur) {
    return ((cur << 3) + (cur << 1) + Splat(10) <= prev) & (prev - cur > Splat(100));
}

// Skips frames that do not drop. `from` >= 1.
inline unsigned SkipUntilDrop(const int32_t* data, unsigned from, unsigned frames) {
    const int32_t before = data[2 * (from - 1)];
    // Levels of the four frames before the chunk; only the last one is used.
    Lanes last = Splat(static_cast<int32_t>(
            (before < 0 ? 0u - static_cast<uint32_t>(before) : static_cast<uint32_t>(before)) >>
            16));
    unsigned i = from;
    while (i + 4 < frames) {
        const Lanes cur = AbsLevels4(data, i);
        const Lanes prev = __builtin_shufflevector(last, cur, 3, 4, 5, 6);
        if (AnyLane(DropLanes(prev, cur))) {
            break;
        }
        last = cur;
        i += 4;
    }
    return i;
}

}  // namespace popelim
