#include "config/ConfigLoad.h"

#include <mutex>

#include "effect/LogTags.h"
#include "effect/orlune.h"

const ConfigLoadStep kConfigLoadSteps[] = {
        {"product name", false, [](bool) { Orlune::GetProductNameConfig(); }},
        {"tws_config", false, [](bool) { Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords); }},
        {"sur_config", false, [](bool) { Orlune::ReadSUR(Orlune::gX2BConfig, kSurReadLength); }},
        {"lph_config", false, [](bool) { Orlune::ReadLPH(Orlune::gLphConfig, kLphRowWords); }},
        {"teh_config", false, [](bool) { Orlune::ReadTEH(Orlune::gTehConfig, kTehWords); }},
        {"ascconfig1", false, [](bool) { Orlune::ReadASC1(Orlune::gAscConfig1, kAsc1Words); }},
        {"ascconfig2", false, [](bool) { Orlune::ReadASC2(Orlune::gAscConfig2, kAsc2Words); }},
        {"main XML", true, [](bool region) { Orlune::KivReadConfigFromXML(region); }},
        {"virtual-map XML", true, [](bool region) { Orlune::KivReadConfigTableFromXML(region); }},
        {"table pointers", true, [](bool) { Orlune::KivInitConfigPointer(); }},
};
const size_t kConfigLoadStepCount = sizeof(kConfigLoadSteps) / sizeof(kConfigLoadSteps[0]);

namespace {

// Runs the steps from `first` on while their `reloaded` flag equals `reloaded`; returns the
// index of the first step not run.
size_t RunSteps(size_t first, bool reloaded, bool region, ConfigStepObserver observer,
                void* context) {
    size_t i = first;
    for (; i < kConfigLoadStepCount && kConfigLoadSteps[i].reloaded == reloaded; ++i) {
        if (observer != nullptr) {
            observer(static_cast<int>(i), context);
        }
        kConfigLoadSteps[i].run(region);
    }
    return i;
}

}  // namespace

void RunConfigLoad(bool musicRegionEnable, ConfigStepObserver observer, void* context) {
    std::lock_guard<std::recursive_mutex> lock(ConfigLoadLock());
    const size_t reloadedStart = RunSteps(0, false, musicRegionEnable, observer, context);
    ConfigUpdate update;
    RunSteps(reloadedStart, true, musicRegionEnable, observer, context);
}

void RunConfigReload(bool musicRegionEnable) {
    ConfigUpdate update;
    ParamTableSet& next = update.Tables();
    next.gHpMapTable.clear();
    next.gRealMapTable.clear();
    next.gRealMapTableExt.clear();
    next.gVituralMapTable.clear();
    ORLUNE_LOGI("kiv config is updated by pc tool");
    size_t i = 0;
    while (i < kConfigLoadStepCount && !kConfigLoadSteps[i].reloaded) {
        ++i;
    }
    RunSteps(i, true, musicRegionEnable, nullptr, nullptr);
}

void PruneKeyZeroPlaceholders(ParamTableSet& next) {
    next.gVituralMapTable.erase(0);
    next.gRealMapTable.erase(0);
    next.gRealMapTableExt.erase(0);
}
