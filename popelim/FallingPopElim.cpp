#include "popelim/FallingPopElim.h"

#include <system/audio.h>

#include "base/Log.h"
#include "popelim/EdgeFade.h"
#include "popelim/EdgeSearch.h"
#include "popelim/PopElimBlock.h"
#include "safe_funcs.h"

const SampleRateRow gSampleRateTable[1] = {{kPopBlockBytes, 48000}};

namespace {

constexpr uint32_t kInitialSampleRate = 48000;             // the only row of gSampleRateTable
constexpr uint32_t kMaxConfigBufferSize = kPopBlockBytes;  // one stereo algorithm frame
constexpr int32_t kFormatPcm32 = AUDIO_FORMAT_PCM_32_BIT;

// One channel for the searches and fades reached through the public members, which read and
// write through the format-checking accessors as any caller of those members would.
struct CheckedSamples {
    FallingPopElim* elim;
    ProcessHandle* handle;
    unsigned channel;
    unsigned Index(unsigned frame) const { return channel + frame * handle->channelCount; }
    int32_t Get(unsigned frame) const { return elim->GetSampleValue(handle, Index(frame)); }
    void Set(unsigned frame, int32_t value) { elim->SetSampleValue(handle, Index(frame), value); }
};

uint32_t BufferSamples(const ProcessHandle& handle) {
    return handle.maxBufferSize / sizeof(int32_t);
}

uint32_t Writable(const ProcessHandle& handle, unsigned channel) {
    return popelim::WritableFrames(BufferSamples(handle), handle.channelCount, channel);
}

}  // namespace

ProcessHandle* FallingPopElim::CuttingEdgeFadeinoutInit(const ProcessConfig* config,
                                                        ProcessHandle* handle, const void* buffer,
                                                        const void* cache) {
    if (config == nullptr || handle == nullptr) {
        ORLUNE_LOGW(kTagPop, "Pointer is null");
        return nullptr;
    }
    if (!InitValidityCheck(config)) {
        ORLUNE_LOGE(kTagPop, "config is invalid, init failed");
        return nullptr;
    }
    handle->buffer = static_cast<int32_t*>(const_cast<void*>(buffer));
    handle->cache = static_cast<uint8_t*>(const_cast<void*>(cache));
    handle->channelCount = config->channelCount;
    handle->bitDepth = config->bitDepth;
    handle->maxBufferSize = config->bufferSize;
    handle->outputType = config->outputType;
    handle->format = config->format;
    handle->curBufferSize = config->bufferSize;
    handle->sampleRate = kInitialSampleRate;
    // A tenth of the block, rounded down to whole frames.
    const uint32_t frameBytes = config->channelCount * config->bitDepth;
    const uint32_t cacheSize = config->bufferSize / 10;
    handle->cacheSize = cacheSize - cacheSize % frameBytes;
    ORLUNE_LOGI(kTagPop,
                "%s succeed, cache size = %u, buffer size = %u, OutputType = %d, "
                "format = %d",
                "CuttingEdgeFadeinoutInit", handle->cacheSize, config->bufferSize,
                config->outputType, config->format);
    return handle;
}

bool FallingPopElim::InitValidityCheck(const ProcessConfig* config) {
    if (config == nullptr) {
        ORLUNE_LOGW(kTagPop, "Pointer is null");
        return false;
    }
    if (config->bufferSize < 1 || config->bufferSize > kMaxConfigBufferSize) {
        ORLUNE_LOGE(kTagPop, "Process buffer size is insufficient");
        return false;
    }
    if (config->channelCount != 1 && config->channelCount != 2) {
        ORLUNE_LOGE(kTagPop, "Invalid channel count");
        return false;
    }
    if (config->bitDepth != 4) {
        ORLUNE_LOGE(kTagPop, "Invalid sampling bit depth");
        return false;
    }
    return true;
}

bool FallingPopElim::ProcessValidityCheck(ProcessHandle* handle, unsigned size) {
    return handle != nullptr && size >= 1 && size <= handle->maxBufferSize &&
           handle->format == kFormatPcm32 && handle->channelCount == 2;
}

bool FallingPopElim::SampleRateCheck(ProcessHandle* handle, unsigned size, unsigned clearSize) {
    if (handle == nullptr) {
        return false;
    }
    const SampleRateRow* row = popelim::FindRateRow(gSampleRateTable, size);
    if (row == nullptr) {
        return false;
    }
    if (row->sampleRate == handle->sampleRate) {
        return true;
    }
    ORLUNE_LOGI(kTagPop, "Sample rate %u -> %u", handle->sampleRate, row->sampleRate);
    ClearCachedBuffer(handle, clearSize);
    handle->sampleRate = row->sampleRate;
    handle->curBufferSize = size;
    // Rounded up to whole 32-bit samples here, unlike the whole frames of initialisation.
    handle->cacheSize = (size / 10 + 3) & ~3u;
    ORLUNE_LOGI(kTagPop, "Buffer size %u, cache size %u", handle->curBufferSize, handle->cacheSize);
    return true;
}

int FallingPopElim::ClearCachedBuffer(ProcessHandle* handle, unsigned size) {
    if (handle == nullptr || handle->cache == nullptr) {
        ORLUNE_LOGE(kTagPop, "%s:Invalid input pointer", "ClearCachedBuffer");
        return -1000;  // the exported interface's code for a null handle or cache
    }
    // No cache this eliminator sets up is longer than a tenth of the largest block, so a larger
    // clear is refused rather than run past the caller's cache.
    if (memset_s(handle->cache, kPopCacheBytes, 0, size) != EOK) {
        return -1001;  // its code for a clear the cache cannot take
    }
    return 0;
}

int FallingPopElim::GetSampleValue(ProcessHandle* handle, unsigned index) {
    if (handle == nullptr || handle->buffer == nullptr) {
        return 0;
    }
    if (handle->format != kFormatPcm32) {
        ORLUNE_LOGW(kTagPop, "Unsupported audio format");
        return 0;
    }
    return index < BufferSamples(*handle) ? handle->buffer[index] : 0;
}

void FallingPopElim::SetSampleValue(ProcessHandle* handle, unsigned index, int value) {
    if (handle == nullptr || handle->buffer == nullptr) {
        return;
    }
    if (handle->format != kFormatPcm32) {
        ORLUNE_LOGW(kTagPop, "Unsupported audio format");
        return;
    }
    if (index < BufferSamples(*handle)) {
        handle->buffer[index] = value;
    }
}

unsigned FallingPopElim::FindRaisingEdge(ProcessHandle* handle, unsigned channel) {
    if (handle == nullptr) {
        return 0;
    }
    const uint32_t frames = popelim::FramesIn(*handle, handle->curBufferSize);
    return popelim::FindRaisingEdgeIn(CheckedSamples{this, handle, channel}, frames, channel);
}

void FallingPopElim::FadeIn(ProcessHandle* handle, unsigned size, unsigned pos, unsigned channel) {
    if (handle == nullptr) {
        return;
    }
    CheckedSamples samples{this, handle, channel};
    popelim::FadeInFrom(samples, *handle, size, pos, Writable(*handle, channel));
}

unsigned FallingPopElim::FindFallingEdge(ProcessHandle* handle, unsigned channel) {
    if (handle == nullptr) {
        return 0;
    }
    const uint32_t frames = popelim::FramesIn(*handle, handle->curBufferSize);
    return popelim::FindFallingEdgeIn(CheckedSamples{this, handle, channel}, frames, channel);
}

void FallingPopElim::FadeOut(ProcessHandle* handle, unsigned size, unsigned pos, unsigned channel) {
    if (handle == nullptr) {
        return;
    }
    CheckedSamples samples{this, handle, channel};
    popelim::FadeOutAt(samples, *handle, size, pos, Writable(*handle, channel));
}

int32_t* FallingPopElim::CuttingEdgeProcess(ProcessHandle* handle, const void* input, unsigned size,
                                            bool enable, unsigned clearSize) {
    if (!popelim::BlockPointersPresent(handle, input)) {
        return nullptr;
    }
    if (!ProcessValidityCheck(handle, size) || !SampleRateCheck(handle, size, clearSize)) {
        return nullptr;
    }
    return popelim::RunBlock(handle, input, size, enable, handle->maxBufferSize);
}
