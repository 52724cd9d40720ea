// The edge searches of EdgeSearch.h for one channel of an interleaved stereo work buffer, with
// the per-frame tests done in one pass over the block: the |level| of every frame, then bit masks
// of "quiet" and "drops from the frame before", sixteen frames per vector step. The searches
// then skip from set bit to set bit and look at single frames only around a hit. They find the
// same frames as FindRaisingEdgeIn and FindFallingEdgeIn, and return them with the level each
// would log, so that a caller handling both channels can keep the lines in channel order.
#pragma once

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "popelim/EdgeSearch.h"
#include "popelim/ProcessTypes.h"

namespace popelim {

constexpr unsigned kStereoMaxFrames = kPopBlockBytes / 8;  // 480
constexpr unsigned kLevelChunk = 32;                       // frames per level step
constexpr unsigned kFlagGroup = 16;                        // frames per flag step
constexpr unsigned kFlagWords = (kStereoMaxFrames + 63) / 64;

// Both channels of one block; channel c of frame f is buffer[2 f + c].
struct StereoFlags {
    // |sample| / 65536 of frame f at [c][f + 1], with INT32_MIN's 32768 taken as 32767 so that
    // the levels fit signed 16-bit lanes: no test tells the two apart, as both have the tenth
    // 3276 and both are far above every tenth. [c][0] is 0, the level "before" frame 0, which
    // makes frame 0 no drop; the one after the last frame is 32767, above every tenth.
    int16_t level[2][1 + kStereoMaxFrames + 1];
    // Frame f is bit f % 64 of word f / 64; no bit is set past the last frame.
    uint64_t quiet[2][kFlagWords];  // |level| < 10
    // IsDrop(frame f - 1, frame f), and frame f + 1 stays below the same tenth. A drop whose
    // next frame does not can never be a falling edge, and the frame after it is no drop
    // either (it would lie below the tenth), so the search loses nothing by passing over it.
    uint64_t drop[2][kFlagWords];
    unsigned frames;
};

// What the searches read of one channel.
struct ChannelFlags {
    const int32_t* data;  // the channel's first sample; frame f is data[2 f]
    const int16_t* level;
    const uint64_t* quiet;
    const uint64_t* drop;
    unsigned frames;
};

inline ChannelFlags FlagsOf(const StereoFlags& flags, const int32_t* buffer, unsigned channel) {
    return ChannelFlags{buffer + channel, flags.level[channel] + 1, flags.quiet[channel],
                        flags.drop[channel], flags.frames};
}

// An edge a search found: its frame (0 = none) and the level its line reports.
struct FoundEdge {
    unsigned pos;
    int value;
};

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

// Levels of kLevelChunk stereo frames from `data` (frame f at data[2 f]), eight frames per step:
// the channels are separated in 32-bit lanes, then narrowed to 16 bits.
inline void LevelChunk(const int32_t* data, int16_t* left, int16_t* right) {
    for (unsigned f = 0; f < kLevelChunk; f += 8) {
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
    for (unsigned f = 0; f < kLevelChunk; f += 8) {
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

typedef int8_t Char8 __attribute__((vector_size(8)));
typedef int8_t Char16 __attribute__((vector_size(16)));
typedef uint16_t UShort8 __attribute__((vector_size(16)));

// Bit i of the result is lane i of `low` for i < 8 and lane i - 8 of `high`; lanes are 0 or -1.
inline unsigned LaneBits(Short8 low, Short8 high) {
#if defined(__SSE2__)
    return static_cast<unsigned>(_mm_movemask_epi8(
            _mm_packs_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high))));
#else
    // Narrowed to bytes of 0 or 1, eight of which one multiply gathers into the top byte.
    const Char16 bytes = __builtin_shufflevector(__builtin_convertvector(low, Char8),
                                                 __builtin_convertvector(high, Char8), 0, 1, 2, 3,
                                                 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    uint64_t word[2];
    memcpy(word, &bytes, sizeof(word));
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    constexpr uint64_t kGather = 0x0102040810204080ull;
    unsigned bits = 0;
    for (unsigned h = 0; h < 2; ++h) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        word[h] = __builtin_bswap64(word[h]);  // lane 0 to the low byte
#endif
        bits |= static_cast<unsigned>(((word[h] & kOnes) * kGather) >> 56) << (8 * h);
    }
    return bits;
#endif
}

// DropFlag in every lane: 0 or -1.
inline Short8 DropLanes(Short8 prev, Short8 cur, Short8 next) {
    const Short8 hundred = {100, 100, 100, 100, 100, 100, 100, 100};
    const Short8 tenth = reinterpret_cast<Short8>(reinterpret_cast<UShort8>(prev) / 10);
    return (cur < tenth) & (next < tenth) & ((prev - cur) > hundred);
}

// Quiet and drop bits of the kFlagGroup frames from `level`; level[-1] is the frame before the
// first and level[kFlagGroup] the one after the last.
inline void FlagGroup(const int16_t* level, unsigned& quiet, unsigned& drop) {
    Short8 v[2][3];  // [half][before, at, after]
    for (unsigned h = 0; h < 2; ++h) {
        for (unsigned k = 0; k < 3; ++k) {
            memcpy(&v[h][k], level + 8 * h + k - 1, sizeof(Short8));
        }
    }
    const Short8 ten = {10, 10, 10, 10, 10, 10, 10, 10};
    quiet = LaneBits(v[0][1] < ten, v[1][1] < ten);
    drop = LaneBits(DropLanes(v[0][0], v[0][1], v[0][2]), DropLanes(v[1][0], v[1][1], v[1][2]));
}

// First frame from `from` to `frames` - 1 whose bit is `want`, or `frames`.
inline unsigned FindBit(const uint64_t* words, unsigned from, unsigned frames, bool want) {
    if (from >= frames) {
        return frames;
    }
    const uint64_t flip = want ? 0 : ~uint64_t{0};
    const unsigned last = (frames - 1) / 64;
    unsigned w = from / 64;
    uint64_t bits = (words[w] ^ flip) & (~uint64_t{0} << (from % 64));
    while (bits == 0) {
        if (++w > last) {
            return frames;
        }
        bits = words[w] ^ flip;
    }
    const unsigned hit = w * 64 + static_cast<unsigned>(__builtin_ctzll(bits));
    return hit < frames ? hit : frames;
}

// The bits of one channel from its levels, from the flag group holding frame `from` on. The
// bits of that group's word before the group are kept.
inline void FlagChannel(StereoFlags& out, unsigned channel, unsigned from) {
    const unsigned frames = out.frames;
    const int16_t* level = out.level[channel] + 1;
    uint64_t* quiet = out.quiet[channel];
    uint64_t* drop = out.drop[channel];
    unsigned f = from / kFlagGroup * kFlagGroup;
    const uint64_t keep = f % 64 == 0 ? 0 : ~uint64_t{0} >> (64 - f % 64);
    uint64_t q = keep == 0 ? 0 : quiet[f / 64] & keep;
    uint64_t d = keep == 0 ? 0 : drop[f / 64] & keep;
    for (; f + kFlagGroup <= frames; f += kFlagGroup) {
        unsigned groupQuiet;
        unsigned groupDrop;
        FlagGroup(level + f, groupQuiet, groupDrop);
        q |= uint64_t{groupQuiet} << (f % 64);
        d |= uint64_t{groupDrop} << (f % 64);
        if ((f + kFlagGroup) % 64 == 0) {
            quiet[f / 64] = q;
            drop[f / 64] = d;
            q = d = 0;
        }
    }
    for (; f < frames; ++f) {
        const int16_t* at = level + f;  // at[-1] is the frame before, even for frame 0
        q |= uint64_t{at[0] < 10} << (f % 64);
        d |= uint64_t{DropFlag(at[-1], at[0], at[1])} << (f % 64);
        if ((f + 1) % 64 == 0) {
            quiet[f / 64] = q;
            drop[f / 64] = d;
            q = d = 0;
        }
    }
    if (f % 64 != 0) {
        quiet[f / 64] = q;
        drop[f / 64] = d;
    }
}

constexpr unsigned kBothChannels = 2;

// Levels of `channel` (0, 1 or kBothChannels) from frame `from` on.
inline void LevelsFrom(const int32_t* buffer, unsigned channel, unsigned from, StereoFlags& out) {
    const unsigned frames = out.frames;
    int16_t* left = out.level[0] + 1;
    int16_t* right = out.level[1] + 1;
    unsigned f = from;
    for (; f + kLevelChunk <= frames; f += kLevelChunk) {
        if (channel == 0) {
            ChannelLevelChunk<0>(buffer + 2 * f, left + f);
        } else if (channel == 1) {
            ChannelLevelChunk<1>(buffer + 2 * f, right + f);
        } else {
            LevelChunk(buffer + 2 * f, left + f, right + f);
        }
    }
    for (; f < frames; ++f) {
        if (channel != 1) {
            left[f] = AbsLevel(buffer[2 * f]);
        }
        if (channel != 0) {
            right[f] = AbsLevel(buffer[2 * f + 1]);
        }
    }
}

}  // namespace detail

// Fills `out` for the first `frames` (<= 480) frames of the stereo `buffer`.
inline void ComputeStereoFlags(const int32_t* buffer, unsigned frames, StereoFlags& out) {
    out.frames = frames;
    for (unsigned c = 0; c < 2; ++c) {
        out.level[c][0] = 0;
        out.level[c][frames + 1] = INT16_MAX;
    }
    detail::LevelsFrom(buffer, detail::kBothChannels, 0, out);
    for (unsigned c = 0; c < 2; ++c) {
        detail::FlagChannel(out, c, 0);
    }
}

// After a fade-in changed channel c's samples from frame from[c] on (0 = not faded), its
// levels and bits again; the bits before frame from[c] - 1 depend on unchanged levels only.
// Channels faded from the same frame are read together.
inline void RefreshStereoFlags(const int32_t* buffer, const unsigned (&from)[2], StereoFlags& out) {
    if (from[0] != 0 && from[0] == from[1]) {
        detail::LevelsFrom(buffer, detail::kBothChannels, from[0], out);
    } else {
        for (unsigned c = 0; c < 2; ++c) {
            if (from[c] != 0) {
                detail::LevelsFrom(buffer, c, from[c], out);
            }
        }
    }
    for (unsigned c = 0; c < 2; ++c) {
        if (from[c] != 0) {
            detail::FlagChannel(out, c, from[c] - 1);
        }
    }
}

// FindRaisingEdgeIn on one channel, without the line.
inline FoundEdge FindRaisingEdgeStereo(const ChannelFlags& flags) {
    const int32_t* data = flags.data;
    const unsigned frames = flags.frames;
    unsigned i = 1;
    while (i < frames) {
        // Seek a quiet frame, then the end of its quiet stretch.
        i = detail::FindBit(flags.quiet, i, frames, true);
        if (i >= frames) {
            break;
        }
        const unsigned loud = detail::FindBit(flags.quiet, i + 1, frames, false);
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
        return FoundEdge{found, cur};
    }
    return FoundEdge{0, 0};
}

// FindFallingEdgeIn on one channel, without the line.
inline FoundEdge FindFallingEdgeStereo(const ChannelFlags& flags) {
    const int32_t* data = flags.data;
    const unsigned frames = flags.frames;
    unsigned i = 1;
    while (i < frames) {
        const unsigned position = detail::FindBit(flags.drop, i, frames, true);
        if (position >= frames) {
            break;
        }
        const int limit = flags.level[position - 1] / 10;
        unsigned j = position;
        for (; j < frames && flags.level[j] < limit; ++j) {
            const unsigned span = j - position;
            if ((span >= 10 && j == frames - 1 && span < 48) || span >= 47) {
                return FoundEdge{position, SampleLevel(data[2 * (position - 1)])};
            }
        }
        // The frame that ended the stretch is not judged as a drop; the one after it is.
        i = j + 1;
    }
    return FoundEdge{0, 0};
}

}  // namespace popelim
