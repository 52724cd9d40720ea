// The raising- and falling-edge searches of the pop eliminator, shared by FallingPopElim and the
// exported stand-alone functions so that the two cannot drift apart.
//
// Each search reads one channel through a view of ChannelSamples.h, judges each sample by its
// 16-bit level and logs what it finds with the pop eliminator's tag (`channel` is only logged).
// StereoSearch.h has the same searches for the stereo processing path.
#pragma once

#include <stdint.h>
#include <stdlib.h>

#include "base/Log.h"
#include "popelim/ChannelSamples.h"

namespace popelim {

// 16-bit level of a 32-bit sample: signed division by 65536, truncating toward zero.
inline int SampleLevel(int32_t sample) {
    return sample / 65536;
}

// |level| < 10, that is |sample| < 10 * 65536.
inline bool IsQuietSample(int32_t sample) {
    return static_cast<uint32_t>(sample) + 655359u < 1310719u;
}

// Onset out of near-silence: a level five times the previous one that moved by more than 100.
inline bool IsOnset(int cur, int prev) {
    return abs(cur) > 5 * abs(prev) && (abs(cur - prev) > 100 || abs(cur + prev) > 100);
}

// A drop of at least 101 to below a tenth of the previous level (|cur| < |prev / 10| is
// 10 * |cur| + 10 <= |prev| for integers).
inline bool IsDrop(int32_t prevSample, int32_t curSample) {
    const int prev = abs(SampleLevel(prevSample));
    const int cur = abs(SampleLevel(curSample));
    return 10 * cur + 10 <= prev && prev - cur >= 101;
}

// The lines that report a found edge: the frame, the level the search judged it by, the channel.
inline void LogRaisingEdge(unsigned pos, int value, unsigned channel) {
    ORLUNE_LOGI(kTagPop, "raising edge fade in, pos = %u, value = %d, channel = %d", pos, value,
                static_cast<int>(channel));
}
inline void LogFallingEdge(unsigned pos, int value, unsigned channel) {
    ORLUNE_LOGI(kTagPop, "falling edge fade out, pos = %u, value = %d, channel = %d", pos, value,
                static_cast<int>(channel));
}

// The tests that the searches look for, each judging a frame by its sample and the one before.
struct QuietTest {
    bool operator()(int32_t, int32_t cur) const { return IsQuietSample(cur); }
};
struct LoudTest {
    bool operator()(int32_t, int32_t cur) const { return !IsQuietSample(cur); }
};
struct DropTest {
    bool operator()(int32_t prev, int32_t cur) const { return IsDrop(prev, cur); }
};

// First frame from `from` (>= 1) to `frames` - 1 that passes `test`, or `frames`.
template <class Samples, class Test>
unsigned FirstFrameWhere(const Samples& samples, unsigned from, unsigned frames, Test test) {
    unsigned i = from;
    while (i < frames && !test(samples.Get(i - 1), samples.Get(i))) {
        ++i;
    }
    return i;
}

// Frames 1 to frames - 1 are searched for an onset after at least ten quiet frames
// (|level| <= 9). An onset that is not steep enough becomes a candidate; it is reported when a
// steep rise (twice its running peak) follows within 13 frames. Returns the frame, 0 = none.
template <class Samples>
unsigned FindRaisingEdgeIn(const Samples& samples, unsigned frames, unsigned channel) {
    enum class State { kSeek, kQuiet, kConfirm };
    State state = State::kSeek;
    int quietCount = 0;
    int peak = 0;
    int countdown = 0;
    unsigned candidate = 0;
    unsigned i = 1;
    while (i < frames) {
        if (state == State::kSeek) {
            i = FirstFrameWhere(samples, i, frames, QuietTest());
            if (i >= frames) {
                break;
            }
            // The first quiet frame counts as 2: a count of 11 is ten quiet frames.
            quietCount = 2;
            state = State::kQuiet;
            ++i;
            continue;
        }
        if (state == State::kQuiet) {
            const unsigned loud = FirstFrameWhere(samples, i, frames, LoudTest());
            quietCount += static_cast<int>(loud - i);
            i = loud;
            if (i >= frames) {
                break;
            }
        }
        const int cur = SampleLevel(samples.Get(i));
        const int prev = SampleLevel(samples.Get(i - 1));
        const int level = abs(cur);
        unsigned found = 0;
        if (state == State::kQuiet) {
            if (quietCount < 11) {
                state = State::kSeek;
            } else if (IsOnset(cur, prev)) {
                found = i;
            } else {
                candidate = i;
                peak = level;
                countdown = 13;
                state = State::kConfirm;
            }
        } else if (countdown >= 1 && level < 2 * peak) {
            peak = level > peak ? level : peak;
            --countdown;
        } else if (IsOnset(cur, prev)) {
            found = candidate;
        } else {
            state = State::kSeek;
        }
        if (found != 0) {
            LogRaisingEdge(found, cur, channel);
            return found;
        }
        ++i;
    }
    return 0;
}

// Frames 1 to frames - 1 are searched for a drop of more than 100 to below a tenth of the
// previous level that stays below that tenth for 48 frames, or for 11 to 47 frames that run into
// the last frame. Returns the frame of the drop, 0 = none.
template <class Samples>
unsigned FindFallingEdgeIn(const Samples& samples, unsigned frames, unsigned channel) {
    bool tracking = false;
    int lowCount = 0;
    unsigned position = 0;
    int reference = 0;
    for (unsigned i = 1; i < frames; ++i) {
        if (!tracking) {
            i = FirstFrameWhere(samples, i, frames, DropTest());
            if (i >= frames) {
                break;
            }
            tracking = true;
            position = i;
            reference = SampleLevel(samples.Get(i - 1));
        }
        if (abs(SampleLevel(samples.Get(i))) < abs(reference / 10)) {
            ++lowCount;
        } else {
            // The next frame is judged as a possible drop again.
            lowCount = 0;
            tracking = false;
        }
        const unsigned span = i - position;
        if ((lowCount >= 11 && i == frames - 1 && span < 48) || (lowCount >= 48 && span <= 479)) {
            LogFallingEdge(position, reference, channel);
            return position;
        }
    }
    return 0;
}

}  // namespace popelim
