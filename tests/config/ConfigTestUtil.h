// Helpers shared by the configuration tests.
#pragma once

#include <stdio.h>
#include <string.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "effect/orlune.h"

// Calls an element handler as expat would, with name/value pairs.
inline void StartMain(const char* name, std::initializer_list<const char*> pairs) {
    std::vector<const char*> attrs(pairs);
    attrs.push_back(nullptr);
    Orlune::StartElement(nullptr, name, attrs.data());
}

inline void StartMap(const char* name, std::initializer_list<const char*> pairs) {
    std::vector<const char*> attrs(pairs);
    attrs.push_back(nullptr);
    Orlune::StartElementMapTable(nullptr, name, attrs.data());
}

// A value list of `count` hexadecimal words first, first + 1, ... (without 0x, so that long
// lists fit the reader's 3000-character buffer)
inline std::string HexList(int count, int first = 1, const char* separator = ",") {
    std::string out;
    char word[16];
    for (int i = 0; i < count; ++i) {
        snprintf(word, sizeof(word), "%s%x", i == 0 ? "" : separator,
                 static_cast<unsigned>(first + i) & 0xffffu);
        out += word;
    }
    return out;
}

// The first `n` 16-bit words of a record as a vector.
template <typename Record>
std::vector<int16_t> Words(const Record& record, int n) {
    std::vector<int16_t> out(n);
    memcpy(out.data(), &record, sizeof(int16_t) * n);
    return out;
}
