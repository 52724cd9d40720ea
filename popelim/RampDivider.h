// Division of the fade products k × s by the ramp length n, which stays the same for a whole
// ramp. A hardware 64-bit division per sample costs tens of cycles; both schemes here give
// exactly the signed division truncating toward zero.
//
// Short ramps (n <= kShortRampMax, every ramp of a block of at most 3840 bytes) scale in double
// precision: k × s is exact (below 2^43 in magnitude), and multiplied by a reciprocal that is
// made larger by 2^-45 the result lies in [t, t + |t| × 2^-44) for the true quotient t (toward
// +-infinity with t's sign). As |t| < 2^31 that excess is below 2^-13, less than the 1/n that
// separates a non-integer quotient from the next integer, so truncation gives exactly trunc(t),
// integers included. Longer ramps correct a floating-point estimate with the exact remainder.
#pragma once

#include <stdint.h>

namespace popelim {

constexpr int64_t kShortRampMax = 4096;

class RampDivider {
public:
    // 1 <= den < 2^32.
    explicit RampDivider(int64_t den)
        : mDen(den),
          mInverse(1.0 / static_cast<double>(den)),
          mBiasedInverse(mInverse * (1.0 + 0x1p-45)) {}

    bool Short() const { return mDen <= kShortRampMax; }

    // The reciprocal ScaleShort multiplies by: its quotient is the truncation of
    // s × (k × BiasedInverse()), each product rounded once in double precision.
    double BiasedInverse() const { return mBiasedInverse; }

    // (k × s) / den for 0 <= k < den <= kShortRampMax.
    int32_t ScaleShort(int64_t k, int32_t s) const {
        const double gain = static_cast<double>(k) * mBiasedInverse;
        return static_cast<int32_t>(static_cast<double>(s) * gain);
    }

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

    // (k × s) / den for 0 <= k < den.
    int32_t Scale(int64_t k, int32_t s) const {
        return Short() ? ScaleShort(k, s) : static_cast<int32_t>(Divide(k * s));
    }

private:
    int64_t mDen;
    double mInverse;
    double mBiasedInverse;
};

}  // namespace popelim
