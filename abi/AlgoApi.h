// Call shapes of the six entry points of the closed algorithm library "lib64orlune7_1.so".
// Every entry returns a status, 0 for success. The algorithm keeps its state in the memory
// that the instance lends it: three buffers in each half of the memory table.
#pragma once

#include <dlfcn.h>
#include <stdint.h>

#include "abi/AlgoRecords.h"
#include "abi/KivIoInfo.h"

constexpr const char* kAlgoLibName = "lib64orlune7_1.so";

// The memory lent to the algorithm, in bytes. Fixed sizes: the sizes its size query reports are
// only logged, and an algorithm that needs more is not supported.
constexpr int kAlgoMemBanks = 3;
constexpr int kAlgoMemSize0 = 20000;
constexpr int kAlgoMemSize1 = 420000;
constexpr int kAlgoMemSize2 = 150000;
constexpr int kAlgoParamAreaSize = 130000;  // third memory argument of Apply and SetPara
constexpr int kAlgoVersionBytes = 192;      // three texts of at most 64 bytes at 0, 64 and 128
constexpr int kAlgoSizeWords = 8;           // the size query fills the first four

extern "C" {
typedef int32_t (*AlgoInitFn)(void** memFirst, void** memSecond);
typedef int32_t (*AlgoApplyFn)(void** memFirst, void** memSecond, void* paramArea, KivIoInfo* io);
typedef int32_t (*AlgoSetParaFn)(void** memFirst, void* paramArea,
                                 const AudioOrluneMobilePara* para,
                                 const AudioOrluneMobileParaExt* ext);
typedef int32_t (*AlgoGetParaFn)(void** memFirst, void* paramArea, AudioOrluneMobilePara* para,
                                 AudioOrluneMobileParaExt* ext);
typedef int32_t (*AlgoGetVersionFn)(char* versions);
typedef int32_t (*AlgoGetSizeFn)(int32_t* sizes, KivIoInfo* io);
}

// The six entry points of an opened algorithm library, looked up by their exported names.
struct AlgoEntryPoints {
    AlgoInitFn init = nullptr;
    AlgoApplyFn apply = nullptr;
    AlgoSetParaFn setPara = nullptr;
    AlgoGetParaFn getPara = nullptr;
    AlgoGetVersionFn getVersion = nullptr;
    AlgoGetSizeFn getSize = nullptr;

    bool Complete() const { return init && apply && setPara && getPara && getVersion && getSize; }
};

inline AlgoEntryPoints FindAlgoEntryPoints(void* handle) {
    AlgoEntryPoints e;
    e.init = reinterpret_cast<AlgoInitFn>(dlsym(handle, "AudioOrluneMobileInit"));
    e.apply = reinterpret_cast<AlgoApplyFn>(dlsym(handle, "AudioOrluneMobileApply"));
    e.setPara = reinterpret_cast<AlgoSetParaFn>(dlsym(handle, "AudioOrluneMobileSetPara"));
    e.getPara = reinterpret_cast<AlgoGetParaFn>(dlsym(handle, "AudioOrluneMobileGetPara"));
    e.getVersion = reinterpret_cast<AlgoGetVersionFn>(dlsym(handle, "AudioOrluneMobileGetVersion"));
    e.getSize = reinterpret_cast<AlgoGetSizeFn>(dlsym(handle, "AudioOrluneMobileGetSize"));
    return e;
}
