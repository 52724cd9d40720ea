// Configuration and per-stream state of the pop eliminator.
#pragma once

#include <stddef.h>
#include <stdint.h>

struct ProcessConfig {
    uint32_t channelCount;  // interleaved channels; 1 or 2 accepted at init, only 2 processed
    uint32_t bitDepth;      // bytes per sample; must be 4
    uint32_t bufferSize;    // block size in bytes; 1 to 3840
    int32_t outputType;     // carried and logged only
    int32_t format;         // audio_format_t; only AUDIO_FORMAT_PCM_32_BIT is processed
};
static_assert(sizeof(ProcessConfig) == 20 && alignof(ProcessConfig) == 4, "ProcessConfig layout");

struct ProcessHandle {
    uint32_t channelCount;
    uint32_t bitDepth;
    uint32_t maxBufferSize;  // upper bound of a processed block
    int32_t outputType;
    int32_t format;
    uint32_t sampleRate;     // 48000 after initialisation
    int32_t* buffer;         // work buffer (caller-owned); the processed block is returned here
    uint32_t curBufferSize;  // block size in bytes that the edge searches assume
    uint8_t* cache;          // delay cache (caller-owned)
    uint32_t cacheSize;      // the delay in bytes
};
// Other modules of the host process hold the handle through the exported functions.
static_assert(offsetof(ProcessHandle, format) == 16, "ProcessHandle layout");
static_assert(offsetof(ProcessHandle, sampleRate) == 20, "ProcessHandle layout");
static_assert(offsetof(ProcessHandle, buffer) == 24, "ProcessHandle layout");
static_assert(offsetof(ProcessHandle, curBufferSize) == 32, "ProcessHandle layout");
static_assert(offsetof(ProcessHandle, cache) == 40, "ProcessHandle layout");
static_assert(offsetof(ProcessHandle, cacheSize) == 48, "ProcessHandle layout");
static_assert(sizeof(ProcessHandle) == 56 && alignof(ProcessHandle) == 8, "ProcessHandle layout");

// One row of the block-size to sample-rate table.
struct SampleRateRow {
    uint32_t blockSize;   // bytes
    uint32_t sampleRate;  // Hz
};

constexpr uint32_t kPopBlockBytes = 3840;  // 480 stereo frames of 32-bit samples
constexpr uint32_t kPopCacheBytes = 384;   // 48 stereo frames: 1 ms at 48 kHz
// The same in frames: the stereo path's output lags its input by the cache.
constexpr int kPopCacheFrames = 48;
static_assert(kPopCacheBytes == kPopCacheFrames * 2 * sizeof(int32_t), "cache of stereo frames");
