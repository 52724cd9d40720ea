// Set-up of an instance for processing: binds the algorithm library, loads the process-wide
// configuration once, and prepares the algorithm, the pop eliminator and the sample buffers.
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <cutils/properties.h>

#include "effect/LogTags.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

void Orlune::KivOutProcPlayInit() {
    mIoInfo.frameLength = kAlgoFrame;
    mIoInfo.enable = 1;
    mIoInfo.inBuf = mIoBuffer;
    mIoInfo.outBuf = mIoBuffer;

    char value[PROPERTY_VALUE_MAX] = {};
    property_get("ro.config.kiv_moviemode", value, "false");
    mMovieMode = (strcmp(value, "true") == 0) ? 1 : 0;

    char steps[PROPERTY_VALUE_MAX] = {};
    property_get("ro.config.media_vol_steps", steps, "0");
    gVolSteps = atoi(steps);
    ORLUNE_LOGI("gVolSteps:%d, gIsLoudMediaVolumeMode = %d", gVolSteps, gIsLoudMediaVolumeMode);

    if (!LoadOrulneEffect()) {
        ORLUNE_LOGE("%s: load orlune effect fail.", "KivOutProcPlayInit");
        return;
    }

    char versions[kAlgoVersionBytes] = {};
    if (mAlgoGetVersion(versions) == 0) {
        versions[kAlgoVersionBytes - 1] = '\0';
        ORLUNE_LOGI("cgtVersion: %s, releaseVersion: %s, releaseDate: %s", versions, versions + 64,
                    versions + 128);
    }
}
