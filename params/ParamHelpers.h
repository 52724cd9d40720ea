// Small helpers shared by the speaker and headphone mode selection.
#pragma once

#include <math.h>
#include <stdint.h>

#include "base/VolumeDb.h"
#include "effect/orlune.h"

// Extended-record words that the mode selection writes on every block.
constexpr int kExtWordEqBand11 = 332;  // high byte: the eleventh custom EQ band
constexpr int kExtWordChannels = 334;  // high byte: block channels; low byte: headset type
constexpr int kExtWordVolume = 339;    // speaker only: integer part of volumeDb

namespace params {

inline uint16_t Bits(int16_t word) {
    return static_cast<uint16_t>(word);
}

// Replaces the high byte of `word` with the low byte of `value`.
inline void SetHighByte(int16_t& word, int value) {
    word = static_cast<int16_t>((Bits(word) & 0x00FF) |
                                ((static_cast<unsigned>(value) & 0xFF) << 8));
}

// Replaces the low byte of `word` with the low byte of `value`.
inline void SetLowByte(int16_t& word, int value) {
    word = static_cast<int16_t>((Bits(word) & 0xFF00) | (static_cast<unsigned>(value) & 0xFF));
}

// Hands the current parameter block to the algorithm; the caller (the block) holds the
// instance lock. Returns the algorithm's status (0 when no algorithm is bound: there is
// nobody to hand it to).
inline int32_t CallSetPara(Orlune& o) {
    if (o.mAlgoSetPara == nullptr) {
        return 0;
    }
    return o.mAlgoSetPara(reinterpret_cast<void**>(o.mAlgoMemTable), o.mAlgoParamArea, &o.mCurPara,
                          &o.mCurParaExt);
}

}  // namespace params
