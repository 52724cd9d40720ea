#include "tools/play/EffectLines.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "config/VirtualIds.h"

namespace {

bool IntAfter(const char* text, const char* marker, long* value) {
    const char* at = strstr(text, marker);
    if (at == nullptr) {
        return false;
    }
    char* end = nullptr;
    *value = strtol(at + strlen(marker), &end, 10);
    return end != at + strlen(marker);
}

}  // namespace

bool ParseEdgeLine(const char* message, EdgeLine* edge) {
    unsigned pos = 0;
    int value = 0, channel = 0;
    if (sscanf(message, "raising edge fade in, pos = %u, value = %d, channel = %d", &pos, &value,
               &channel) == 3) {
        edge->rising = true;
    } else if (sscanf(message, "falling edge fade out, pos = %u, value = %d, channel = %d", &pos,
                      &value, &channel) == 3) {
        edge->rising = false;
    } else {
        return false;
    }
    edge->pos = pos;
    edge->value = value;
    edge->channel = channel;
    return true;
}

bool ParseTuningLine(const char* message, TuningLine* tuning) {
    const bool hp = strstr(message, "HP ") != nullptr;
    long mode = 0;
    if (!IntAfter(message, "currentParamMode: ", &mode) ||
        (!hp && strstr(message, "SPK ") == nullptr)) {
        return false;
    }
    tuning->headphone = hp;
    // The speaker id is compared and logged as 16 bits; the headphone line gives the mode key.
    tuning->virtualId =
            hp ? vid::HeadphoneIdOfKey(static_cast<int32_t>(mode)) : static_cast<int32_t>(mode);
    if (strstr(message, "NvMode is currentParamMode") != nullptr) {
        long id = 0, ext = 0;
        if (!IntAfter(message, "currentRealParamID: ", &id) ||
            !IntAfter(message, "currentRealParamExtID: ", &ext)) {
            return false;
        }
        tuning->result = TuningResult::Found;
        tuning->id = static_cast<int32_t>(id);
        tuning->extId = static_cast<int32_t>(ext);
        return true;
    }
    if (strstr(message, "do not find currentParamID") != nullptr) {
        tuning->result = TuningResult::NoVirtualId;
        return true;
    }
    if (strstr(message, "do not find currentRealParamID") != nullptr) {
        tuning->result = TuningResult::NoRecord;
        return true;
    }
    return false;
}

bool ParseUiTypeLine(const char* message, int* uiType) {
    int xml = 0, node = 0;
    if (sscanf(message, "xml ui type %d is diff from apk-dtsi ui type %d", &xml, &node) == 2) {
        *uiType = xml;
        return true;
    }
    if (sscanf(message, "kivUiType = %d", &node) == 1) {
        *uiType = node;
        return true;
    }
    return false;
}

bool ParseLoudLine(const char* message, float* peakDbfs, float* limitDbfs) {
    return sscanf(message, "loud output: peak %f dBFS above limit %f dBFS", peakDbfs, limitDbfs) ==
           2;
}
