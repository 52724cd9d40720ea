#include "tests/support/HostEffect.h"

#include <dlfcn.h>

HostOrlune::~HostOrlune() = default;

HostLibrary::HostLibrary() {
    mHandle = dlopen(ORLUNE_LIB_PATH, RTLD_NOW | RTLD_LOCAL);
    if (mHandle != nullptr) {
        mGet = reinterpret_cast<void* (*)()>(dlsym(mHandle, "GetOrluneInstance"));
        mDelete = reinterpret_cast<void (*)(void*)>(dlsym(mHandle, "DeleteOrluneInstance"));
    }
}

HostOrlune* HostLibrary::Create() const {
    return mGet != nullptr ? static_cast<HostOrlune*>(mGet()) : nullptr;
}

void HostLibrary::Delete(void* instance) const {
    if (mDelete != nullptr) {
        mDelete(instance);
    }
}

void* PreloadStandin(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
}

std::string StandinPath(const std::string& relative) {
    return std::string(ORLUNE_STANDIN_DIR) + "/" + relative;
}

bool IsLoaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    return handle != nullptr && dlclose(handle) == 0;
}
