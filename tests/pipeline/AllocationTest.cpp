// The processing path allocates nothing: malloc and operator new of the whole process are
// counted while blocks of every shape run through the shipped library.
#include <stddef.h>
#include <stdlib.h>

#include <atomic>
#include <new>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

#if defined(__SANITIZE_ADDRESS__)
#define ORLUNE_COUNT_ALLOCATIONS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORLUNE_COUNT_ALLOCATIONS 0
#endif
#endif
#ifndef ORLUNE_COUNT_ALLOCATIONS
#define ORLUNE_COUNT_ALLOCATIONS 1
#endif

namespace {

std::atomic<bool> gCounting{false};
std::atomic<long> gAllocations{0};

[[maybe_unused]] void Count() {
    if (gCounting.load(std::memory_order_relaxed)) {
        gAllocations.fetch_add(1, std::memory_order_relaxed);
    }
}

}  // namespace

#if ORLUNE_COUNT_ALLOCATIONS
// glibc's own allocator entry points, under the names that stay reachable when malloc is
// replaced.
extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_calloc(size_t count, size_t size);
extern "C" void* __libc_realloc(void* ptr, size_t size);
extern "C" void __libc_free(void* ptr);

extern "C" void* malloc(size_t size) {
    Count();
    return __libc_malloc(size);
}
extern "C" void* calloc(size_t count, size_t size) {
    Count();
    return __libc_calloc(count, size);
}
extern "C" void* realloc(void* ptr, size_t size) {
    Count();
    return __libc_realloc(ptr, size);
}
extern "C" void free(void* ptr) {
    __libc_free(ptr);
}

void* operator new(size_t size) {
    Count();
    void* p = __libc_malloc(size != 0 ? size : 1);
    if (p == nullptr) {
        throw std::bad_alloc();
    }
    return p;
}
void* operator new[](size_t size) {
    return operator new(size);
}
void operator delete(void* p) noexcept {
    __libc_free(p);
}
void operator delete[](void* p) noexcept {
    __libc_free(p);
}
void operator delete(void* p, size_t) noexcept {
    __libc_free(p);
}
void operator delete[](void* p, size_t) noexcept {
    __libc_free(p);
}
#endif

namespace {

// Runs one block of the shape uncounted, then `blocks` more with the counter on; returns the
// allocations seen. The uncounted block re-initialises when the layout changed, and that reads
// a system property: the host's property layer opens its file for it (the device reads shared
// memory), so the first block of a layout is not the audio thread's steady state on the host.
[[maybe_unused]] long CountedBlocks(PipelineHost& host, int blocks, int frames, int channels,
                                    audio_format_t format) {
    const int bytes = BytesPerSample(format);
    std::vector<uint8_t> buffer(static_cast<size_t>(frames) * (channels < 4 ? 4 : channels) *
                                bytes);
    const std::vector<uint8_t> noise = FromInt32(
            Noise32(frames, channels == 4 ? 2 : channels, static_cast<uint32_t>(frames)), format);
    for (int b = -1; b < blocks; ++b) {
        memcpy(buffer.data(), noise.data(), noise.size());
        if (b == 0) {
            gAllocations = 0;
            gCounting = true;
        }
        host.Effect()->KivOutProcPlaySamples(reinterpret_cast<short*>(buffer.data()), frames,
                                             channels, format);
    }
    gCounting = false;
    return gAllocations;
}

TEST(PipelineAllocationTest, ProcessingBlocksAllocatesNothing) {
#if !ORLUNE_COUNT_ALLOCATIONS
    GTEST_SKIP() << "the sanitizer owns malloc in this build";
#else
    // The counter itself works.
    gAllocations = 0;
    gCounting = true;
    void* volatile probe = malloc(16);
    gCounting = false;
    free(probe);
    ASSERT_EQ(gAllocations, 1);

    PipelineHost::Options options;
    options.configChannelOut = 4;
    PipelineHost host(options);
    // 600 blocks cross the status line of every 250th block.
    EXPECT_EQ(CountedBlocks(host, 600, 480, 4, AUDIO_FORMAT_PCM_16_BIT), 0);
    EXPECT_EQ(CountedBlocks(host, 300, 333, 4, AUDIO_FORMAT_PCM_FLOAT), 0);
    EXPECT_EQ(CountedBlocks(host, 100, 960, 8, AUDIO_FORMAT_PCM_24_BIT_PACKED), 0);
    EXPECT_EQ(CountedBlocks(host, 100, 240, 10, AUDIO_FORMAT_PCM_32_BIT), 0);
    host.Effect()->KivParamsSetInt(5, 1);  // swap fade on the four-channel output
    EXPECT_EQ(CountedBlocks(host, 100, 480, 4, AUDIO_FORMAT_PCM_16_BIT), 0);
    // Refused blocks log a line but allocate nothing either.
    EXPECT_EQ(CountedBlocks(host, 3, 480, 4, AUDIO_FORMAT_PCM_8_BIT), 0);
#endif
}

}  // namespace
