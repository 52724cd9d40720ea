#include "config/TokenList.h"

#include <stdlib.h>
#include <string.h>

TokenList::TokenList(char* text, const char* delimiters) : mRest(text), mDelimiters(delimiters) {}

const char* TokenList::Next() {
    if (mRest == nullptr) {
        return nullptr;
    }
    char* start = mRest + strspn(mRest, mDelimiters);
    if (*start == '\0') {
        mRest = nullptr;
        return nullptr;
    }
    char* end = start + strcspn(start, mDelimiters);
    if (*end == '\0') {
        mRest = nullptr;
    } else {
        *end = '\0';
        mRest = end + 1;
    }
    return start;
}

// strtol saturates out-of-range numbers; the casts keep the low bits, as the device does.
int16_t HexToken(const char* token) {
    return static_cast<int16_t>(static_cast<uint16_t>(strtol(token, nullptr, 16)));
}

int32_t IntegerAttr(const char* text) {
    return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, 0)));
}

int32_t DecimalText(const char* text) {
    return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, 10)));
}
