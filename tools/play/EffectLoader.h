// Loads the effect library the way the platform does (dlopen, then the two exported factory
// functions) after preloading the host stand-ins of the closed libraries it opens by name.
#pragma once

#include <string>

#include "tools/play/PlayEffect.h"

struct LoaderPaths {
    std::string effectLib;  // liborlunemutilmobile7_1.so
    std::string algoLib;    // preloaded as lib64orlune7_1.so; empty: none
    std::string detectLib;  // preloaded as liblouddetect.so; empty: none
};

// Paths next to the running program: <build>/lib and <build>/standin.
LoaderPaths DefaultLoaderPaths();

class EffectLoader {
public:
    // Preloads the stand-ins (a missing detector is skipped quietly, a missing algorithm is
    // an error) and opens the effect library. On failure `error` says why.
    bool Open(const LoaderPaths& paths, std::string* error);
    PlayEffect* Create() const;
    void Delete(PlayEffect* effect) const;

    const std::string& AlgoLoaded() const { return mAlgoLoaded; }
    const std::string& DetectLoaded() const { return mDetectLoaded; }
    // A symbol of the preloaded detection library, or null.
    void* DetectSymbol(const char* name) const;

private:
    void* mEffect = nullptr;
    void* mDetect = nullptr;
    void* (*mGet)() = nullptr;
    void (*mDelete)(void*) = nullptr;
    std::string mAlgoLoaded;
    std::string mDetectLoaded;
};
