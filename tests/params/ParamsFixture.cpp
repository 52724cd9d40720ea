#include "tests/params/ParamsFixture.h"

#include <algorithm>
#include <iterator>

namespace {

std::vector<SetParaCall> gCalls;
int32_t gNextResult = 0;
int gInitCalls = 0;

int32_t RecordingSetPara(void** /*mem*/, void* /*area*/, const AudioOrluneMobilePara* para,
                         const AudioOrluneMobileParaExt* ext) {
    gCalls.push_back(SetParaCall{*para, *ext});
    return gNextResult;
}

int32_t CountingInit(void** /*first*/, void** /*second*/) {
    ++gInitCalls;
    return 0;
}

int32_t ZeroSizes(int32_t* /*sizes*/, KivIoInfo* /*io*/) {
    return 0;
}

}  // namespace

void ParamsFixture::SetUp() {
    gCalls.clear();
    gNextResult = 0;
    gInitCalls = 0;
    o = std::make_unique<Orlune>();
    o->initialised = 1;
    o->mAlgoSetPara = RecordingSetPara;
    o->mAlgoInit = CountingInit;
    o->mAlgoGetSize = ZeroSizes;
    // Process-wide state back to its load-time values, so that tests also pass in one process.
    Orlune::gUiType = 0;
    Orlune::gEqLimitValue = 200;
    Orlune::gVoiceEnhanceEnable = 1;
    Orlune::gMusicRegionEnable = false;
    Orlune::gIsLoudRingVolumeMode = false;
    Orlune::gIsLoudMusicVolumeMode = false;
    Orlune::gIsLoudAlarmVolumeMode = false;
    Orlune::gIsAlarmMode = false;
    Orlune::lastSpkParamMode = -1;
    Orlune::lastHpParamMode = -1;
    SpkFrameRecorder::gFrameSums = 0;
    HpFrameRecorder::gFrameSums = 0;
    std::fill(std::begin(Orlune::gParameterHpType), std::end(Orlune::gParameterHpType), 0);
    Orlune::gHpMapTable = {{"DEFALUT", 0}};
    Orlune::gVituralMapTable.clear();
    Orlune::gRealMapTable.clear();
    Orlune::gRealMapTableExt.clear();
    log.Clear();
}

void ParamsFixture::TearDown() {
    o.reset();
}

void ParamsFixture::AddMode(int virtualId, int realId) {
    Orlune::gVituralMapTable[virtualId] = RealParamIdStru{realId, realId + 1};
    AudioOrluneMobilePara para = {};
    para.words[kMainMarkerWord] = static_cast<int16_t>(realId);
    AudioOrluneMobileParaExt ext = {};
    ext.words[kExtMarkerWord] = static_cast<int16_t>(realId + 1);
    Orlune::gRealMapTable[realId] = para;
    Orlune::gRealMapTableExt[realId + 1] = ext;
}

void ParamsFixture::AddDanglingMode(int virtualId, int realId) {
    Orlune::gVituralMapTable[virtualId] = RealParamIdStru{realId, realId + 1};
}

int ParamsFixture::LastMainId() {
    return gCalls.empty() ? -1 : gCalls.back().para.words[kMainMarkerWord];
}

int ParamsFixture::LastExtId() {
    return gCalls.empty() ? -1 : gCalls.back().ext.words[kExtMarkerWord];
}

const SetParaCall& ParamsFixture::LastCall() {
    static const SetParaCall kNone = {};
    return gCalls.empty() ? kNone : gCalls.back();
}

size_t ParamsFixture::CallCount() {
    return gCalls.size();
}

void ParamsFixture::SetNextResult(int32_t result) {
    gNextResult = result;
}

int ParamsFixture::InitCalls() {
    return gInitCalls;
}
