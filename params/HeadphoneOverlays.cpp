// Overlays on the current headphone records: the headset type's row of words and LPH table,
// and the host's custom equaliser. The word numbers are the algorithm's record layout.
#include "base/Log.h"
#include "effect/orlune.h"
#include "params/ParamHelpers.h"

namespace {

constexpr int kFallbackHpType = 3;  // row and type used for a type the table does not have
constexpr int kCustomEqPreset = 6;
constexpr int kEqBandsInMainRecord = 10;

// The row value goes in whole and the word's old high byte is ORed over it.
void LowByteWrite(int16_t& word, int16_t value) {
    word = static_cast<int16_t>(params::Bits(value) | (params::Bits(word) & 0xFF00));
}

}  // namespace

void Orlune::KivSetHPType(AudioOrluneMobilePara& para, AudioOrluneMobileParaExt& ext, short type) {
    // Types above the table use row 3; so do negative ones, which have no row at all.
    const int row = (type >= 0 && type < kHpTypeRows) ? type : kFallbackHpType;
    const int16_t* w = &Tables().gParameterHpType[row * kHpTypeRowWords];
    int16_t* m = para.words;

    LowByteWrite(m[117], w[0]);
    LowByteWrite(m[118], w[0]);
    for (int i = 0; i < 4; ++i) {
        params::SetLowByte(m[145 + i], w[1 + i]);
        params::SetLowByte(m[157 + i], w[1 + i]);
    }
    LowByteWrite(m[149], w[5]);
    LowByteWrite(m[161], w[5]);
    for (int i = 0; i < 4; ++i) {
        m[181 + i] = w[6 + i];
        m[229 + i] = w[11 + i];
    }
    m[185] = w[10];
    m[233] = w[15];

    params::SetLowByte(ext.words[kExtWordChannels], row);
    ext.lphTable = gLphConfig + row;
}

void Orlune::SetCustomEQ(AudioOrluneMobilePara& para, AudioOrluneMobileParaExt& ext) {
    for (int i = 0; i < 2; ++i) {
        para.words[i] = static_cast<int16_t>((params::Bits(para.words[i]) & ~0x0004u) | 0x0080u);
    }
    const int32_t eqLimit = gEqLimitValue;  // process-wide: read once for the whole record
    const bool limit = eqPreset == kCustomEqPreset && eqLimit != 0;
    for (int i = 0; i < kEqBandsInMainRecord; ++i) {
        if (limit && HP_EQ[i] > eqLimit) {
            HP_EQ[i] = static_cast<int16_t>(eqLimit);
        }
        params::SetHighByte(para.words[145 + i], HP_EQ[i]);
        params::SetHighByte(para.words[157 + i], HP_EQ[i]);
    }
    params::SetHighByte(ext.words[kExtWordEqBand11], HP_EQ[10]);
    para.words[5] = HP_PREGAIN;
    para.words[6] = HP_PREGAIN;
}
