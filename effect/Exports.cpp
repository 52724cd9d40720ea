// The factory that the platform's audio path calls to create and delete effect instances.

#include "base/Export.h"
#include "base/Log.h"
#include "effect/orlune.h"

ORLUNE_EXPORT void* GetOrluneInstance() {
    ORLUNE_LOGD(kTagMobile, "GetOrluneInstance");
    return new Orlune();
}

ORLUNE_EXPORT void DeleteOrluneInstance(void* instance) {
    ORLUNE_LOGD(kTagMobile, "DeleteOrluneInstance");
    if (instance == nullptr) {
        return;
    }
    // The deleting destructor, reached through the virtual table as any host would.
    delete static_cast<Orlune*>(instance);
}
