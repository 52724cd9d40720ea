#include "popelim/PopElimBlock.h"

#include "base/Log.h"
#include "popelim/ChannelSamples.h"
#include "popelim/EdgeFade.h"
#include "popelim/EdgeSearch.h"
#include "popelim/StereoSearch.h"
#include "safe_funcs.h"

namespace popelim {
namespace {

bool CopyOrLog(void* dest, uint32_t destMax, const void* src, uint32_t count) {
    const int ret = memcpy_s(dest, destMax, src, count);
    if (ret != EOK) {
        ORLUNE_LOGE(kTagPop, "memcpy failed, ret = %d", ret);
        return false;
    }
    return true;
}

// The output is the input delayed by cacheSize bytes: the cache leads the block and the block's
// tail is kept for the next one.
bool DelayThroughCache(ProcessHandle* handle, const uint8_t* input, uint32_t size,
                       uint32_t bufferBytes) {
    uint8_t* buffer = reinterpret_cast<uint8_t*>(handle->buffer);
    const uint32_t cacheSize = handle->cacheSize;
    // A cache longer than the block or the buffer leaves a negative room; the copy then fails
    // on its own bounds check and is logged like any other failed copy.
    const bool fits = cacheSize <= bufferBytes && cacheSize <= size;
    uint8_t* body = fits ? buffer + cacheSize : buffer;
    const uint32_t bodyRoom = fits ? bufferBytes - cacheSize : 0;
    if (!CopyOrLog(body, bodyRoom, input, size - cacheSize)) {
        return false;
    }
    if (!CopyOrLog(buffer, bufferBytes, handle->cache, cacheSize)) {
        return false;
    }
    return CopyOrLog(handle->cache, cacheSize, input + size - cacheSize, cacheSize);
}

// A raising edge is faded in, then the falling-edge search runs on the block as that left it.
template <class Samples>
void SearchAndFade(Samples& samples, const ProcessHandle& handle, uint32_t size, bool enable,
                   uint32_t frames, unsigned channel, uint32_t writable) {
    const unsigned rise = FindRaisingEdgeIn(samples, frames, channel);
    if (rise != 0 && enable) {
        FadeInFrom(samples, handle, size, rise, writable);
    }
    const unsigned fall = FindFallingEdgeIn(samples, frames, channel);
    if (fall != 0 && enable) {
        FadeOutAt(samples, handle, size, fall, writable);
    }
}

// Fades each channel c with an edge at pos[c] (0 = none): both in one pass when they share it.
void FadeStereo(int32_t* buffer, const ProcessHandle& handle, uint32_t size, bool fadeOut,
                const unsigned (&pos)[2], const uint32_t (&writable)[2]) {
    if (pos[0] != 0 && pos[0] == pos[1] && writable[0] == writable[1]) {
        const bool done = fadeOut ? FadeOutBoth(buffer, handle, size, pos[0], writable[0])
                                  : FadeInBoth(buffer, handle, size, pos[0], writable[0]);
        if (done) {
            return;
        }
    }
    for (unsigned c = 0; c < 2; ++c) {
        FixedStrideSamples<2> samples{buffer + c};
        if (pos[c] != 0 && fadeOut) {
            FadeOutAt(samples, handle, size, pos[c], writable[c]);
        } else if (pos[c] != 0) {
            FadeInFrom(samples, handle, size, pos[c], writable[c]);
        }
    }
}

}  // namespace

// SearchAndFade for both channels of a stereo buffer, with the searches' per-frame tests done in
// one vectorised pass over the block. Channels never touch each other's samples, so both are
// searched before either is faded, and a fade-in's channel is judged again from its edge on
// before the falling-edge searches. The lines come out in the order of the channel-by-channel
// path.
void SearchAndFadeStereo(int32_t* buffer, const ProcessHandle& handle, uint32_t size, bool enable,
                         uint32_t frames, uint32_t bufferSamples) {
    StereoFlags flags;
    ComputeStereoFlags(buffer, frames, flags);
    const uint32_t writable[2] = {WritableFrames(bufferSamples, 2, 0),
                                  WritableFrames(bufferSamples, 2, 1)};
    FoundEdge rise[2];
    FoundEdge fall[2];
    for (unsigned c = 0; c < 2; ++c) {
        rise[c] = FindRaisingEdgeStereo(FlagsOf(flags, buffer, c));
    }
    if (enable) {
        const unsigned at[2] = {rise[0].pos, rise[1].pos};
        FadeStereo(buffer, handle, size, false, at, writable);
        RefreshStereoFlags(buffer, at, flags);
    }
    for (unsigned c = 0; c < 2; ++c) {
        fall[c] = FindFallingEdgeStereo(FlagsOf(flags, buffer, c));
    }
    for (unsigned c = 0; c < 2; ++c) {
        if (rise[c].pos != 0) {
            LogRaisingEdge(rise[c].pos, rise[c].value, c);
        }
        if (fall[c].pos != 0) {
            LogFallingEdge(fall[c].pos, fall[c].value, c);
        }
    }
    if (enable) {
        const unsigned at[2] = {fall[0].pos, fall[1].pos};
        FadeStereo(buffer, handle, size, true, at, writable);
    }
}

void SearchAndFadeChannels(int32_t* buffer, unsigned channels, const ProcessHandle& handle,
                           uint32_t size, bool enable, uint32_t frames, uint32_t bufferSamples) {
    for (unsigned c = 0; c < channels; ++c) {
        const uint32_t writable = WritableFrames(bufferSamples, channels, c);
        ChannelSamples samples{buffer + c, channels};
        SearchAndFade(samples, handle, size, enable, frames, c, writable);
    }
}

bool BlockPointersPresent(const ProcessHandle* handle, const void* input) {
    if (handle == nullptr || input == nullptr || handle->buffer == nullptr ||
        handle->cache == nullptr) {
        ORLUNE_LOGW(kTagPop, "Pointer is null");
        return false;
    }
    return true;
}

int32_t* RunBlock(ProcessHandle* handle, const void* input, uint32_t size, bool enable,
                  uint32_t bufferBytes) {
    if (!DelayThroughCache(handle, static_cast<const uint8_t*>(input), size, bufferBytes)) {
        return nullptr;
    }
    const unsigned channels = handle->channelCount;
    const uint32_t bufferSamples = bufferBytes / sizeof(int32_t);
    // The searches span the stored block size, never more frames than the buffer holds.
    uint32_t frames = FramesIn(*handle, handle->curBufferSize);
    const uint32_t bufferFrames = channels == 0 ? 0 : bufferSamples / channels;
    frames = frames < bufferFrames ? frames : bufferFrames;
    if (channels == 2 && frames <= kStereoMaxFrames) {
        SearchAndFadeStereo(handle->buffer, *handle, size, enable, frames, bufferSamples);
    } else {
        SearchAndFadeChannels(handle->buffer, channels, *handle, size, enable, frames,
                              bufferSamples);
    }
    return handle->buffer;
}

}  // namespace popelim
