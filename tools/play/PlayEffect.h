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
