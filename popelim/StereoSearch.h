// The edge searches of EdgeSearch.h for one channel of an interleaved stereo work buffer, with
// the per-frame tests done in one pass over the block: the |level| of every frame, and byte flags
// for "quiet" and "drops from the frame before". That pass works in chunks of fixed length, the
// levels in explicit vectors, the flags in plain loops that the compiler vectorises on any
// target. The searches then jump from flag to flag sixteen frames at a time and look at single
// frames only around a hit. They find the same frames and log the same lines as FindRaisingEdgeIn
// and FindFallingEdgeIn.
#pragma once

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "base/Log.h"
#include "popelim/EdgeSearch.h"
#include "popelim/ProcessTypes.h"

namespace popelim {

constexpr unsigned kStereoMaxFrames = kPopBlockBytes / 8;  // 480
constexpr unsigned kFlagChunk = 32;                        // frames per vectorised chunk
constexpr unsigned kFlagPad = 16;                          // a flag scan reads past the end

// Both channels of one block; channel c of frame f is buffer[2 f + c].
struct StereoFlags {
    // |sample| / 65536 of frame f at [c][f + 1], with INT32_MIN's 32768 taken as 32767 so that
    // the levels fit signed 16-bit lanes: no test tells the two apart, as both have the tenth
    // 3276 and both are far above every tenth. [c][0] is 0, the level "before" frame 0, which
    // makes frame 0 no drop; the one after the last frame is 32767, above every tenth.
    int16_t level[2][1 + kStereoMaxFrames + 1];
    uint8_t quiet[2][kStereoMaxFrames + kFlagPad];  // |level| < 10
    // IsDrop(frame f - 1, frame f), and frame f + 1 stays below the same tenth. A drop whose
    // next frame does not can never be a falling edge, and the frame after it is no drop
    // either (it would lie below the tenth), so the search loses nothing by passing over it.
    uint8_t drop[2][kStereoMaxFrames + kFlagPad];
    unsigned frames;
};

// What the searches read of one channel.
struct ChannelFlags {
    const int32_t* data;  // the channel's first sample; frame f is data[2 f]
    const int16_t* level;
    const uint8_t* quiet;
    const uint8_t* drop;
    unsigned frames;
};

inline ChannelFlags FlagsOf(const StereoFlags& flags, const int32_t* buffer, unsigned channel) {
    return ChannelFlags{buffer + channel, flags.level[channel] + 1, flags.quiet[channel],
                        flags.drop[channel], flags.frames};
}

namespace detail {

inline int16_t AbsLevel(int32_t sample) {
    // In unsigned arithmetic, so that |INT32_MIN| = 2^31 is defined; it then becomes 2^31 - 1.
    const uint32_t sign = static_cast<uint32_t>(sample >> 31);
    uint32_t magnitude = (static_cast<uint32_t>(sample) ^ sign) - sign;
    magnitude -= magnitude >> 31;
    return static_cast<int16_t>(magnitude >> 16);
}

// IsDrop on levels with the next frame below the same tenth, in signed 16-bit lanes (levels are
// 0 to 32767, so prev - cur cannot wrap). The unsigned division by 10 is a multiply-high.
inline uint8_t DropFlag(int16_t prev, int16_t cur, int16_t next) {
    const int16_t tenth = static_cast<int16_t>(static_cast<uint16_t>(prev) / 10);
    return static_cast<uint8_t>((cur < tenth) & (next < tenth) &
                                (static_cast<int16_t>(prev - cur) > 100));
}

typedef int32_t Int4 __attribute__((vector_size(16)));
typedef uint32_t UInt4 __attribute__((vector_size(16)));
typedef int16_t Short4 __attribute__((vector_size(8)));
typedef int16_t Short8 __attribute__((vector_size(16)));

// |sample| >> 16 in every lane: 0 to 32768, the last for INT32_MIN only.
inline Int4 RawLevels(Int4 x) {
    const Int4 sign = x >> 31;
    // Subtracted as unsigned: INT32_MIN's magnitude 2^31 does not fit a signed lane.
    const UInt4 magnitude = reinterpret_cast<UInt4>(x ^ sign) - reinterpret_cast<UInt4>(sign);
    return reinterpret_cast<Int4>(magnitude >> 16);
}

// Eight raw levels as AbsLevel gives them: 32768 becomes 32767, which a signed saturating
// narrowing does in one step where the target has one.
inline Short8 NarrowLevels(Int4 low, Int4 high) {
#if defined(__SSE2__)
    return __builtin_ia32_packssdw128(low, high);
#else
    const Int4 cap = {INT16_MAX, INT16_MAX, INT16_MAX, INT16_MAX};
    low = low < cap ? low : cap;
    high = high < cap ? high : cap;
    return __builtin_shufflevector(__builtin_convertvector(low, Short4),
                                   __builtin_convertvector(high, Short4), 0, 1, 2, 3, 4, 5, 6, 7);
#endif
}

// Eight interleaved stereo frames as four vectors of two frames each.
inline void LoadEightFrames(const int32_t* data, Int4& x0, Int4& x1, Int4& x2, Int4& x3) {
    memcpy(&x0, data, sizeof(x0));
    memcpy(&x1, data + 4, sizeof(x1));
    memcpy(&x2, data + 8, sizeof(x2));
    memcpy(&x3, data + 12, sizeof(x3));
}

// Levels of kFlagChunk stereo frames from `data` (frame f at data[2 f]), eight frames per step:
// the channels are separated in 32-bit lanes, then narrowed to 16 bits.
inline void LevelChunk(const int32_t* data, int16_t* left, int16_t* right) {
    for (unsigned f = 0; f < kFlagChunk; f += 8) {
        Int4 x0, x1, x2, x3;
        LoadEightFrames(data + 2 * f, x0, x1, x2, x3);
        const Short8 l = NarrowLevels(RawLevels(__builtin_shufflevector(x0, x1, 0, 2, 4, 6)),
                                      RawLevels(__builtin_shufflevector(x2, x3, 0, 2, 4, 6)));
        const Short8 r = NarrowLevels(RawLevels(__builtin_shufflevector(x0, x1, 1, 3, 5, 7)),
                                      RawLevels(__builtin_shufflevector(x2, x3, 1, 3, 5, 7)));
        memcpy(left + f, &l, sizeof(l));
        memcpy(right + f, &r, sizeof(r));
    }
}

// The same for channel kChannel only; `data` is the chunk's first frame.
template <unsigned kChannel>
void ChannelLevelChunk(const int32_t* data, int16_t* level) {
    for (unsigned f = 0; f < kFlagChunk; f += 8) {
        Int4 x0, x1, x2, x3;
        LoadEightFrames(data + 2 * f, x0, x1, x2, x3);
        const Short8 v =
                NarrowLevels(RawLevels(__builtin_shufflevector(x0, x1, kChannel, kChannel + 2,
                                                               kChannel + 4, kChannel + 6)),
                             RawLevels(__builtin_shufflevector(x2, x3, kChannel, kChannel + 2,
                                                               kChannel + 4, kChannel + 6)));
        memcpy(level + f, &v, sizeof(v));
    }
}

// Flags of kFlagChunk frames from their levels; level[-1] is the frame before the first and
// level[kFlagChunk] the one after the last.
inline void FlagChunk(const int16_t* __restrict level, uint8_t* __restrict quiet,
                      uint8_t* __restrict drop) {
    for (int k = 0; k < static_cast<int>(kFlagChunk); ++k) {
        quiet[k] = static_cast<uint8_t>(level[k] < 10);
        drop[k] = DropFlag(level[k - 1], level[k], level[k + 1]);
    }
}

// Index of the first non-zero byte of a word read from memory.
inline unsigned FirstByteSet(uint64_t word) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    return static_cast<unsigned>(__builtin_clzll(word)) / 8;
#else
    return static_cast<unsigned>(__builtin_ctzll(word)) / 8;
#endif
}

// First frame from `from` to `frames` - 1 whose flag is `want`, or `frames`. Reads sixteen
// flags at a time; the padding keeps the reads inside the array.
inline unsigned FindFlag(const uint8_t* flags, unsigned from, unsigned frames, bool want) {
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    const uint64_t flip = want ? 0 : kOnes;
    for (unsigned i = from; i < frames; i += 16) {
        uint64_t low;
        uint64_t high;
        memcpy(&low, flags + i, sizeof(low));
        memcpy(&high, flags + i + 8, sizeof(high));
        low ^= flip;
        high ^= flip;
        if ((low | high) != 0) {
            const unsigned hit = low != 0 ? i + FirstByteSet(low) : i + 8 + FirstByteSet(high);
            return hit < frames ? hit : frames;
        }
    }
    return frames;
}

// The flags of one channel from its levels, from frame `from` on.
inline void FlagChannel(StereoFlags& out, unsigned channel, unsigned from) {
    const unsigned frames = out.frames;
    const int16_t* level = out.level[channel] + 1;
    uint8_t* quiet = out.quiet[channel];
    uint8_t* drop = out.drop[channel];
    unsigned f = from;
    for (; f + kFlagChunk <= frames; f += kFlagChunk) {
        FlagChunk(level + f, quiet + f, drop + f);
    }
    for (; f < frames; ++f) {
        const int16_t* at = level + f;  // at[-1] is the frame before, even for frame 0
        quiet[f] = static_cast<uint8_t>(at[0] < 10);
        drop[f] = DropFlag(at[-1], at[0], at[1]);
    }
    memset(quiet + frames, 0, kFlagPad);
    memset(drop + frames, 0, kFlagPad);
}

}  // namespace detail

// Fills `out` for the first `frames` (<= 480) frames of the stereo `buffer`.
inline void ComputeStereoFlags(const int32_t* buffer, unsigned frames, StereoFlags& out) {
    out.frames = frames;
    int16_t* left = out.level[0] + 1;
    int16_t* right = out.level[1] + 1;
    left[-1] = 0;
    right[-1] = 0;
    left[frames] = INT16_MAX;
    right[frames] = INT16_MAX;
    unsigned f = 0;
    for (; f + kFlagChunk <= frames; f += kFlagChunk) {
        detail::LevelChunk(buffer + 2 * f, left + f, right + f);
    }
    for (; f < frames; ++f) {
        left[f] = detail::AbsLevel(buffer[2 * f]);
        right[f] = detail::AbsLevel(buffer[2 * f + 1]);
    }
    for (unsigned c = 0; c < 2; ++c) {
        detail::FlagChannel(out, c, 0);
    }
}

// After the samples of `channel` changed from frame `from` on (a fade-in), its levels and flags
// again; the other channel's stay as they are. The flags before frame `from` - 1 depend on
// unchanged levels only.
inline void RefreshStereoFlags(const int32_t* buffer, unsigned channel, unsigned from,
                               StereoFlags& out) {
    const unsigned frames = out.frames;
    int16_t* level = out.level[channel] + 1;
    unsigned f = from;
    for (; f + kFlagChunk <= frames; f += kFlagChunk) {
        if (channel == 0) {
            detail::ChannelLevelChunk<0>(buffer + 2 * f, level + f);
        } else {
            detail::ChannelLevelChunk<1>(buffer + 2 * f, level + f);
        }
    }
    for (; f < frames; ++f) {
        level[f] = detail::AbsLevel(buffer[2 * f + channel]);
    }
    detail::FlagChannel(out, channel, from > 0 ? from - 1 : 0);
}

// FindRaisingEdgeIn on one channel.
inline unsigned FindRaisingEdgeStereo(const ChannelFlags& flags, unsigned channel) {
    const int32_t* data = flags.data;
    const unsigned frames = flags.frames;
    unsigned i = 1;
    while (i < frames) {
        // Seek a quiet frame, then the end of its quiet stretch.
        i = detail::FindFlag(flags.quiet, i, frames, true);
        if (i >= frames) {
            break;
        }
        const unsigned loud = detail::FindFlag(flags.quiet, i + 1, frames, false);
        // The first quiet frame counts as 2: a count of 11 is ten quiet frames.
        const unsigned quietCount = 2 + (loud - (i + 1));
        i = loud;
        if (i >= frames) {
            break;
        }
        int cur = SampleLevel(data[2 * i]);
        int prev = SampleLevel(data[2 * (i - 1)]);
        unsigned found = 0;
        if (quietCount < 11) {
            ++i;
            continue;
        }
        if (IsOnset(cur, prev)) {
            found = i;
        } else {
            // A candidate: confirmed by a steep rise within 13 frames.
            const unsigned candidate = i;
            int peak = abs(cur);
            int countdown = 13;
            for (++i; i < frames; ++i) {
                cur = SampleLevel(data[2 * i]);
                prev = SampleLevel(data[2 * (i - 1)]);
                const int level = abs(cur);
                if (countdown >= 1 && level < 2 * peak) {
                    peak = level > peak ? level : peak;
                    --countdown;
                    continue;
                }
                if (IsOnset(cur, prev)) {
                    found = candidate;
                }
                break;
            }
            if (found == 0) {
                ++i;
                continue;
            }
        }
        ORLUNE_LOGI(kTagPop, "raising edge fade in, pos = %u, value = %d, channel = %d", found, cur,
                    static_cast<int>(channel));
        return found;
    }
    return 0;
}

// FindFallingEdgeIn on one channel.
inline unsigned FindFallingEdgeStereo(const ChannelFlags& flags, unsigned channel) {
    const int32_t* data = flags.data;
    const unsigned frames = flags.frames;
    unsigned i = 1;
    while (i < frames) {
        const unsigned position = detail::FindFlag(flags.drop, i, frames, true);
        if (position >= frames) {
            break;
        }
        const int limit = flags.level[position - 1] / 10;
        unsigned j = position;
        for (; j < frames && flags.level[j] < limit; ++j) {
            const unsigned span = j - position;
            if ((span >= 10 && j == frames - 1 && span < 48) || span >= 47) {
                const int reference = SampleLevel(data[2 * (position - 1)]);
                ORLUNE_LOGI(kTagPop, "falling edge fade out, pos = %u, value = %d, channel = %d",
                            position, reference, static_cast<int>(channel));
                return position;
            }
        }
        // The frame that ended the stretch is not judged as a drop; the one after it is.
        i = j + 1;
    }
    return 0;
}

}  // namespace popelim
