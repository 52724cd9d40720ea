// The pop eliminator as plain exported functions, for modules of the host process that hold no
// FallingPopElim. All callers share one stream state inside the library: the handle returned
// by CuttingEdgeFadeinoutInit, with a 3840-byte work buffer and a 384-byte cache.
#pragma once

#include <stdint.h>

#include "popelim/ProcessTypes.h"

extern "C" {

// Validates `config` and (re)initialises the shared handle; returns it, or null.
ProcessHandle* CuttingEdgeFadeinoutInit(const ProcessConfig* config);

// Zeroes the 384 bytes of the handle's cache: 0, or -1000 for a missing handle or cache, or
// -1001 when the fill fails.
int ClearCachedBuffer(ProcessHandle* handle);

// Runs one block of 3840 or 1536 bytes; returns the handle's work buffer holding the block
// delayed by the cache and with its edges faded, or null.
int32_t* CuttingEdgeProcess(ProcessHandle* handle, const void* input, unsigned size, bool enable);

}  // extern "C"
