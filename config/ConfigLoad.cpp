#include "config/ConfigLoad.h"

#include <mutex>
#include <optional>

#include "base/Log.h"
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

void RunConfigLoad(bool musicRegionEnable, ConfigStepObserver observer, void* context) {
    std::lock_guard<std::recursive_mutex> lock(ConfigLoadLock());
    std::optional<ConfigUpdate> update;  // opened at the first reloaded step
    for (size_t i = 0; i < kConfigLoadStepCount; ++i) {
        if (kConfigLoadSteps[i].reloaded && !update) {
            update.emplace();
        }
        if (observer != nullptr) {
            observer(static_cast<int>(i), context);
        }
        kConfigLoadSteps[i].run(musicRegionEnable);
    }
}

void RunConfigReload(bool musicRegionEnable) {
    ConfigUpdate update;
    ParamTableSet& next = update.Tables();
    next.gHpMapTable.clear();
    next.gRealMapTable.clear();
    next.gRealMapTableExt.clear();
    next.gVituralMapTable.clear();
    ORLUNE_LOGI(kTagMobile, "kiv config is updated by pc tool");
    for (size_t i = 0; i < kConfigLoadStepCount; ++i) {
        if (kConfigLoadSteps[i].reloaded) {
            kConfigLoadSteps[i].run(musicRegionEnable);
        }
    }
}

void PruneKeyZeroPlaceholders(ParamTableSet& next) {
    next.gVituralMapTable.erase(0);
    next.gRealMapTable.erase(0);
    next.gRealMapTableExt.erase(0);
}
