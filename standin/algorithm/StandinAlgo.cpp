#include "standin/algorithm/StandinAlgo.h"

#include <stdlib.h>
#include <string.h>

#include "abi/AlgoApi.h"

#define STANDIN_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr uint32_t kMagic = 0x53544e44u;  // "STND"

// The code that ORLUNE_STANDIN_FAIL asks `entry` to return, or 0.
int32_t InjectedFault(const char* entry) {
    const char* faults = getenv("ORLUNE_STANDIN_FAIL");
    if (faults == nullptr) {
        return 0;
    }
    const size_t len = strlen(entry);
    for (const char* p = faults; *p != '\0';) {
        if (strncmp(p, entry, len) == 0 && p[len] == '=') {
            return static_cast<int32_t>(strtol(p + len + 1, nullptr, 10));
        }
        const char* comma = strchr(p, ',');
        if (comma == nullptr) {
            break;
        }
        p = comma + 1;
    }
    return 0;
}

StandinState* State(void** memFirst) {
    return static_cast<StandinState*>(memFirst[0]);
}

int32_t ClampQ12(int32_t offset) {
    const int32_t v = kStandinUnityQ12 + offset;
    return v < 0 ? 0 : (v > 4 * kStandinUnityQ12 ? 4 * kStandinUnityQ12 : v);
}

int32_t Saturate(int64_t v) {
    return v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : static_cast<int32_t>(v));
}

// Applies width to the side signal and gain to both channels of one stereo pair.
void Tune(int64_t l, int64_t r, int32_t gainQ12, int32_t widthQ12, int32_t* outL, int32_t* outR) {
    const int64_t mid = (l + r) / 2;
    const int64_t side = ((l - r) / 2) * widthQ12 / kStandinUnityQ12;
    *outL = Saturate((mid + side) * gainQ12 / kStandinUnityQ12);
    *outR = Saturate((mid - side) * gainQ12 / kStandinUnityQ12);
}

}  // namespace

STANDIN_EXPORT int32_t AudioOrluneMobileInit(void** memFirst, void** /*memSecond*/) {
    if (int32_t fault = InjectedFault("Init")) {
        return fault;
    }
    StandinState* s = State(memFirst);
    const uint32_t inits = s->magic == kMagic ? s->initCount : 0;
    memset(s, 0, sizeof(*s));
    s->magic = kMagic;
    s->gainQ12 = kStandinUnityQ12;
    s->widthQ12 = kStandinUnityQ12;
    s->initCount = inits + 1;
    return 0;
}

STANDIN_EXPORT int32_t AudioOrluneMobileSetPara(void** memFirst, void* /*paramArea*/,
                                                const AudioOrluneMobilePara* para,
                                                const AudioOrluneMobileParaExt* ext) {
    if (int32_t fault = InjectedFault("SetPara")) {
        return fault;
    }
    StandinState* s = State(memFirst);
    if (s->magic != kMagic || para == nullptr || ext == nullptr) {
        return kStandinNotInitialised;
    }
    s->gainQ12 = ClampQ12(para->words[kStandinGainWord]);
    s->widthQ12 = ClampQ12(ext->words[kStandinWidthWord]);
    ++s->setParaCount;
    return 0;
}

STANDIN_EXPORT int32_t AudioOrluneMobileApply(void** memFirst, void** /*memSecond*/,
                                              void* /*paramArea*/, KivIoInfo* io) {
    if (int32_t fault = InjectedFault("Apply")) {
        return fault;
    }
    StandinState* s = State(memFirst);
    if (s->magic != kMagic) {
        return kStandinNotInitialised;
    }
    ++s->applyCount;
    const int32_t gain = io->enable ? s->gainQ12 : kStandinUnityQ12;
    const int32_t width = io->enable ? s->widthQ12 : kStandinUnityQ12;
    int32_t* buf = io->inBuf;
    const int frames = io->frameLength;
    const int in = io->inChannels;
    if (in == 2 && io->outChannels == 4) {
        // Widening in place: walk backwards so no frame is overwritten before it is read.
        for (int i = frames - 1; i >= 0; --i) {
            int32_t l, r;
            Tune(buf[2 * i], buf[2 * i + 1], gain, width, &l, &r);
            buf[4 * i] = l;
            buf[4 * i + 1] = r;
            buf[4 * i + 2] = Saturate((int64_t{l} + r) / 2);
            buf[4 * i + 3] = Saturate((int64_t{l} - r) / 2);
        }
        return 0;
    }
    if (in == 2) {
        for (int i = 0; i < frames; ++i) {
            Tune(buf[2 * i], buf[2 * i + 1], gain, width, &buf[2 * i], &buf[2 * i + 1]);
        }
        return 0;
    }
    if (in < 2) {
        return -1;
    }
    // Multichannel: fold to one stereo pair per frame. Frame i is read before pair i is
    // written, and pair i never reaches a later frame's samples.
    const int half = in / 2;
    for (int i = 0; i < frames; ++i) {
        int64_t l = 0, r = 0;
        for (int c = 0; c < 2 * half; c += 2) {
            l += buf[i * in + c];
            r += buf[i * in + c + 1];
        }
        Tune(l / half, r / half, gain, width, &buf[2 * i], &buf[2 * i + 1]);
    }
    return 0;
}

#ifndef STANDIN_WITHOUT_GETPARA
STANDIN_EXPORT int32_t AudioOrluneMobileGetPara(void** /*memFirst*/, void* /*paramArea*/,
                                                AudioOrluneMobilePara* /*para*/,
                                                AudioOrluneMobileParaExt* /*ext*/) {
    return 0;
}
#endif

STANDIN_EXPORT int32_t AudioOrluneMobileGetVersion(char* versions) {
    if (int32_t fault = InjectedFault("GetVersion")) {
        return fault;
    }
    strncpy(versions, "standin-cc 12.2", 63);
    strncpy(versions + 64, "standin 1.0.0", 63);
    strncpy(versions + 128, "2026-11-21", 63);
    return 0;
}

STANDIN_EXPORT int32_t AudioOrluneMobileGetSize(int32_t* sizes, KivIoInfo* /*io*/) {
    if (int32_t fault = InjectedFault("GetSize")) {
        return fault;
    }
    sizes[0] = static_cast<int32_t>(sizeof(StandinState));
    sizes[1] = 0;
    sizes[2] = 0;
    sizes[3] = 0;
    return 0;
}
