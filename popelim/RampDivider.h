// Division of the fade products by the ramp length, which stays the same for a whole ramp.
// A hardware 64-bit division per sample costs tens of cycles; here a floating-point estimate of
// the quotient is corrected with the exact remainder, so the result is exactly that of the
// signed division num / den, truncating toward zero.
#pragma once

#include <stdint.h>

namespace popelim {

class RampDivider {
public:
    // 1 <= den < 2^32.
    explicit RampDivider(int64_t den) : mDen(den), mInverse(1.0 / static_cast<double>(den)) {}

    // num / den for |num| < den * 2^31, so that the quotient fits in 32 bits. The estimate is
    // off by at most one; every product below stays inside 64 bits.
    int64_t Divide(int64_t num) const {
        int64_t q = static_cast<int64_t>(static_cast<double>(num) * mInverse);
        int64_t r = num - q * mDen;
        if (num >= 0) {
            for (; r < 0; r += mDen) {
                --q;
            }
            for (; r >= mDen; r -= mDen) {
                ++q;
            }
        } else {
            for (; r > 0; r -= mDen) {
                ++q;
            }
            for (; r <= -mDen; r += mDen) {
                --q;
            }
        }
        return q;
    }

private:
    int64_t mDen;
    double mInverse;
};

}  // namespace popelim
