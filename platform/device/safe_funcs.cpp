// The memory and string copies of safe_funcs.h on the device: the bounds-checked contract
// (C11 Annex K) checked here, the copying done by the C library. The limits are the host
// backing's (libsafec), so both builds refuse the same calls. Print and scan functions:
// platform/common/safe_funcs_text.cpp.
#include <safe_funcs.h>

#include <errno.h>
#include <string.h>

namespace safe_funcs {
namespace {

constexpr size_t kMaxMem = size_t{256} << 20;
constexpr size_t kMaxStr = 0x8000;

bool Overlap(const void* a, size_t aSize, const void* b, size_t bSize) {
    const char* x = static_cast<const char*>(a);
    const char* y = static_cast<const char*>(b);
    return x < y + bSize && y < x + aSize;
}

}  // namespace

int MemcpyS(void* dest, size_t destMax, const void* src, size_t count) {
    if (dest == nullptr || destMax == 0 || destMax > kMaxMem) {
        return EINVAL;
    }
    if (src == nullptr || count > destMax || Overlap(dest, count, src, count)) {
        memset(dest, 0, destMax);
        return src == nullptr ? EINVAL : ERANGE;
    }
    memcpy(dest, src, count);
    return EOK;
}

int MemsetS(void* dest, size_t destMax, int c, size_t count) {
    if (dest == nullptr || destMax > kMaxMem) {
        return EINVAL;
    }
    // Too long: the whole buffer is set, and the call still fails.
    memset(dest, c, count < destMax ? count : destMax);
    return count > destMax ? ERANGE : EOK;
}

int StrcpyS(char* dest, size_t destMax, const char* src) {
    return StrncpyS(dest, destMax, src, destMax);
}

int StrncpyS(char* dest, size_t destMax, const char* src, size_t count) {
    if (dest == nullptr || destMax == 0 || destMax > kMaxStr) {
        return EINVAL;
    }
    if (src == nullptr) {
        dest[0] = '\0';
        return EINVAL;
    }
    size_t n = strnlen(src, count < destMax ? count : destMax);
    if (n == destMax || Overlap(dest, destMax, src, n + 1)) {
        dest[0] = '\0';  // no room for the terminator, or overlapping
        return ERANGE;
    }
    memcpy(dest, src, n);
    dest[n] = '\0';
    return EOK;
}

}  // namespace safe_funcs
