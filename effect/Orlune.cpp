// Construction and destruction of the effect instance, and the host's enable flag.
#include "effect/orlune.h"

#include <string.h>
#include <unistd.h>

#include "effect/LogTags.h"

uint32_t Orlune::gInstanceNum = 0;
bool Orlune::gMapTableFlag = false;
int32_t Orlune::gVolSteps = 15;
bool Orlune::gIsLoudMediaVolumeMode = false;
bool Orlune::gMusicRegionEnable = false;
int32_t Orlune::gEqLimitValue = 200;
int32_t Orlune::gVoiceEnhanceEnable = 1;
bool Orlune::gIsLoudRingVolumeMode = false;
bool Orlune::gIsLoudMusicVolumeMode = false;
bool Orlune::gIsLoudAlarmVolumeMode = false;
bool Orlune::gIsAlarmMode = false;
int32_t Orlune::lastSpkParamMode = -1;
int32_t Orlune::lastHpParamMode = -1;
uint32_t Orlune::gAudiodumpCount = 0;
uint32_t Orlune::sLogBlockCount = 0;
uint32_t Orlune::sLogEnableCount = 0;

namespace {

// FallingPopElim has no state of its own; every instance reaches it through this one object.
FallingPopElim sPopElim;

constexpr uint32_t kDefaultVolumeDbBits = 0xc203ffedu;  // -32.999927 dB

}  // namespace

Orlune::Orlune() {
    // The member initialisers give the defaults of every member; the steps below are the ones
    // whose order matters to the platform and to the other instances.
    memset(mPopBuffer, 0, sizeof(mPopBuffer));
    memset(mPopCache, 0, sizeof(mPopCache));
    mPopElim = &sPopElim;

    mAlgoMemTable[0] = mAlgoMem0A;
    mAlgoMemTable[1] = mAlgoMem1A;
    mAlgoMemTable[2] = mAlgoMem2A;
    mAlgoMemTable[3] = mAlgoMem0B;
    mAlgoMemTable[4] = mAlgoMem1B;
    mAlgoMemTable[5] = mAlgoMem2B;

    pthread_mutex_init(&mMutex, nullptr);

    memcpy(&volumeDb, &kDefaultVolumeDbBits, sizeof(volumeDb));
    memset(&mIoInfo, 0, sizeof(mIoInfo));

    // The key-0 placeholders let a lookup succeed before any instance exists; the first
    // instance removes them so that only configured ids resolve from then on.
    if (!gMapTableFlag) {
        gVituralMapTable.erase(0);
        gRealMapTable.erase(0);
        gRealMapTableExt.erase(0);
        gMapTableFlag = true;
    }

    ORLUNE_LOGI("%s: Orlune instance init. %p, tid:%d", "Orlune", static_cast<void*>(this),
                static_cast<int>(gettid()));
    ++gInstanceNum;

    mLadInfoIn.clear();
    mLadInfoOut.clear();
    startStreamState = 3;
    stopStreamState = 3;
}

Orlune::~Orlune() {
    --gInstanceNum;
    mLadInfoOut.clear();
    mLadInfoIn.clear();
    pthread_mutex_destroy(&mMutex);
    // The detector bridge (which closes the detection library) and the usage aggregator are
    // members, destroyed after this body.
    // The algorithm library stays mapped for the life of the process.
}

bool Orlune::GetProcessEnable() {
    return mProcessEnable;
}

void Orlune::SetProcessEnable(bool enable) {
    mProcessEnable = enable;
}
