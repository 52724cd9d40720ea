// Process-wide parameter tables and tuning records, with their contents before any file is
// read.
#include <platform/properties.h>

#include "effect/orlune.h"

std::map<int32_t, RealParamIdStru> Orlune::gVituralMapTable = {{0, RealParamIdStru{0, 0}}};
std::map<int32_t, AudioOrluneMobilePara> Orlune::gRealMapTable = {{0, AudioOrluneMobilePara{}}};
std::map<int32_t, AudioOrluneMobileParaExt> Orlune::gRealMapTableExt = {
        {0, AudioOrluneMobileParaExt{}}};
std::map<std::string, int32_t> Orlune::gHpMapTable = {{"DEFALUT", 0}};
AudioOrluneMobilePara Orlune::gTempRealParam = {};
AudioOrluneMobileParaExt Orlune::gTempRealParamExt = {};
int16_t Orlune::gParameterHpType[kHpTypeWords] = {};
int16_t Orlune::gVolumeThrRaw[kVolumeThrRawWords] = {};
int16_t Orlune::gUiType = 0;
bool Orlune::gSecondAudioEffect =
        orlune_platform::PropertyGetInt32("msc.audio.secondaudioeffect", 0) == 2;

char Orlune::gProductName[1024] = {};
uint64_t Orlune::gGetProductNameResult = 0;

int16_t Orlune::gTwsConfigRaw[2][kTwsScenes * kTwsSceneWords] = {};
int16_t* Orlune::gTwsConfig[2] = {gTwsConfigRaw[0], gTwsConfigRaw[1]};
int16_t Orlune::gX2BConfig[kSurWords] = {};
int16_t Orlune::gLphConfig[kLphRows][kLphRowWords] = {};
int16_t Orlune::gTehConfig[kTehWords] = {};
int16_t Orlune::gAscConfig1[kAsc1Words] = {};
int16_t Orlune::gAscConfig2[kAsc2Words] = {};
bool Orlune::gLoadedBinParam = false;

Orlune::Resolve Orlune::ResolveVirtualId(int virtualId, RealParamIdStru* ids,
                                         const AudioOrluneMobilePara** para,
                                         const AudioOrluneMobileParaExt** ext) {
    auto v = gVituralMapTable.find(virtualId);
    if (v == gVituralMapTable.end()) {
        return Resolve::NoVirtualId;
    }
    if (ids != nullptr) {
        *ids = v->second;
    }
    auto m = gRealMapTable.find(v->second.ID);
    auto e = gRealMapTableExt.find(v->second.EXTID);
    if (m == gRealMapTable.end() || e == gRealMapTableExt.end()) {
        return Resolve::NoRealRecord;
    }
    if (para != nullptr) {
        *para = &m->second;
    }
    if (ext != nullptr) {
        *ext = &e->second;
    }
    return Resolve::Found;
}
