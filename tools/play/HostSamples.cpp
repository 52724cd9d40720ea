#include "tools/play/HostSamples.h"

#include <math.h>
#include <string.h>

int32_t SampleToInt32(HostFormat format, const uint8_t* sample) {
    switch (format) {
        case HostFormat::S16: {
            int16_t v;
            memcpy(&v, sample, 2);
            return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int32_t>(v)) << 16);
        }
        case HostFormat::S24:
            return static_cast<int32_t>((static_cast<uint32_t>(sample[0]) << 8) |
                                        (static_cast<uint32_t>(sample[1]) << 16) |
                                        (static_cast<uint32_t>(sample[2]) << 24));
        case HostFormat::S32: {
            int32_t v;
            memcpy(&v, sample, 4);
            return v;
        }
        case HostFormat::F32: {
            float f;
            memcpy(&f, sample, 4);
            const double scaled = static_cast<double>(f) * 2147483648.0;
            if (!(scaled > -2147483648.0)) {
                return INT32_MIN;
            }
            return scaled >= 2147483647.0 ? INT32_MAX : static_cast<int32_t>(lrint(scaled));
        }
    }
    return 0;
}
