// Host stand-in of the algorithm library that does nothing: the six entry points accept every
// call and leave the frame as it is. Benchmarks bind it to measure the effect's own share of a
// block, without any signal processing. Host only; never shipped.
#include <stdint.h>

#include "abi/AlgoApi.h"

#define NULLALGO_EXPORT extern "C" __attribute__((visibility("default")))

NULLALGO_EXPORT int32_t AudioOrluneMobileInit(void** /*memFirst*/, void** /*memSecond*/) {
    return 0;
}

NULLALGO_EXPORT int32_t AudioOrluneMobileSetPara(void** /*memFirst*/, void* /*paramArea*/,
                                                 const AudioOrluneMobilePara* /*para*/,
                                                 const AudioOrluneMobileParaExt* /*ext*/) {
    return 0;
}

NULLALGO_EXPORT int32_t AudioOrluneMobileApply(void** /*memFirst*/, void** /*memSecond*/,
                                               void* /*paramArea*/, KivIoInfo* /*io*/) {
    return 0;
}

NULLALGO_EXPORT int32_t AudioOrluneMobileGetPara(void** /*memFirst*/, void* /*paramArea*/,
                                                 AudioOrluneMobilePara* /*para*/,
                                                 AudioOrluneMobileParaExt* /*ext*/) {
    return 0;
}

NULLALGO_EXPORT int32_t AudioOrluneMobileGetVersion(char* versions) {
    versions[0] = '\0';
    versions[64] = '\0';
    versions[128] = '\0';
    return 0;
}

NULLALGO_EXPORT int32_t AudioOrluneMobileGetSize(int32_t* sizes, KivIoInfo* /*io*/) {
    sizes[0] = 0;
    sizes[1] = 0;
    sizes[2] = 0;
    sizes[3] = 0;
    return 0;
}
