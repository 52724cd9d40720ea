// The clock on the device: the platform's monotonic clock, with no test override.
#include <platform/clock.h>

#include <utils/Timers.h>

namespace orlune_platform {

int64_t MonotonicNs() {
    return systemTime(SYSTEM_TIME_MONOTONIC);
}

}  // namespace orlune_platform
