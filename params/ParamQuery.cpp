// Answers the host's parameter queries from the recorded state: a few whole-string keys, and
// otherwise a key=value list whose reply holds the requested headphone fields.
#include <string.h>

#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

const char* EqKey(int band) {
    static const char* const kKeys[11] = {"HP_EQ1", "HP_EQ2",  "HP_EQ3", "HP_EQ4",
                                          "HP_EQ5", "HP_EQ6",  "HP_EQ7", "HP_EQ8",
                                          "HP_EQ9", "HP_EQ10", "HP_EQ11"};
    return kKeys[band];
}

const char* LoudModeReply(bool on, const char* message) {
    if (on) {
        ORLUNE_LOGI(kTagMobile, "%s", message);
        return "true";
    }
    return "false";
}

}  // namespace

android::String8 Orlune::KivParamsGet(const android::String8& keys) {
    const char* request = keys.c_str();
    if (strcmp(request, "EFFECT_ENABLE_STATE") == 0) {
        bool off;
        {
            InstanceLock lock(*this);
            TablesPin tables(*this);
            if (Tables().gUiType != 0) {
                off = hpModeIndex == HP_3D_OFF || hpModeIndex == HP_GAME;
            } else {
                off = HP_MODE == 2 || (HP_MODE == 0 && HP_SMART_MODE == 1);
            }
        }
        return android::String8(off ? "0" : "1");
    }
    if (strcmp(request, "CHANNEL_SWAPPED") == 0) {
        bool swapped;
        {
            InstanceLock lock(*this);
            swapped = channelSwapped != 0;
            channelSwapped = 0;
        }
        return android::String8(swapped ? "CHANNEL_SWAPPED=true" : "CHANNEL_SWAPPED=false");
    }
    if (strcmp(request, "FULL_SCENE_LVM_Enable_MUSIC") == 0) {
        return android::String8(LoudModeReply(gIsLoudMusicVolumeMode,
                                              "media get param gIsLoudMusicVolumeMode is true"));
    }
    if (strcmp(request, "FULL_SCENE_LVM_Enable_RING") == 0) {
        return android::String8(LoudModeReply(gIsLoudRingVolumeMode,
                                              "ring get param gIsLoudRingVolumeMode is true"));
    }
    if (strcmp(request, "FULL_SCENE_LVM_Enable_ALARM") == 0) {
        return android::String8(LoudModeReply(gIsLoudAlarmVolumeMode,
                                              "alarm get param gIsLoudAlarmVolumeMode is true"));
    }

    // The reply is built from one consistent copy of the fields, taken between two blocks.
    struct Fields {
        int32_t stereoWidenEnable;
        int16_t type, spkMode, mode3d, eq[11], pregain, mode, smartMode;
    } f;
    {
        InstanceLock lock(*this);
        f.stereoWidenEnable = stereoWidenEnable;
        f.type = HP_TYPE;
        f.spkMode = SPK_MODE;
        f.mode3d = HP_3D_MODE;
        memcpy(f.eq, HP_EQ, sizeof(f.eq));
        f.pregain = HP_PREGAIN;
        f.mode = HP_MODE;
        f.smartMode = HP_SMART_MODE;
    }
    android::AudioParameter param(keys);
    android::AudioParameter reply;
    android::String8 unused;
    if (param.get(android::String8("HIFIPARA"), unused) == android::NO_ERROR) {
        reply.add(android::String8("HIFIPARA"),
                  android::String8(f.stereoWidenEnable == 1 ? "STEREOWIDEN_Enable=true"
                                                            : "STEREOWIDEN_Enable=false"));
    }
    KivParamsGetCharactor(param, reply, "HP_TYPE", &f.type);
    KivParamsGetCharactor(param, reply, "SPK_MODE", &f.spkMode);
    KivParamsGetCharactor(param, reply, "HP_3D_MODE", &f.mode3d);
    for (int band = 0; band < 11; ++band) {
        KivParamsGetCharactor(param, reply, EqKey(band), &f.eq[band]);
    }
    KivParamsGetCharactor(param, reply, "HP_PREGAIN", &f.pregain);
    KivParamsGetCharactor(param, reply, "HP_MODE", &f.mode);
    KivParamsGetCharactor(param, reply, "HP_SMART_MODE", &f.smartMode);
    return reply.toString();
}

// Adds `key` with the field's value printed as "%f" when the request names the key.
void Orlune::KivParamsGetCharactor(android::AudioParameter& request, android::AudioParameter& reply,
                                   const char* key, const int16_t* field) {
    android::String8 unused;
    if (request.get(android::String8(key), unused) != android::NO_ERROR) {
        return;
    }
    char text[32] = {};
    if (sprintf_s(text, sizeof(text), "%f", static_cast<double>(*field)) < 0) {
        ORLUNE_LOGE(kTagMobile, "sprintf_s failed");
    }
    reply.add(android::String8(key), android::String8(text));
}
