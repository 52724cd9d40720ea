// Host-format samples as the effect sees them: converted to 32-bit the way the platform's
// conversion does, and as floats of full scale 1 for plotting.
#pragma once

#include <stdint.h>

#include "tools/play/PlayOptions.h"

int32_t SampleToInt32(HostFormat format, const uint8_t* sample);

inline float Int32ToFloat(int32_t sample) {
    return static_cast<float>(sample) / 2147483648.0f;
}

// The 16-bit level the pop eliminator compares: the 32-bit sample divided by 65536, truncated
// toward zero.
inline int Level16(int32_t sample) {
    return sample / 65536;
}
