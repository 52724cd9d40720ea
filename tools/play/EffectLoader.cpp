#include "tools/play/EffectLoader.h"

#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

PlayEffect::~PlayEffect() = default;

namespace {

std::string ProgramDir() {
    char path[PATH_MAX] = {};
    const ssize_t n = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (n <= 0) {
        return ".";
    }
    std::string exe(path, static_cast<size_t>(n));
    const size_t slash = exe.rfind('/');
    return slash == std::string::npos ? "." : exe.substr(0, slash);
}

bool Exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace

LoaderPaths DefaultLoaderPaths() {
    const std::string build = ProgramDir() + "/..";
    LoaderPaths paths;
    paths.effectLib = build + "/lib/liborlunemutilmobile7_1.so";
    paths.algoLib = build + "/standin/lib64orlune7_1.so";
    paths.detectLib = build + "/standin/liblouddetect.so";
    return paths;
}

bool EffectLoader::Open(const LoaderPaths& paths, std::string* error) {
    // An object loaded with RTLD_GLOBAL under a SONAME satisfies the effect's later dlopen of
    // that plain name, exactly as the device's copy in the library path would.
    if (!paths.algoLib.empty()) {
        if (dlopen(paths.algoLib.c_str(), RTLD_NOW | RTLD_GLOBAL) == nullptr) {
            *error = "cannot load the algorithm library " + paths.algoLib + ": " + dlerror();
            return false;
        }
        mAlgoLoaded = paths.algoLib;
    }
    if (!paths.detectLib.empty() && Exists(paths.detectLib)) {
        mDetect = dlopen(paths.detectLib.c_str(), RTLD_NOW | RTLD_GLOBAL);
        if (mDetect != nullptr) {
            mDetectLoaded = paths.detectLib;
        }
    }
    mEffect = dlopen(paths.effectLib.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (mEffect == nullptr) {
        *error = "cannot load the effect library " + paths.effectLib + ": " + dlerror();
        return false;
    }
    mGet = reinterpret_cast<void* (*)()>(dlsym(mEffect, "GetOrluneInstance"));
    mDelete = reinterpret_cast<void (*)(void*)>(dlsym(mEffect, "DeleteOrluneInstance"));
    if (mGet == nullptr || mDelete == nullptr) {
        *error = paths.effectLib + " lacks GetOrluneInstance or DeleteOrluneInstance";
        return false;
    }
    return true;
}

PlayEffect* EffectLoader::Create() const {
    return mGet != nullptr ? static_cast<PlayEffect*>(mGet()) : nullptr;
}

void EffectLoader::Delete(PlayEffect* effect) const {
    if (mDelete != nullptr && effect != nullptr) {
        mDelete(effect);
    }
}

void* EffectLoader::DetectSymbol(const char* name) const {
    return mDetect != nullptr ? dlsym(mDetect, name) : nullptr;
}
