// Removes clicks at abrupt onsets out of, and drops into, near-silence in a 32-bit stereo
// stream: the stream is delayed by a short cache, each channel is searched for a raising and a
// falling edge, and each edge found is softened with a linear gain ramp.
#pragma once

#include "popelim/ProcessTypes.h"

class FallingPopElim {
public:
    ProcessHandle* CuttingEdgeFadeinoutInit(const ProcessConfig* config, ProcessHandle* handle,
                                            const void* buffer, const void* cache);
    bool InitValidityCheck(const ProcessConfig* config);
    bool ProcessValidityCheck(ProcessHandle* handle, unsigned size);
    bool SampleRateCheck(ProcessHandle* handle, unsigned size, unsigned clearSize);
    int ClearCachedBuffer(ProcessHandle* handle, unsigned size);
    int GetSampleValue(ProcessHandle* handle, unsigned index);
    void SetSampleValue(ProcessHandle* handle, unsigned index, int value);
    unsigned FindRaisingEdge(ProcessHandle* handle, unsigned channel);
    void FadeIn(ProcessHandle* handle, unsigned size, unsigned pos, unsigned channel);
    unsigned FindFallingEdge(ProcessHandle* handle, unsigned channel);
    void FadeOut(ProcessHandle* handle, unsigned size, unsigned pos, unsigned channel);
    // Returns the handle's work buffer holding the processed block, or null.
    int32_t* CuttingEdgeProcess(ProcessHandle* handle, const void* input, unsigned size,
                                bool enable, unsigned clearSize);
};

// Block sizes the class accepts, with their sample rates.
extern const SampleRateRow gSampleRateTable[1];
