// The raising- and falling-edge searches of the pop eliminator, shared by FallingPopElim and the
// exported stand-alone functions so that the two cannot drift apart.
//
// `Samples` reads interleaved samples: `int32_t Get(unsigned index) const`. The searches judge
// each sample by its 16-bit level and log what they find with the pop eliminator's tag.
#pragma once

#include <android/log.h>
#include <stdint.h>
#include <stdlib.h>

#include "effect/LogTags.h"

namespace popelim {

// 16-bit level of a 32-bit sample: signed division by 65536, truncating toward zero.
inline int SampleLevel(int32_t sample) {
    return sample / 65536;
}

// Onset out of near-silence: a level five times the previous one that moved by more than 100.
inline bool IsOnset(int cur, int prev) {
    return abs(cur) > 5 * abs(prev) && (abs(cur - prev) > 100 || abs(cur + prev) > 100);
}

// Frames 1 to frames - 1 of `channel` are searched for an onset after at least ten quiet frames
// (|level| <= 9). An onset that is not steep enough becomes a candidate; it is reported when a
// steep rise (twice its running peak) follows within 13 frames. Returns the frame, 0 = none.
template <class Samples>
unsigned FindRaisingEdgeIn(const Samples& samples, unsigned frames, unsigned channels,
                           unsigned channel) {
    enum class State { kSeek, kQuiet, kConfirm };
    State state = State::kSeek;
    int quietCount = 0;
    int peak = 0;
    int countdown = 0;
    unsigned candidate = 0;
    int prev = frames < 2 ? 0 : SampleLevel(samples.Get(channel));
    for (unsigned i = 1; i < frames; ++i) {
        const int cur = SampleLevel(samples.Get(channel + i * channels));
        const int level = abs(cur);
        unsigned found = 0;
        switch (state) {
            case State::kSeek:
                if (level < 10) {
                    // The first quiet frame counts as 2: a count of 11 is ten quiet frames.
                    quietCount = 2;
                    state = State::kQuiet;
                }
                break;
            case State::kQuiet:
                if (level <= 9) {
                    ++quietCount;
                } else if (quietCount < 11) {
                    state = State::kSeek;
                } else if (IsOnset(cur, prev)) {
                    found = i;
                } else {
                    candidate = i;
                    peak = level;
                    countdown = 13;
                    state = State::kConfirm;
                }
                break;
            case State::kConfirm:
                if (countdown >= 1 && level < 2 * peak) {
                    peak = level > peak ? level : peak;
                    --countdown;
                } else if (IsOnset(cur, prev)) {
                    found = candidate;
                } else {
                    state = State::kSeek;
                }
                break;
        }
        if (found != 0) {
            __android_log_print(ANDROID_LOG_INFO, kTagPop,
                                "raising edge fade in, pos = %u, value = %d, channel = %d", found,
                                cur, static_cast<int>(channel));
            return found;
        }
        prev = cur;
    }
    return 0;
}

// Frames 1 to frames - 1 of `channel` are searched for a drop of more than 100 to below a tenth
// of the previous level that stays below that tenth for 48 frames, or for 11 to 47 frames that
// run into the last frame. Returns the frame of the drop, 0 = none.
template <class Samples>
unsigned FindFallingEdgeIn(const Samples& samples, unsigned frames, unsigned channels,
                           unsigned channel) {
    bool tracking = false;
    int lowCount = 0;
    unsigned position = 0;
    int reference = 0;
    int prev = frames < 2 ? 0 : SampleLevel(samples.Get(channel));
    for (unsigned i = 1; i < frames; ++i) {
        const int cur = SampleLevel(samples.Get(channel + i * channels));
        if (!tracking && abs(cur) < abs(prev / 10) && abs(abs(cur) - abs(prev)) >= 101) {
            tracking = true;
            position = i;
            reference = prev;
        }
        if (tracking) {
            if (abs(cur) < abs(reference / 10)) {
                ++lowCount;
            } else {
                lowCount = 0;
                tracking = false;
            }
            const unsigned span = i - position;
            if ((lowCount >= 11 && i == frames - 1 && span < 48) ||
                (lowCount >= 48 && span <= 479)) {
                __android_log_print(ANDROID_LOG_INFO, kTagPop,
                                    "falling edge fade out, pos = %u, value = %d, channel = %d",
                                    position, reference, static_cast<int>(channel));
                return position;
            }
        }
        prev = cur;
    }
    return 0;
}

}  // namespace popelim
