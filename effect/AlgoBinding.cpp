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
    const AlgoEntryPoints algo = FindAlgoEntryPoints(handle);
    if (algo.Complete()) {
        mAlgoInit = algo.init;
        mAlgoApply = algo.apply;
        mAlgoSetPara = algo.setPara;
        mAlgoGetPara = algo.getPara;
        mAlgoGetVersion = algo.getVersion;
        mAlgoGetSize = algo.getSize;
        initialised = 1;
        ORLUNE_LOGI(kTagMobile, "%s %d: Load orlune algo lib OK.", kFn, 1075);
        // The handle is deliberately not kept: the library stays mapped for the process.
        return true;
    }
    ORLUNE_LOGE(kTagMobile, "%s: Orlune load function symbol failed.", kFn);
    initialised = 0;
    dlclose(handle);  // no member points into it: they are set only when all six are found
    return false;
}
