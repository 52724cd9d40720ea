// Construction and destruction of the effect instance, and the host's enable flag.
#include "effect/orlune.h"

#include <string.h>
#include <unistd.h>

#include "base/Log.h"
#include "config/ConfigLoad.h"

std::atomic<uint32_t> Orlune::gInstanceNum{0};
std::atomic<bool> Orlune::gMapTableFlag{false};
std::atomic<int32_t> Orlune::gVolSteps{15};
std::atomic<bool> Orlune::gIsLoudMediaVolumeMode{false};
std::atomic<bool> Orlune::gMusicRegionEnable{false};
std::atomic<int32_t> Orlune::gEqLimitValue{200};
std::atomic<int32_t> Orlune::gVoiceEnhanceEnable{1};
std::atomic<bool> Orlune::gIsLoudRingVolumeMode{false};
std::atomic<bool> Orlune::gIsLoudMusicVolumeMode{false};
std::atomic<bool> Orlune::gIsLoudAlarmVolumeMode{false};
std::atomic<bool> Orlune::gIsAlarmMode{false};
std::atomic<int32_t> Orlune::lastSpkParamMode{-1};
std::atomic<int32_t> Orlune::lastHpParamMode{-1};
std::atomic<uint32_t> Orlune::gAudiodumpCount{0};
std::atomic<uint32_t> Orlune::sLogBlockCount{0};
std::atomic<uint32_t> Orlune::sLogEnableCount{0};

// The flags keep the width of the plain words they replace and need no lock on the targets.
static_assert(sizeof(std::atomic<bool>) == 1 && std::atomic<bool>::is_always_lock_free);
static_assert(sizeof(std::atomic<int32_t>) == 4 && std::atomic<int32_t>::is_always_lock_free);
static_assert(sizeof(std::atomic<uint32_t>) == 4 && std::atomic<uint32_t>::is_always_lock_free);

namespace {

// FallingPopElim has no state of its own; every instance reaches it through this one object.
FallingPopElim sPopElim;

constexpr uint32_t kDefaultVolumeDbBits = 0xc203ffedu;  // -32.999927 dB

}  // namespace

Orlune::Orlune() {
    // The member initialisers give the defaults of every member; the steps below are the ones
    // whose order matters to the platform and to the other instances.
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
        ConfigUpdate update;
        if (!gMapTableFlag) {
            PruneKeyZeroPlaceholders(update.Tables());
            gMapTableFlag = true;
        }
    }

    ORLUNE_LOGI(kTagMobile, "%s: Orlune instance init. %p, tid:%d", "Orlune",
                static_cast<void*>(this), static_cast<int>(gettid()));
    ++gInstanceNum;

    mLadInfoIn.clear();
    mLadInfoOut.clear();
    startStreamState = 3;
    stopStreamState = 3;
}

Orlune::~Orlune() {
    --gInstanceNum;
    CloseDumpFiles();
    mLadInfoOut.clear();
    mLadInfoIn.clear();
    pthread_mutex_destroy(&mMutex);
    // The detector bridge (which closes the detection library) and the usage aggregator are
    // members, destroyed after this body.
    // The algorithm library stays mapped for the life of the process. The tables mark
    // (mTablesInUse) unregisters itself and frees replaced tables nobody uses any more.
}

bool Orlune::GetProcessEnable() {
    return mProcessEnable;
}

void Orlune::SetProcessEnable(bool enable) {
    mProcessEnable = enable;
}
