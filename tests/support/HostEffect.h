// The effect as an outside host meets it: the shipped library loaded with dlopen, instances
// created through the exported factory and driven through an interface declared here, apart
// from the product's own headers, with the same virtual slot order.
#pragma once

#include <string>

#include <system/audio.h>
#include <utils/String8.h>

class HostOrlune {
public:
    virtual ~HostOrlune() = 0;  // slots 0 and 1: the complete and deleting destructors
    virtual void KivOutProcPlayInit() = 0;
    virtual void KivParamsSetInt(int key, int value) = 0;
    virtual void KivParamsSetFloat(int key, float value) = 0;
    virtual void KivParamsSetString(int key, const std::string& value) = 0;
    virtual android::String8 KivParamsGet(const android::String8& keys) = 0;
    virtual void KivOutProcPlaySamples(short* buffer, int frames, int channels,
                                       audio_format_t format) = 0;
    virtual bool GetProcessEnable() = 0;
    virtual void SetProcessEnable(bool enable) = 0;
};
// An instance is reached only through its virtual table pointer, one code pointer per slot, and
// what crosses the slots keeps its width on every 64-bit target (String8 is one pointer,
// returned by value).
static_assert(sizeof(HostOrlune) == sizeof(void*) && alignof(HostOrlune) == alignof(void*),
              "the view is only the virtual table pointer");
static_assert(sizeof(void*) == 8 && sizeof(audio_format_t) == 4 &&
                      sizeof(android::String8) == sizeof(void*),
              "values crossing the slots");

// Loads build/lib/liborlunemutilmobile7_1.so and resolves its exports. The library stays
// loaded: instances may still be referenced by a failing test.
class HostLibrary {
public:
    HostLibrary();
    bool Loaded() const { return mHandle != nullptr; }
    HostOrlune* Create() const;
    void Delete(void* instance) const;

private:
    void* mHandle = nullptr;
    void* (*mGet)() = nullptr;
    void (*mDelete)(void*) = nullptr;
};

// Makes the effect's dlopen of a closed library by its plain name find the stand-in at
// `path` (an already loaded object with that SONAME is reused). Returns the handle.
void* PreloadStandin(const std::string& path);
std::string StandinPath(const std::string& relative);  // under build/standin
// Whether the object at `path` is mapped in the process.
bool IsLoaded(const std::string& path);
