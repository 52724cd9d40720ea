// Float and string parameters from the host: the host volume, the three stream volumes meant
// for the loud-output detector, the headset name and the list of playing applications.
#include <string.h>

#include <map>

#include "base/Log.h"
#include "effect/orlune.h"
#include "params/ParamIds.h"

namespace {

// Stores `value` into `field` when it differs, logging the new value first.
void StoreIfChanged(float& field, float value, const char* format) {
    if (value != field) {
        ORLUNE_LOGI(kTagMobile, format, value);
        field = value;
    }
}

}  // namespace

void Orlune::KivParamsSetFloat(int key, float value) {
    if (initialised == 0) {
        return;
    }
    InstanceLock lock(*this);
    if (key == kIdVolumeDb) {
        StoreIfChanged(volumeDb, value, "volumeDb = %f");
        return;
    }
    // The three stream volumes belong to the loud-detection report records of the current
    // set-up; without the first record there is nothing to compare with and nothing to hand
    // them to.
    if (mLadInfoIn == nullptr) {
        return;
    }
    switch (key) {
        case kIdMasterVolume:
            StoreIfChanged(masterVolume, value, "masterVolume = %f");
            break;
        case kIdTypeVolume:
            StoreIfChanged(typeVolume, value, "typeVolume = %f");
            break;
        case kIdClientVolume:
            StoreIfChanged(clientVolume, value, "clientVolume = %f");
            break;
        default:
            break;
    }
}

void Orlune::KivParamsSetString(int key, const std::string& value) {
    if (initialised == 0) {
        return;
    }
    if (key == kIdHeadsetName) {
        InstanceLock lock(*this);
        TablesPin tables(*this);
        auto it = Tables().gHpMapTable.find(value);
        if (it == Tables().gHpMapTable.end()) {
            ORLUNE_LOGW(kTagMobile, "SetString unknown headset name: %s, HP_TYPE stays %hd",
                        value.c_str(), HP_TYPE);
            return;
        }
        HP_TYPE = static_cast<int16_t>(it->second);
    } else if (key == kIdPlayingApps) {
        // Any run of blanks, commas and brackets separates two names; the last name is the
        // application that is playing now.
        std::map<int, android::String8> apps;
        std::string list = value;
        char* save = nullptr;
        int count = 0;
        for (char* token = strtok_r(list.data(), " ,[]", &save); token != nullptr;
             token = strtok_r(nullptr, " ,[]", &save)) {
            apps[++count] = android::String8(token);
        }
        if (count > 0) {
            const android::String8& playing = apps[count];
            // The detector reads the records during a block: the name lands between two.
            InstanceLock lock(*this);
            mLad.SetLadPlayAppName(mLadInfoIn, playing);
            mLad.SetLadPlayAppName(mLadInfoOut, playing);
        }
    } else {
        ORLUNE_LOGI(kTagMobile, "SetString Unsupport param: %d, value: %s", key, value.c_str());
    }
}
