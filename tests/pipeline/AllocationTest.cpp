// The processing path allocates nothing: malloc and operator new of the whole process are
// counted while blocks of every shape run through the shipped library.
#include <stddef.h>
#include <stdlib.h>

#include <atomic>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

static std::atomic<bool> gCounting{false};
static std::atomic<long> gAllocations{0};

static void Count() {
    if (gCounting.load(std::memory_order_relaxed)) {
        gAllocations.fetch_add(1, std::memory_order_relaxed);
    }
}

// glibc's own allocator entry points, under the names that stay reachable when malloc is
// replaced.
extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_calloc(size_t count, size_t size);
extern "C" void* __libc_realloc(void* ptr, size_t size);

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
// free stays glibc's own, which these blocks come from. The C++ library's operator new calls
// malloc as well.

namespace {

TEST(PipelineAllocationTest, ProcessingBlocksAllocatesNothing) {
    // The counter itself works, for malloc and for new.
    gAllocations = 0;
    gCounting = true;
    void* volatile probe = malloc(16);
    int* volatile object = new int(1);
    gCounting = false;
    free(probe);
    delete object;
    ASSERT_EQ(gAllocations, 2);

    PipelineHost host({true, 1, 4});  // four outputs
    // Runs one block of the shape uncounted, then `blocks` more with the counter on; returns
    // the allocations seen. The uncounted block re-initialises when the layout changed, and
    // that reads a system property: the host's property layer opens its file for it (the
    // device reads shared memory), so the first block of a layout is not the audio thread's
    // steady state on the host. Each block takes the previous one's output as its input.
    auto counted = [&](int blocks, int frames, int channels, audio_format_t format) {
        std::vector<int32_t> buffer = Noise32(frames, 10, static_cast<uint32_t>(frames));
        short* samples = reinterpret_cast<short*>(buffer.data());
        host.Effect()->KivOutProcPlaySamples(samples, frames, channels, format);
        gAllocations = 0;
        gCounting = true;
        for (int b = 0; b < blocks; ++b) {
            host.Effect()->KivOutProcPlaySamples(samples, frames, channels, format);
        }
        gCounting = false;
        return gAllocations.load();
    };
    // 600 blocks cross the status line of every 250th block.
    EXPECT_EQ(counted(600, 480, 4, AUDIO_FORMAT_PCM_16_BIT), 0);
    EXPECT_EQ(counted(300, 333, 4, AUDIO_FORMAT_PCM_FLOAT), 0);
    EXPECT_EQ(counted(100, 960, 8, AUDIO_FORMAT_PCM_24_BIT_PACKED), 0);
    host.Effect()->KivParamsSetInt(kIdChannelSwap, 1);  // swap fade on the four-channel output
    EXPECT_EQ(counted(100, 480, 4, AUDIO_FORMAT_PCM_16_BIT), 0);
    // Refused blocks log a line but allocate nothing either.
    EXPECT_EQ(counted(3, 480, 4, AUDIO_FORMAT_PCM_8_BIT), 0);
}

}  // namespace
