#include "config/TokenList.h"

#include <stdlib.h>
#include <string.h>

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

}  // namespace

// The rules of strtol with base 16 in the C locale, without its cost per call; the low 16 bits
// of the saturated result are kept, as the device does.
int16_t HexToken(const char* token) {
    const char* p = token;
    while (*p == ' ' || (*p >= '\t' && *p <= '\r')) {
        ++p;
    }
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') {
        ++p;
    }
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && HexDigit(p[2]) >= 0) {
        p += 2;
    }
    constexpr uint64_t kLongMax = static_cast<uint64_t>(INT64_MAX);
    const uint64_t limit = negative ? kLongMax + 1 : kLongMax;
    uint64_t magnitude = 0;
    bool overflow = false;
    for (int d = HexDigit(*p); d >= 0; d = HexDigit(*++p)) {
        if (magnitude > (limit - static_cast<uint64_t>(d)) / 16) {
            overflow = true;
        } else {
            magnitude = magnitude * 16 + static_cast<uint64_t>(d);
        }
    }
    if (overflow) {
        return static_cast<int16_t>(negative ? 0 : 0xffff);  // LONG_MIN or LONG_MAX
    }
    const uint64_t value = negative ? 0 - magnitude : magnitude;
    return static_cast<int16_t>(static_cast<uint16_t>(value & 0xffffu));
}

int32_t IntegerAttr(const char* text) {
    return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, 0)));
}

int32_t DecimalText(const char* text) {
    return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, 10)));
}
