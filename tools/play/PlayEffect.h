// The effect instance as orlune-play drives it: declared here, apart from the library's own
// headers, with the virtual slots in the order the platform's hosts use.
#pragma once

#include <string>

#include <system/audio.h>
#include <utils/String8.h>

class PlayEffect {
public:
    virtual ~PlayEffect() = 0;  // slots 0 and 1: the complete and deleting destructors
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
static_assert(sizeof(PlayEffect) == sizeof(void*) && alignof(PlayEffect) == alignof(void*),
              "the view is only the virtual table pointer");
static_assert(sizeof(void*) == 8 && sizeof(audio_format_t) == 4 &&
                      sizeof(android::String8) == sizeof(void*),
              "values crossing the slots");
