// The record handed to the algorithm's size query and apply entry. The closed library reads
// it, so its layout is fixed (little-endian, LP64).
#pragma once

#include <stddef.h>
#include <stdint.h>

struct KivIoInfo {
    int32_t* inBuf;       // always the instance's mIoBuffer
    int32_t* outBuf;      // always mIoBuffer: processing is in place
    int32_t frameLength;  // samples per channel per call: 480
    int32_t enable;       // 1 while the effect is active, 0 to pass through
    int32_t resetWord;    // cleared by every InitKiv; its meaning is the algorithm's
    int32_t volume;       // integer part of volumeDb
    int32_t inChannels;   // 2 on the stereo path, 8 or 10 on the multichannel path
    int32_t outChannels;  // 2 or 4
    int32_t reserved0;
    int32_t reserved1;
};
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the algorithm reads little-endian words");
// Every word the algorithm reads, at its fixed offset.
static_assert(offsetof(KivIoInfo, inBuf) == 0, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, outBuf) == 8, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, frameLength) == 16, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, enable) == 20, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, resetWord) == 24, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, volume) == 28, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, inChannels) == 32, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, outChannels) == 36, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, reserved0) == 40, "KivIoInfo layout");
static_assert(offsetof(KivIoInfo, reserved1) == 44, "KivIoInfo layout");
static_assert(sizeof(KivIoInfo) == 48 && alignof(KivIoInfo) == 8, "KivIoInfo layout");

constexpr int kAlgoFrame = 480;  // sample frames per algorithm call: 10 ms at 48 kHz
