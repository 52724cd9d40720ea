#include "standin/louddetect/LevelMeter.h"

#include <math.h>

namespace lad_standin {

namespace {

constexpr double kFullScale = 2147483648.0;

float ToDbfs(double linear) {
    if (linear <= 0.0) {
        return kSilenceDbfs;
    }
    double db = 20.0 * log10(linear);
    return db < kSilenceDbfs ? kSilenceDbfs : static_cast<float>(db);
}

}  // namespace

Levels MeasureInt32(const int32_t* samples, size_t count) {
    if (samples == nullptr || count == 0) {
        return {kSilenceDbfs, kSilenceDbfs};
    }
    double peak = 0.0;
    double sumSquares = 0.0;
    for (size_t i = 0; i < count; ++i) {
        double x = static_cast<double>(samples[i]) / kFullScale;
        double magnitude = fabs(x);
        if (magnitude > peak) {
            peak = magnitude;
        }
        sumSquares += x * x;
    }
    return {ToDbfs(peak), ToDbfs(sqrt(sumSquares / static_cast<double>(count)))};
}

}  // namespace lad_standin
