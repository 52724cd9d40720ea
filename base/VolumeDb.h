// The integer volume that the algorithm receives: the host's dB value truncated toward zero.
#pragma once

#include <math.h>
#include <stdint.h>

// NaN gives 0 and values beyond the int32 range saturate, so no host value can make the
// conversion undefined.
inline int32_t VolumeDbToInt(float db) {
    if (isnan(db)) {
        return 0;
    }
    if (db >= 2147483647.0f) {
        return INT32_MAX;
    }
    if (db <= -2147483648.0f) {
        return INT32_MIN;
    }
    return static_cast<int32_t>(db);
}
