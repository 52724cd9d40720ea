// Left/right swap with a 200 ms cross-fade: on the stereo input cache before processing, or
// on the four-channel output after it. The fade position moves one step per frame whether or
// not the frame is touched, so the fade keeps time with the stream.
#include <stdint.h>

#include "effect/PipelineLimits.h"
#include "effect/orlune.h"

namespace {

using pipeline::kSwapFadeFrames;

int32_t Scale(int64_t sample, int32_t weight) {
    return static_cast<int32_t>(sample * weight / kSwapFadeFrames);
}

int32_t Saturate(int64_t v) {
    return v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : static_cast<int32_t>(v));
}

void AdvanceFade(Orlune& o, int frames) {
    o.mSwapPos = pipeline::AdvanceSwapPos(o.mSwapPos, o.param5Step, frames);
}

void FadeStereo(Orlune& o, int32_t* frame) {
    const int32_t p = o.mSwapPos;
    if (o.param5Flag != 0 && p == 0) {
        const int32_t l = frame[0];
        frame[0] = frame[1];
        frame[1] = l;
        o.channelSwapped = 1;
    } else if (p >= 1 && p < kSwapFadeFrames) {
        // Each product is truncated on its own before the sum; the sum always fits.
        const int32_t q = kSwapFadeFrames - p;
        const int32_t l = frame[0];
        const int32_t r = frame[1];
        frame[0] = Scale(l, p) + Scale(r, q);
        frame[1] = Scale(r, p) + Scale(l, q);
    }
}

void FadeFour(Orlune& o, int32_t* frame) {
    const int32_t p = o.mSwapPos;
    if (o.param5Flag != 0 && p == 0) {
        const int32_t c0 = frame[0];
        const int32_t c1 = frame[1];
        frame[0] = frame[3];
        frame[1] = frame[2];
        frame[2] = c1;
        frame[3] = c0;
        o.channelSwapped = 1;
    } else if (p >= 1 && p < kSwapFadeFrames) {
        // Each channel is mixed with all three others, not only its mirror. The mix of four
        // loud channels can exceed the sample range, so it saturates instead of wrapping.
        const int32_t q = kSwapFadeFrames - p;
        const int64_t total = static_cast<int64_t>(frame[0]) + frame[1] + frame[2] + frame[3];
        int32_t mixed[4];
        for (int c = 0; c < 4; ++c) {
            mixed[c] = Saturate(static_cast<int64_t>(Scale(frame[c], p)) +
                                (total - frame[c]) * q / kSwapFadeFrames);
        }
        for (int c = 0; c < 4; ++c) {
            frame[c] = mixed[c];
        }
    }
}

bool AtRest(const Orlune& o) {
    return pipeline::SwapAtRest(o.mSwapPos, o.param5Step);
}

}  // namespace

void Orlune::SwapChannel(int frames, int channels) {
    // The samples just appended to the input cache.
    if (AtRest(*this)) {
        return;
    }
    const bool active = mDeviceType == 1 && mIoInfo.enable != 0 && param37Flag == 0;
    if (!active || channels != 2) {
        AdvanceFade(*this, frames);  // no frame is touched
        return;
    }
    const int64_t start =
            static_cast<int64_t>(inBufOffset) - static_cast<int64_t>(frames) * channels;
    for (int f = 0; f < frames; ++f) {
        AdvanceFade(*this, 1);
        const int64_t at = start + static_cast<int64_t>(f) * channels;
        if (at >= 0) {
            FadeStereo(*this, mInputCache + at);
        }
    }
}

void Orlune::SwapFourChannel(int frames, int channels) {
    // The newest `frames` frames of the output buffer; when it holds fewer, the fade still
    // advances for the missing ones.
    if (AtRest(*this)) {
        return;
    }
    const bool active = mDeviceType == 1 && mIoInfo.enable != 0;
    if (!active || channels != 4) {
        AdvanceFade(*this, frames);  // no frame is touched
        return;
    }
    const int64_t start =
            static_cast<int64_t>(outBufOffset) - static_cast<int64_t>(frames) * channels;
    for (int f = 0; f < frames; ++f) {
        AdvanceFade(*this, 1);
        const int64_t at = start + static_cast<int64_t>(f) * channels;
        if (at >= 0) {
            FadeFour(*this, mOutputBuffer + at);
        }
    }
}
