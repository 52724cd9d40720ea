// A monotonic clock that the test sets by hand, installed as the effect's time source for the
// life of the object.
#pragma once

#include <stdint.h>

#include <platform/clock.h>

class FakeClock {
public:
    static constexpr int64_t kDayNs = 86400000000000LL;

    explicit FakeClock(int64_t start) {
        sNow = start;
        orlune_platform::SetClockForTest([] { return sNow; });
    }
    ~FakeClock() { orlune_platform::SetClockForTest(nullptr); }

    void Set(int64_t ns) { sNow = ns; }
    void Advance(int64_t ns) { sNow += ns; }

private:
    static inline int64_t sNow = 0;
};
