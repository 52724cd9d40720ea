#include "config/TokenList.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include "base/Log.h"

TokenList::TokenList(char* text, const char* delimiters) : mRest(text) {
    for (const char* d = delimiters; *d != '\0'; ++d) {
        mDelimiter[static_cast<unsigned char>(*d)] = true;
    }
}

const char* TokenList::Next() {
    if (mRest == nullptr) {
        return nullptr;
    }
    char* start = mRest;
    while (*start != '\0' && IsDelimiter(*start)) {
        ++start;
    }
    if (*start == '\0') {
        mRest = nullptr;
        return nullptr;
    }
    char* end = start;
    while (*end != '\0' && !IsDelimiter(*end)) {
        ++end;
    }
    if (*end == '\0') {
        mRest = nullptr;
    } else {
        *end = '\0';
        mRest = end + 1;
    }
    return start;
}

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

struct HexNumber {
    uint64_t magnitude;
    bool negative;
    bool overflow;  // beyond the range of a 64-bit long
};

// The rules of strtol with base 16 in the C locale, without its cost per call.
HexNumber ParseHex(const char* token) {
    const char* p = token;
    while (*p == ' ' || (*p >= '\t' && *p <= '\r')) {
        ++p;
    }
    HexNumber n{0, *p == '-', false};
    if (*p == '-' || *p == '+') {
        ++p;
    }
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && HexDigit(p[2]) >= 0) {
        p += 2;
    }
    constexpr uint64_t kLongMax = static_cast<uint64_t>(INT64_MAX);
    const uint64_t limit = n.negative ? kLongMax + 1 : kLongMax;
    for (int d = HexDigit(*p); d >= 0; d = HexDigit(*++p)) {
        if (n.magnitude > (limit - static_cast<uint64_t>(d)) / 16) {
            n.overflow = true;
        } else {
            n.magnitude = n.magnitude * 16 + static_cast<uint64_t>(d);
        }
    }
    return n;
}

// strtoll with `base`, accepted only when it fits 32 bits.
bool Integer32(const char* text, int base, int32_t* value) {
    errno = 0;
    const long long n = strtoll(text, nullptr, base);
    if (errno == ERANGE || n < INT32_MIN || n > INT32_MAX) {
        return false;
    }
    *value = static_cast<int32_t>(n);
    return true;
}

}  // namespace

// The low 16 bits of the saturated result are kept, as the device does.
int16_t HexToken(const char* token) {
    const HexNumber n = ParseHex(token);
    if (n.overflow) {
        return static_cast<int16_t>(n.negative ? 0 : 0xffff);  // LONG_MIN or LONG_MAX
    }
    const uint64_t value = n.negative ? 0 - n.magnitude : n.magnitude;
    return static_cast<int16_t>(static_cast<uint16_t>(value & 0xffffu));
}

bool HexTokenFits(const char* token) {
    const HexNumber n = ParseHex(token);
    return !n.overflow && n.magnitude <= (n.negative ? 0x8000u : 0xffffu);
}

const char* FirstUnfitToken(const char* text) {
    bool delimiter[256] = {};
    for (const char* d = kXmlDelimiters; *d != '\0'; ++d) {
        delimiter[static_cast<unsigned char>(*d)] = true;
    }
    const char* p = text;
    for (;;) {
        while (*p != '\0' && delimiter[static_cast<unsigned char>(*p)]) {
            ++p;
        }
        if (*p == '\0') {
            return nullptr;
        }
        // The digits end at the first delimiter at the latest: no delimiter is a hex digit.
        if (!HexTokenFits(p)) {
            return p;
        }
        while (*p != '\0' && !delimiter[static_cast<unsigned char>(*p)]) {
            ++p;
        }
    }
}

bool IntegerAttr(const char* text, int32_t* value) {
    return Integer32(text, 0, value);
}

bool DecimalText(const char* text, int32_t* value) {
    return Integer32(text, 10, value);
}

void LogOutOfRange(const char* where, const char* what, const char* text) {
    ORLUNE_LOGE(kTagMobile, "%s %s out of range: %.40s", where, what, text);
}
