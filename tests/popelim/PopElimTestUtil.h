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

inline ProcessConfig StereoConfig(uint32_t bufferSize = kPopBlockBytes) {
    return ProcessConfig{2, 4, bufferSize, 0, 3};
}

// Interleaved stereo samples.
struct Stereo {
    std::vector<int32_t> s;
    explicit Stereo(unsigned frames, int32_t value = 0) : s(frames * 2, value) {}
    int32_t& at(unsigned frame, unsigned channel) { return s[frame * 2 + channel]; }
    int32_t at(unsigned frame, unsigned channel) const { return s[frame * 2 + channel]; }
    // Frames [from, to) of `channel` at `level`.
    Stereo& Fill(unsigned channel, unsigned from, unsigned to, int level) {
        for (unsigned f = from; f < to; ++f) {
            at(f, channel) = Lv(level);
        }
        return *this;
    }
    unsigned bytes() const { return static_cast<unsigned>(s.size() * 4); }
};

// Loud random samples (levels 16000 to 29999 of either sign): no frame is quiet and no frame
// drops below a tenth of the one before, so they hold no edge.
inline Stereo Noise(unsigned frames, uint32_t state) {
    Stereo b(frames);
    for (int32_t& x : b.s) {
        state = state * 1664525u + 1013904223u;
        const int32_t level = 16000 + static_cast<int32_t>((state >> 8) % 14000);
        const int32_t sample = Lv(level) + static_cast<int32_t>(state & 0xFFFF);
        x = (state & 0x80000000u) ? -sample : sample;
    }
    return b;
}

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

    ProcessHandle* Init(const ProcessConfig& config = StereoConfig()) {
        return elim.CuttingEdgeFadeinoutInit(&config, &handle, buffer, cache);
    }
    // Puts `block` straight into the work buffer, as the searches see it after the delay.
    void Load(const Stereo& block) { memcpy(buffer, block.s.data(), sizeof(buffer)); }
    int32_t Sample(unsigned frame, unsigned channel) const { return buffer[frame * 2 + channel]; }
    int32_t* Process(const Stereo& block, bool enable = true) {
        return elim.CuttingEdgeProcess(&handle, block.s.data(), block.bytes(), enable,
                                       kPopCacheBytes);
    }
};
