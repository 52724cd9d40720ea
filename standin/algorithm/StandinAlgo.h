// Host stand-in for the closed algorithm library. It honours the six entry points' call shapes
// and does simple, deterministic processing that depends audibly on the tuning it is given,
// so that tests and listeners can tell which tuning is in force:
//
//   main record word 400      gain offset, Q12: gain = (4096 + w) / 4096 (0 is unity)
//   extended record word 300  stereo width offset, Q12: side *= (4096 + w) / 4096
//
// Apply, per 480-frame frame in place:
//   stereo in, 2 out:  L' = (M + S') * g, R' = (M - S') * g with M = (L+R)/2, S = (L-R)/2
//   stereo in, 4 out:  L', R', then mid (L'+R')/2 and side (L'-R')/2 as channels 3 and 4
//   8 or 10 in:        L = mean of the even channels, R = mean of the odd ones, then as
//                      stereo; one stereo pair per frame at the start of the buffer
//   enable == 0:       gain and width are unity (the frame is only reshaped)
//
// All state lives in the first memory bank that the caller lends it. The environment variable
// ORLUNE_STANDIN_FAIL="Entry=code[,Entry=code...]" (entries Init, Apply, SetPara, GetVersion,
// GetSize) makes an entry return that code without doing its work, for fault tests.
#pragma once

#include <stdint.h>

constexpr int kStandinGainWord = 400;
constexpr int kStandinWidthWord = 300;
constexpr int32_t kStandinUnityQ12 = 4096;
constexpr int32_t kStandinNotInitialised = -2;

struct StandinState {
    uint32_t magic;
    int32_t gainQ12;
    int32_t widthQ12;
    uint32_t initCount;
    uint32_t setParaCount;
    uint32_t applyCount;
};
