// Usage rates of the daily event are single-precision ratios; a zero denominator gives -1.0.
#pragma once

#include <stdint.h>

inline float UsageRate(uint32_t numerator, uint32_t denominator) {
    if (denominator == 0) {
        return -1.0f;
    }
    return static_cast<float>(numerator) / static_cast<float>(denominator);
}
