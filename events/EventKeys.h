// Key strings of the usage event, shared by the aggregator and its recorders. They are built
// once when the library is loaded and indexed by mode id and volume band.
#pragma once

#include <string>

constexpr int kSpkKeyRows = 8;  // speaker mode ids 0..7
constexpr int kHpKeyRows = 6;   // headphone mode ids 0..5

extern const std::string gSpkVolRateKeys[kSpkKeyRows][7];  // [mode][volume band]
extern const std::string gSpkModeRateKeys[kSpkKeyRows];
extern const std::string gHpLowRateKeys[kHpKeyRows];
extern const std::string gHpUpperRateKeys[kHpKeyRows];
extern const std::string gHpModeRateKeys[kHpKeyRows];

extern const std::string gKeyEffectName;    // "EFFECTNAME"
extern const std::string gEffectNameValue;  // "ORLUNE"
extern const std::string gKeyEnableRate;
extern const std::string gKeySpeakerUsageRate;
extern const std::string gKeyHeadphoneUsageRate;
extern const std::string gKeyBtUsageRate;
extern const std::string gKeyEffectUsageTime;
extern const std::string gKeyAlgoErrorCode;
extern const std::string gKeyAlgoErrorTimes;
