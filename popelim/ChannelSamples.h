// Views of one channel of an interleaved 32-bit work buffer, through which the edge searches and
// fades read and write: `int32_t Get(unsigned frame) const`, `void Set(unsigned frame, int32_t)`.
#pragma once

#include <stdint.h>

namespace popelim {

// Frame f of the channel is data[f * stride].
struct ChannelSamples {
    int32_t* data;
    unsigned stride;
    int32_t Get(unsigned frame) const { return data[frame * stride]; }
    void Set(unsigned frame, int32_t value) { data[frame * stride] = value; }
};

// The same with the stride known at compile time, so that the searches' scans vectorise.
template <unsigned kStride>
struct FixedStrideSamples {
    int32_t* data;
    int32_t Get(unsigned frame) const { return data[frame * kStride]; }
    void Set(unsigned frame, int32_t value) { data[frame * kStride] = value; }
};

}  // namespace popelim
