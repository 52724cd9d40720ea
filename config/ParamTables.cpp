// Process-wide parameter tables and tuning records, with their contents before any file is
// read.
#include <platform/properties.h>

#include "effect/orlune.h"

// The set published when the library is loaded, before any instance exists or any file is
// read: one zero entry at key 0 in each of the three id maps and the "DEFALUT" headset name.
ParamTableSet DefaultParamTables() {
    ParamTableSet tables;
    tables.gVituralMapTable = {{0, RealParamIdStru{0, 0}}};
    tables.gRealMapTable = {{0, AudioOrluneMobilePara{}}};
    tables.gRealMapTableExt = {{0, AudioOrluneMobileParaExt{}}};
    tables.gHpMapTable = {{"DEFALUT", 0}};
    return tables;
}

AudioOrluneMobilePara Orlune::gTempRealParam = {};
AudioOrluneMobileParaExt Orlune::gTempRealParamExt = {};
int16_t Orlune::gVolumeThrRaw[kVolumeThrRawWords] = {};
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
std::atomic<bool> Orlune::gLoadedBinParam{false};

Orlune::Resolve Orlune::ResolveVirtualId(const ParamTableSet& tables, int virtualId,
                                         RealParamIdStru* ids, const AudioOrluneMobilePara** para,
                                         const AudioOrluneMobileParaExt** ext) {
    // The ids of the mode logic are looked up in the direct tables of a published set.
    if (const DirectIdEntry* d = tables.direct.Find(tables, virtualId)) {
        if (d->state == DirectIdEntry::kNoVirtualId) {
            return Resolve::NoVirtualId;
        }
        if (ids != nullptr) {
            *ids = d->ids;
        }
        if (d->state == DirectIdEntry::kNoRealRecord) {
            return Resolve::NoRealRecord;
        }
        if (para != nullptr) {
            *para = d->para;
        }
        if (ext != nullptr) {
            *ext = d->ext;
        }
        return Resolve::Found;
    }
    auto v = tables.gVituralMapTable.find(virtualId);
    if (v == tables.gVituralMapTable.end()) {
        return Resolve::NoVirtualId;
    }
    if (ids != nullptr) {
        *ids = v->second;
    }
    auto m = tables.gRealMapTable.find(v->second.ID);
    auto e = tables.gRealMapTableExt.find(v->second.EXTID);
    if (m == tables.gRealMapTable.end() || e == tables.gRealMapTableExt.end()) {
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
