// Helpers for the pop eliminator tests: a class-driven stream with its own buffers, and blocks
// built from 16-bit levels (a level L is the sample L * 65536, whose level is exactly L).
#pragma once

#include <gtest/gtest.h>
#include <stdint.h>
#include <string.h>

#include <vector>

#include "popelim/FallingPopElim.h"

constexpr unsigned kFrames = kPopBlockBytes / 8;  // stereo frames in a full block
constexpr unsigned kCacheFrames = kPopCacheBytes / 8;

constexpr int32_t Lv(int level) {
    return level * 65536;
}

// Interleaved stereo samples.
struct Stereo {
    std::vector<int32_t> s;
    explicit Stereo(unsigned frames, int32_t value = 0) : s(frames * 2, value) {}
    // Frames [from, to) of `channel` at `level`, or holding `sample`.
    Stereo& Fill(unsigned channel, unsigned from, unsigned to, int level) {
        return Set(channel, from, to, Lv(level));
    }
    Stereo& Set(unsigned channel, unsigned from, unsigned to, int32_t sample) {
        for (unsigned f = from; f < to; ++f) {
            s[f * 2 + channel] = sample;
        }
        return *this;
    }
};

// Bytes [from, from + count) of `block`.
inline std::vector<uint8_t> Bytes(const void* block, size_t from, size_t count) {
    const uint8_t* p = static_cast<const uint8_t*>(block) + from;
    return std::vector<uint8_t>(p, p + count);
}

// A FallingPopElim stream over a 3840-byte work buffer and a 384-byte cache.
struct ClassStream {
    FallingPopElim elim;
    ProcessHandle handle{};
    int32_t buffer[kFrames * 2] = {};
    uint8_t cache[kPopCacheBytes] = {};

    ProcessHandle* Init(ProcessConfig config = {2, 4, kPopBlockBytes, 0, 3}) {
        return elim.CuttingEdgeFadeinoutInit(&config, &handle, buffer, cache);
    }
    // Puts `block` straight into the work buffer, as the searches see it after the delay.
    void Load(const Stereo& block) { memcpy(buffer, block.s.data(), sizeof(buffer)); }
};
