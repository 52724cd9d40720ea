// What the effect's own log lines say about a block, read back into numbers: the edges the
// click remover found, the tuning it chose, the UI type and the detector's warnings.
#pragma once

#include <stdint.h>

struct EdgeLine {
    bool rising = false;
    unsigned pos = 0;  // frame within the 480-frame algorithm frame
    int value = 0;     // 16-bit level: the onset's (rising) or the level before the drop
    int channel = 0;
};
// "raising edge fade in, pos = P, value = V, channel = C" and its falling twin.
bool ParseEdgeLine(const char* message, EdgeLine* edge);

enum class TuningResult { Found, NoVirtualId, NoRecord };

struct TuningLine {
    bool headphone = false;
    int32_t virtualId = 0;  // headphones: from the logged mode key (config/VirtualIds.h)
    TuningResult result = TuningResult::Found;
    int32_t id = 0;  // with Found only
    int32_t extId = 0;
};
// "SPK NvMode is currentParamMode: ...", "HP do not find currentParamID ..." and the others.
bool ParseTuningLine(const char* message, TuningLine* tuning);

// The UI type in force from the set-up's lines: a mismatch line names the configuration's
// value, otherwise the device tree's value stands. False for other lines.
bool ParseUiTypeLine(const char* message, int* uiType);

// The stand-in detector's "loud output: peak P dBFS above limit L dBFS ..." warning.
bool ParseLoudLine(const char* message, float* peakDbfs, float* limitDbfs);
