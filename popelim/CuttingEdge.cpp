#include "popelim/CuttingEdge.h"

#include "base/Export.h"
#include "base/Log.h"
#include "popelim/FallingPopElim.h"
#include "popelim/PopElimBlock.h"

namespace {

// The stream state that every caller of the exported functions shares.
ProcessHandle gCuttingEdgeHandle = {};
int32_t gCuttingEdgeBuffer[kPopBlockBytes / sizeof(int32_t)];
uint8_t gCuttingEdgeCache[kPopCacheBytes];

// Block sizes accepted here, with their sample rates: 10 ms and 4 ms of 32-bit stereo at 48 kHz.
const SampleRateRow gCuttingEdgeRateTable[2] = {{kPopBlockBytes, 48000}, {1536, 48000}};

FallingPopElim gCuttingEdgeElim;

// The table's rate for a block of `size` bytes; on a change of rate the cache is emptied and
// resized for the new block. False for a size that is not in the table.
bool CheckRate(ProcessHandle* handle, unsigned size) {
    const SampleRateRow* row = popelim::FindRateRow(gCuttingEdgeRateTable, size);
    if (row == nullptr) {
        return false;
    }
    if (row->sampleRate == handle->sampleRate) {
        return true;
    }
    ORLUNE_LOGI(kTagPop, "Sample rate %u -> %u", handle->sampleRate, row->sampleRate);
    ClearCachedBuffer(handle);
    handle->sampleRate = row->sampleRate;
    handle->curBufferSize = size;
    handle->cacheSize = ((size & 0xFFFFu) / 10 + 3) & ~3u;
    ORLUNE_LOGI(kTagPop, "Buffer size %u, cache size %u", handle->curBufferSize, handle->cacheSize);
    return true;
}

}  // namespace

ORLUNE_EXPORT ProcessHandle* CuttingEdgeFadeinoutInit(const ProcessConfig* config) {
    return gCuttingEdgeElim.CuttingEdgeFadeinoutInit(config, &gCuttingEdgeHandle,
                                                     gCuttingEdgeBuffer, gCuttingEdgeCache);
}

ORLUNE_EXPORT int ClearCachedBuffer(ProcessHandle* handle) {
    return gCuttingEdgeElim.ClearCachedBuffer(handle, kPopCacheBytes);
}

ORLUNE_EXPORT int32_t* CuttingEdgeProcess(ProcessHandle* handle, const void* input, unsigned size,
                                          bool enable) {
    if (!popelim::BlockPointersPresent(handle, input)) {
        return nullptr;
    }
    if (!gCuttingEdgeElim.ProcessValidityCheck(handle, size) || !CheckRate(handle, size)) {
        return nullptr;
    }
    // After a 3840-byte initialisation a 1536-byte block is searched over the 480 frames of the
    // stored size, and an edge found past the block's 192 frames gets a fade that the unsigned
    // end rule stretches far past the block. Such fades are bounded by the end of the shared
    // work buffer: the frames in it keep the ramp's slope, writes beyond it are dropped.
    return popelim::RunBlock(handle, input, size, enable, sizeof(gCuttingEdgeBuffer));
}
