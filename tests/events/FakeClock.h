// A monotonic clock that the test sets by hand, installed as the effect's time source for the
// life of the object.
#pragma once

#include <stdint.h>

#include <platform/clock.h>

class FakeClock {
public:
    static constexpr int64_t kDayNs = 86400000000000LL;

    explicit FakeClock(int64_t start) {
        Now() = start;
        orlune_platform::SetClockForTest(&Read);
    }
    ~FakeClock() { orlune_platform::SetClockForTest(nullptr); }

    void Set(int64_t ns) { Now() = ns; }
    void Advance(int64_t ns) { Now() += ns; }

private:
    static int64_t& Now() {
        static int64_t now = 0;
        return now;
    }
    static int64_t Read() { return Now(); }
};
