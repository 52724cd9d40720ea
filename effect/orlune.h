// The effect instance as the platform's audio path sees it: one Orlune per output stream,
// created and deleted through the exported factory and driven through the virtual slots below
// (the slot order is the host interface and must not change). Every buffer is held inline, so
// an instance is exactly one allocation and processing never allocates.
//
// Threading contract
// - Threads: the host's audio thread calls KivOutProcPlaySamples once per block (about every
//   10 ms), one block at a time per instance. Parameter threads call KivParamsSetInt, -Float,
//   -String and KivParamsGet at any moment, also while a block runs. The control thread
//   creates, sets up (KivOutProcPlayInit) and deletes instances and may reload the
//   configuration (kIdReloadConfig), switch the dumps (kIdPcmDump) or the region
//   (kIdMusicRegion). An instance is not
//   deleted while any of its calls runs, and is set up on one thread at a time.
// - Per instance: mMutex, the instance lock, is held by the audio thread for the whole block
//   and by every other call for the part that reads or changes the instance. So a parameter
//   change, a dump switch or a re-run of set-up takes effect between two blocks, never in the
//   middle of one. Holders of the instance lock never read, open or close files while holding
//   it: dump files are opened before they are handed to the block and closed after they were
//   taken from it. Init, Apply and SetPara of the algorithm are called with the lock held.
// - Shared by all instances: the parameter tables (gVituralMapTable, gRealMapTable,
//   gRealMapTableExt, gHpMapTable, the headphone-type rows, the UI type) as one immutable set
//   (config/ParamTableSet.h). A load builds the next set beside it under ConfigLoadLock and
//   publishes it in one step; a block keeps the set it started with. The binary tables are
//   written once, by the first load, before any record points into them. The process-wide
//   flags and counters below are atomics.
// - Lock order: ConfigLoadLock, then mDumpLock, then mMutex, then the detector bridge's lock or
//   the table registry's lock.
// - What may block: parameter and control calls may wait for a block of their instance and for
//   a load in progress (which reads files). The audio thread waits only for mMutex, whose
//   holders do no file I/O; it never waits for a load, never frees shared tables, and allocates
//   nothing in steady state.
#pragma once

#include <pthread.h>
#include <stdint.h>
#include <stdio.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>

#include <media/AudioParameter.h>
#include <system/audio.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include "config/NameLists.h"
#include "config/ParamRecords.h"
#include "config/ParamTableSet.h"
#include "abi/AlgoApi.h"
#include "abi/KivIoInfo.h"
#include "events/OrluneEvent.h"
#include "abi/LadReportInfo.h"
#include "lad/LoudAbnormalDetecter.h"
#include "popelim/FallingPopElim.h"
#include "popelim/ProcessTypes.h"

// The four PCM dump taps, in pipeline order.
enum DumpHandle {
    DUMP_HANDLE_IN = 0,   // the block's input as received
    DUMP_ALGO_IN = 1,     // one algorithm frame before Apply
    DUMP_ALGO_OUT = 2,    // the same frame after Apply
    DUMP_HANDLE_OUT = 3,  // the samples handed back
    DUMP_HANDLE_COUNT = 4,
};

// Inline 32-bit sample buffers: the input cache holds 16 ten-channel algorithm frames, the
// output buffer twice as much; the algorithm's in-place buffer holds one ten-channel frame.
constexpr int kInputCacheSamples = 76800;
constexpr int kOutputBufferSamples = 153600;
constexpr int kIoBufferSamples = kAlgoFrame * 10;
// Volume thresholds of the main XML (ID 30160): a switch word, then six scene rows of
// kThresholdsPerScene thresholds, which split the volume into seven levels.
constexpr int kVolumeThrRawWords = 37;
// Headset-type words of the main XML (IDs 30181, 30182): one row of 16 words per headset type.
constexpr int kHpTypeRows = 18;
constexpr int kHpTypeRowWords = 16;
static_assert(kHpTypeRows * kHpTypeRowWords == kHpTypeWords, "the rows cover the type words");
constexpr int kThresholdsPerScene = 6;
constexpr int kNoHeadsetTypeChange = 10;  // wiredHeadsetType value that keeps the record's type

class Orlune {
public:
    Orlune();

    // Host interface, in virtual slot order.
    virtual ~Orlune();
    virtual void KivOutProcPlayInit();
    virtual void KivParamsSetInt(int key, int value);
    virtual void KivParamsSetFloat(int key, float value);
    virtual void KivParamsSetString(int key, const std::string& value);
    virtual android::String8 KivParamsGet(const android::String8& keys);
    virtual void KivOutProcPlaySamples(short* buffer, int frames, int channels,
                                       audio_format_t format);
    virtual bool GetProcessEnable();
    virtual void SetProcessEnable(bool enable);

    // Algorithm binding.
    bool LoadOrulneEffect();

    // Processing initialisation.
    void InitKiv(bool resetGuard);
    void InitPopEliminate();

    // Sample pipeline steps.
    void ReadInputToBuffer(const short* buffer, int samples, audio_format_t format);
    void UpdateKivAndHandleOutChannel();
    void RecordKivLog(int frames, int channels, audio_format_t format);
    void SwapChannel(int frames, int channels);
    void ProcessFadeInOut(int frameCount);
    bool KivApply(const int* in, int* out);
    void KivMultichannelPlay(int channels);
    void RemoveProcessedSamples(int consumed, int frames);
    void SwapFourChannel(int frames, int channels);
    void WriteBufferToOutput(short* buffer, int samples, audio_format_t format);
    bool SingleFrameBlock(int frames) const;
    int32_t* PopEliminate(const int* buf, int samples, bool mode);

    // PCM dump. Enable and Disable run with mDumpLock held; DumpPcm is the block's.
    void SetAudioDump(int on);
    void EnableAudioDump();
    void DisableAudioDump();
    void DumpPcm(const void* buf, int samples, DumpHandle which);
    bool DumpEnabled();
    void CloseDumpFiles();

    // Configuration file location (process-wide state only).
    static char* GetFileRealPath(const char* name, char* out, int outSize);
    static bool CheckFileExists(const char* name);
    static void GetProductNameConfig();
    static char* GetRealConfigFile(const char* base, const char* ext, char* out);
    static int32_t GetVersionInfo(const std::string& dir);

    // Main and virtual-map XML configuration.
    static void KivReadConfigFromXML(bool musicRegionEnable);
    static void StartElement(void* userData, const char* name, const char** attrs);
    static void EndElement(void* userData, const char* name);
    static int XmlParamParse(char* text, const char* delimiters, int16_t* target, int count);
    static bool XMLLengthCheck(int a, int b);
    static int32_t KivReadConfigTableFromXML(bool musicRegionEnable);
    static void StartElementMapTable(void* userData, const char* name, const char** attrs);
    static void XmlCfgParamParse(const char* cfgID, const char* cfgValue);
    static void XmlHpMapParse(const char* numId, const char* name);

    // Binary tuning tables.
    static int ReadTWS(int16_t* tables[2], int length);
    static int ReadSUR(int16_t* table, int length);
    static int ReadLPH(int16_t (*table)[kLphRowWords], int length);
    static int ReadTEH(int16_t* table, int length);
    static int ReadASC1(int16_t* table, int length);
    static int ReadASC2(int16_t* table, int length);
    static void KivInitConfigPointer();

    // Resolution of a virtual parameter id into its records of `tables`. Null out-pointers
    // are allowed. Without `tables`, the published set (for tools and tests that run alone).
    enum class Resolve { Found, NoVirtualId, NoRealRecord };
    static Resolve ResolveVirtualId(const ParamTableSet& tables, int virtualId,
                                    RealParamIdStru* ids, const AudioOrluneMobilePara** para,
                                    const AudioOrluneMobileParaExt** ext);
    static Resolve ResolveVirtualId(int virtualId, RealParamIdStru* ids,
                                    const AudioOrluneMobilePara** para,
                                    const AudioOrluneMobileParaExt** ext) {
        return ResolveVirtualId(PublishedTables(), virtualId, ids, para, ext);
    }

    // The parameter tables pinned for the running block or parameter call (TablesPin).
    const ParamTableSet& Tables() const { return *mTables; }

    // Parameter interface.
    void SetKivOtherParam(int key, int value);
    void SetKivAPKParam(int key, int value);
    void SetKivHEQParam(int key, int value);
    void SetKivDeviceParam(int key, int value);
    void KivParamsGetCharactor(android::AudioParameter& request, android::AudioParameter& reply,
                               const char* key, const int16_t* field);
    void ReloadConfiguration();
    void SwitchRegion(int value);

    // Speaker scene modes.
    void KivParamsSetNS(int channels);
    void SetNsForSpeaker(int channels);
    void SetSpkParam();
    void RecordFrames();

    // Headphone modes.
    void SetNsForHeadsetOrA2dp(int channels);
    void SetHP3DModeAndType(int& channels);
    void SetHPSceneModeAndType(int& channels);
    void SetHP3DMode(int& channels);
    void KivSetHP3DMode(short mode, int channels);
    int FindParamForHP();
    void KivSetHPType(AudioOrluneMobilePara& para, AudioOrluneMobileParaExt& ext, short type);
    void SetCustomEQ(AudioOrluneMobilePara& para, AudioOrluneMobileParaExt& ext);
    void SetNormalMode(unsigned short mode);
    void SetMultiMode(unsigned short mode);
    void SetMultiMovieMode(unsigned short mode);
    void SetMultiMode9(unsigned short mode);

    // Volume levels. ParseVolumeThr = ApplyVolumeThr(ComputeVolumeThr()): the rows are built
    // from the raw words under ConfigLoadLock, then stored under the instance lock.
    struct VolumeThrRows {
        int16_t rows[SCENE_COUNT][kThresholdsPerScene];
        bool thresholdSwitch;
    };
    void ParseVolumeThr();
    static VolumeThrRows ComputeVolumeThr();
    void ApplyVolumeThr(const VolumeThrRows& rows);
    void VolumeThrToIndex(PARAM_INDEX_ZELO_SCENE scene, unsigned short* raw, int count);
    void VolumeIndexToVolLevel(short index);
    void VolumeIndexToVolLevelHp(short index);

    // ---- Process-wide state -------------------------------------------------------------
    static std::atomic<uint32_t> gInstanceNum;  // live instances
    static std::atomic<bool> gMapTableFlag;     // the key-0 placeholders have been pruned

    // The parameter tables themselves are members of ParamTableSet. The state of the loader
    // below is used only under ConfigLoadLock.
    static AudioOrluneMobilePara gTempRealParam;
    static AudioOrluneMobileParaExt gTempRealParamExt;
    static int16_t gVolumeThrRaw[kVolumeThrRawWords];  // read only by ComputeVolumeThr
    static bool gSecondAudioEffect;  // "msc.audio.secondaudioeffect" == 2; nothing reads it

    static char gProductName[1024];
    static uint64_t gGetProductNameResult;

    static int16_t gTwsConfigRaw[2][kTwsScenes * kTwsSceneWords];
    static int16_t* gTwsConfig[2];
    static int16_t gX2BConfig[kSurWords];
    static int16_t gLphConfig[kLphRows][kLphRowWords];
    static int16_t gTehConfig[kTehWords];
    static int16_t gAscConfig1[kAsc1Words];
    static int16_t gAscConfig2[kAsc2Words];
    static std::atomic<bool> gLoadedBinParam;

    static std::atomic<int32_t> gVolSteps;
    static std::atomic<bool> gIsLoudMediaVolumeMode;
    static std::atomic<bool> gMusicRegionEnable;
    static std::atomic<int32_t> gEqLimitValue;
    static std::atomic<int32_t> gVoiceEnhanceEnable;
    static std::atomic<bool> gIsLoudRingVolumeMode;
    static std::atomic<bool> gIsLoudMusicVolumeMode;
    static std::atomic<bool> gIsLoudAlarmVolumeMode;
    static std::atomic<bool> gIsAlarmMode;
    static std::atomic<int32_t> lastSpkParamMode;
    static std::atomic<int32_t> lastHpParamMode;
    static std::atomic<uint32_t> gAudiodumpCount;
    static std::atomic<uint32_t> sLogBlockCount;
    static std::atomic<uint32_t> sLogEnableCount;

    // ---- Instance and host interface ----------------------------------------------------
    std::atomic<bool> mProcessEnable{false};
    // The instance lock (see the threading contract above): a whole block, or the part of a
    // host call that touches the instance; every algorithm call is made under it.
    pthread_mutex_t mMutex;
    std::mutex mDumpLock;  // serialises switching the dump; never taken by the audio thread

    // ---- Parameter tables in use ------------------------------------------------------------
    TablesInUse mTablesInUse;                // the mark that keeps mTables from being freed
    const ParamTableSet* mTables = nullptr;  // pinned set; valid inside a TablesPin

    // ---- Algorithm binding ----------------------------------------------------------------
    AlgoInitFn mAlgoInit = nullptr;
    AlgoApplyFn mAlgoApply = nullptr;
    AlgoSetParaFn mAlgoSetPara = nullptr;
    AlgoGetParaFn mAlgoGetPara = nullptr;
    AlgoGetVersionFn mAlgoGetVersion = nullptr;
    AlgoGetSizeFn mAlgoGetSize = nullptr;
    std::atomic<uint8_t> initialised{0};  // set on the control thread, read by every call

    // ---- Algorithm memory -------------------------------------------------------------------
    // The algorithm keeps typed state in these buffers: each starts on a 16-byte boundary.
    alignas(16) uint8_t mAlgoMem0A[kAlgoMemSize0];
    alignas(16) uint8_t mAlgoMem1A[kAlgoMemSize1];
    alignas(16) uint8_t mAlgoMem2A[kAlgoMemSize2];
    alignas(16) uint8_t mAlgoMem0B[kAlgoMemSize0];
    alignas(16) uint8_t mAlgoMem1B[kAlgoMemSize1];
    alignas(16) uint8_t mAlgoMem2B[kAlgoMemSize2];
    void* mAlgoMemTable[2 * kAlgoMemBanks];  // first buffers in 0..2, second buffers in 3..5
    alignas(16) uint8_t mAlgoParamArea[kAlgoParamAreaSize];
    int32_t mIoBuffer[kIoBufferSamples];
    KivIoInfo mIoInfo;

    // ---- Sample pipeline ----------------------------------------------------------------
    int32_t mInputCache[kInputCacheSamples];
    int32_t mOutputBuffer[kOutputBufferSamples];
    int32_t inBufOffset = 0;
    int32_t outBufOffset = 0;
    // Set by a single-frame block (SingleFrameBlock), which leaves the frame behind the held one
    // as it was instead of a copy of the held one; the next other block restores that copy.
    bool mOutputTailStale = false;
    int32_t mChannelCount = 0;
    int32_t mConfigChannelOut = 2;
    int32_t mOutChannelCount = 2;
    int32_t mSwapPos = 0;
    int32_t mResetRequest = 0;
    int32_t mRejectReason = 0;  // why the last block was refused (0: accepted); logged per change
    int32_t mRejectValue = 0;

    // ---- PCM dump -------------------------------------------------------------------------
    uint8_t mDumpEnabled = 0;
    FILE* mDumpFiles[DUMP_HANDLE_COUNT] = {};

    // ---- Pop eliminator ---------------------------------------------------------------------
    ProcessHandle mPopHandle = {};  // works in mIoBuffer: its result is the algorithm's input
    uint8_t mPopCache[kPopCacheBytes];
    int32_t mPopCacheSize = kPopCacheBytes;
    FallingPopElim* mPopElim;

    // ---- Usage statistics and loud-output detection -----------------------------------------
    OrluneEvents mEvents;
    android::LoudAbnormalDetecter mLad;
    android::sp<android::LadReportInfo> mLadInfoIn;   // first report record: algorithm input
    android::sp<android::LadReportInfo> mLadInfoOut;  // second report record: algorithm output

    // ---- Parameter and mode state -------------------------------------------------------
    // Set by the host's parameter ids (params/ParamIds.h; each comment names its id) or derived
    // from them per block. The mode block opens with five words whose defaults are 1, 1, 0, 0,
    // 1.
    int32_t foldState = FOLD_FULL;               // kIdFoldState: 0 folded, 1 full, 2 half folded
    int32_t btHeadsetType = 1;                   // kIdBtHeadsetType: type row for Bluetooth
    int32_t ringingState = 0;                    // kIdRingingState: a ringtone or alarm is active
    int32_t orientation = ORIENTATION_PORTRAIT;  // kIdOrientation
    int32_t volumeLevel = VOL_ONE;               // speaker volume level in force (derived)

    int32_t stereoWidenEnable = 0;  // kIdWidenEnable: first of the two run-time enable flags
    int32_t param32Value = 0;       // kIdEffectEnable: second run-time enable flag
    int32_t param7Value = 0;        // kIdStartGuard: last value set (stored only)
    int32_t mMuteCountdown = 0;     // start-up output guard, armed by kIdStartGuard
    int32_t mMuteArmed = 0;         // the guard has seen sound and mutes from now on
    uint8_t param5Flag = 0;         // kIdChannelSwap: a left/right swap is wanted
    int32_t param5Step = 1;         // swap fade step: -1 towards swapped, +1 towards normal
    uint8_t param37Flag = 0;        // kIdSwapInhibit: the swap fade stays off the audio
    uint8_t channelSwapped = 0;     // a full swap happened since the last query

    int32_t multiMovieFlag = 0;    // kIdMultiMovie: multichannel movie content
    int32_t smartHint9 = 0;        // kIdSmartHintA: input of the smart headphone mode
    int32_t smartHint10 = 0;       // kIdSmartHintB: input of the smart headphone mode
    int32_t mDeviceType = 0;       // kIdDeviceType: 1 loudspeaker, 2 wired, 3 Bluetooth A2DP
    int32_t wiredHeadsetType = 0;  // kIdWiredHeadsetType: type row, kNoHeadsetTypeChange = keep
    int16_t HP_TYPE = 0;           // kIdHpType
    int16_t HP_MODE = 0;           // kIdHpModeUi0 or kIdHpModeUi1, by UI type
    int16_t SPK_MODE = 0;          // kIdSpkMode (stored and reported only)
    int16_t HP_SMART_MODE = 0;     // kIdHpSmartMode
    int16_t HP_3D_MODE = 0;        // kIdHp3dMode
    int16_t eqPreset = 0;          // kIdEqPreset
    int16_t HP_EQ[11] = {};        // kIdHpEqFirst .. kIdHpEqLast: HP_EQ1 .. HP_EQ11
    int16_t HP_PREGAIN = 0;        // headphone pre-gain laid over the records (no id sets it)
    int32_t sceneRequest = SCENE_MUSIC;  // kIdScene as the host set it
    int32_t sceneMode = SCENE_MUSIC;     // scene in force (ring, high temperature applied)
    int32_t ringPending = 0;             // ring began while kIdEffectEnable was 0 (stored only)
    int32_t highTempState = 0;           // kIdHighTemp: 1 = the device is hot
    int32_t startStreamState = 3;        // kIdStartStream: 3 = stream started
    int32_t stopStreamState = 3;         // kIdStopStream: 3 = stream stopped
    float volumeDb;                      // kIdVolumeDb
    // kIdMasterVolume, kIdTypeVolume, kIdClientVolume, meant for both loud-detection report
    // records; the records' fixed layout has no field for them, so they are kept beside the
    // records and start again from 0 whenever set-up creates new records.
    float masterVolume = 0.0f;
    float typeVolume = 0.0f;
    float clientVolume = 0.0f;

    // Stream volume indices (kIdVolumeIndexMusic, -Ring, -Alarm, -Headphone, -Bluetooth) and
    // the one in force; all default to 5.
    int32_t musicVolumeIndex = 5;
    int32_t ringVolumeIndex = 5;
    int32_t alarmVolumeIndex = 5;
    int32_t hpVolumeIndex = 5;
    int32_t btVolumeIndex = 5;
    int32_t currentVolumeIndex = 5;

    int32_t outputPath = OUTPUT_SPEAKER;  // from kIdDeviceType, for the log lines
    int32_t ringReinitPending = 0;        // the ring scene was used: re-initialise on headphones
    int32_t mMovieMode = 0;               // "ro.config.kiv_moviemode" is "true"
    int32_t hpModeIndex = HP_3D_OFF;      // headphone mode in force (derived)
    int32_t hpMultiKind = DEFAULT_MODE;   // content kind by channel layout (derived)
    int32_t hpVolumeLevel = VOL_LOW;      // headphone volume level in force (derived)
    int16_t volumeThresholds[SCENE_COUNT][kThresholdsPerScene] = {};
    bool volumeThrSwitch = false;
    bool mHpDefaultsApplied = false;  // InitKiv's once-per-instance headphone defaults

    // The tuning handed to the algorithm.
    AudioOrluneMobilePara mCurPara = {};
    AudioOrluneMobileParaExt mCurParaExt = {};

private:
    Orlune(const Orlune&) = delete;
    Orlune& operator=(const Orlune&) = delete;
};

// Holds the instance lock for the scope. Every holder keeps it for microseconds (a block, or
// the instance-touching part of a call), less than a waiter that went to sleep takes to be
// woken, so a caller retries for about that long before it sleeps on the lock. A sleeper would
// also make the holder pay a wake-up call when it unlocks: the audio thread too.
class InstanceLock {
public:
    explicit InstanceLock(Orlune& o) : mMutex(o.mMutex) {
        for (int i = 0; i < kSpinTries; ++i) {
            if (pthread_mutex_trylock(&mMutex) == 0) {
                return;
            }
        }
        pthread_mutex_lock(&mMutex);
    }
    ~InstanceLock() { pthread_mutex_unlock(&mMutex); }
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

private:
    static constexpr int kSpinTries = 1000;  // about 4 us of failed tries on the x86-64 host
    pthread_mutex_t& mMutex;
};

// Pins the published parameter tables for the scope, so that Orlune::Tables() stays the same
// set and is not freed. Pins nest: an inner pin keeps the outer one's set, so a whole block
// reads the set it started with. Taken by the holder of the instance lock (or by a test that
// drives an instance alone).
class TablesPin {
public:
    explicit TablesPin(Orlune& o) : mOrlune(o), mOuter(o.mTables == nullptr) {
        if (mOuter) {
            o.mTables = o.mTablesInUse.Pin();
        }
    }
    ~TablesPin() {
        if (mOuter) {
            mOrlune.mTables = nullptr;
            mOrlune.mTablesInUse.Unpin();
        }
    }
    TablesPin(const TablesPin&) = delete;
    TablesPin& operator=(const TablesPin&) = delete;

private:
    Orlune& mOrlune;
    bool mOuter;
};
