// Constants and small rules shared by the steps of the sample pipeline.
#pragma once

#include <stdint.h>

#include "params/BlockRules.h"
#include "effect/orlune.h"

namespace pipeline {

constexpr int kStereoFrameSamples = kAlgoFrame * 2;  // one stereo algorithm frame: 960 samples
constexpr int kEightChannelFrameSamples = kAlgoFrame * 8;
constexpr int kTenChannelFrameSamples = kAlgoFrame * 10;
constexpr int kAlgoSampleRate = 48000;  // the rate handed to the detector bridge with each frame

// Largest valid outBufOffset: the output buffer's capacity, counted as half the buffer for
// stereo output, less 1924 samples (481 four-channel frames, one algorithm frame and one more).
// So the stereo bound is deliberately far below what the buffer holds. Neither bound alone
// keeps a frame write inside the buffer, so the frame loops also check the room that is left
// (see FramesFit). The two values are part of the behaviour (they decide which blocks are
// refused and logged): a change of the buffer size must not move them.
constexpr int32_t kOutBufOffsetMargin = (kAlgoFrame + 1) * 4;
constexpr int32_t kOutBufOffsetBoundFourChannel = kOutputBufferSamples - kOutBufOffsetMargin;
constexpr int32_t kOutBufOffsetBoundStereo = kOutputBufferSamples / 2 - kOutBufOffsetMargin;
static_assert(kOutBufOffsetBoundFourChannel == 151676 && kOutBufOffsetBoundStereo == 74876,
              "the outBufOffset bounds are fixed values");

inline int32_t OutBufOffsetBound(int32_t configChannelOut) {
    return configChannelOut == 4 ? kOutBufOffsetBoundFourChannel : kOutBufOffsetBoundStereo;
}

inline bool OutBufOffsetValid(const Orlune& o) {
    return o.outBufOffset >= 0 && o.outBufOffset <= OutBufOffsetBound(o.mConfigChannelOut);
}

// True when `frames` algorithm frames of `channels` output samples each, written from
// outBufOffset on, stay inside mOutputBuffer.
inline bool FramesFit(const Orlune& o, int64_t frames, int32_t channels) {
    return o.outBufOffset >= 0 &&
           o.outBufOffset + frames * channels * kAlgoFrame <= kOutputBufferSamples;
}

// The UI rule (params/BlockRules.h) for the instance's words.
inline bool UiRuleDisables(const Orlune& o, bool exemptSpeaker) {
    return UiRuleDisables(o.Tables().gUiType, o.HP_MODE, o.HP_SMART_MODE, o.mDeviceType,
                          exemptSpeaker);
}

}  // namespace pipeline
