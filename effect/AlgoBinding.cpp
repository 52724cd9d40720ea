// Binding of the closed algorithm library's six entry points.
#include <dlfcn.h>

#include "base/Log.h"
#include "effect/orlune.h"

bool Orlune::LoadOrulneEffect() {
    static const char* const kFn = "LoadOrulneEffect";
    if (initialised == 1) {
        return true;
    }
    ORLUNE_LOGI(kTagMobile, "%s: load orlune Effect lib", kFn);
    void* handle = dlopen(kAlgoLibName, RTLD_LAZY);
    if (handle == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s: lib64orlune7_1.so open fail.", kFn);
        initialised = 0;
        return false;
    }
    mAlgoInit = reinterpret_cast<AlgoInitFn>(dlsym(handle, "AudioOrluneMobileInit"));
    mAlgoApply = reinterpret_cast<AlgoApplyFn>(dlsym(handle, "AudioOrluneMobileApply"));
    mAlgoSetPara = reinterpret_cast<AlgoSetParaFn>(dlsym(handle, "AudioOrluneMobileSetPara"));
    mAlgoGetPara = reinterpret_cast<AlgoGetParaFn>(dlsym(handle, "AudioOrluneMobileGetPara"));
    mAlgoGetVersion =
            reinterpret_cast<AlgoGetVersionFn>(dlsym(handle, "AudioOrluneMobileGetVersion"));
    mAlgoGetSize = reinterpret_cast<AlgoGetSizeFn>(dlsym(handle, "AudioOrluneMobileGetSize"));
    if (mAlgoInit != nullptr && mAlgoApply != nullptr && mAlgoSetPara != nullptr &&
        mAlgoGetPara != nullptr && mAlgoGetVersion != nullptr && mAlgoGetSize != nullptr) {
        initialised = 1;
        ORLUNE_LOGI(kTagMobile, "%s %d: Load orlune algo lib OK.", kFn, 1075);
        // The handle is deliberately not kept: the library stays mapped for the process.
        return true;
    }
    ORLUNE_LOGE(kTagMobile, "%s: Orlune load function symbol failed.", kFn);
    initialised = 0;
    dlclose(handle);
    // Nothing may call into the closed handle, even by mistake.
    mAlgoInit = nullptr;
    mAlgoApply = nullptr;
    mAlgoSetPara = nullptr;
    mAlgoGetPara = nullptr;
    mAlgoGetVersion = nullptr;
    mAlgoGetSize = nullptr;
    return false;
}
