// The effect's once-per-process configuration load, step by step and in its order, for tools,
// tests and benchmarks that load a device's configuration without an effect instance.
#pragma once

#include "effect/orlune.h"

struct ConfigLoadStep {
    const char* name;
    void (*run)(bool musicRegionEnable);
};

inline constexpr ConfigLoadStep kConfigLoadSteps[] = {
        {"product name", [](bool) { Orlune::GetProductNameConfig(); }},
        {"tws_config", [](bool) { Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords); }},
        {"sur_config", [](bool) { Orlune::ReadSUR(Orlune::gX2BConfig, kSurWords / 2); }},
        {"lph_config", [](bool) { Orlune::ReadLPH(Orlune::gLphConfig, kLphRowWords); }},
        {"teh_config", [](bool) { Orlune::ReadTEH(Orlune::gTehConfig, kTehWords); }},
        {"ascconfig1", [](bool) { Orlune::ReadASC1(Orlune::gAscConfig1, kAsc1Words); }},
        {"ascconfig2", [](bool) { Orlune::ReadASC2(Orlune::gAscConfig2, kAsc2Words); }},
        {"main XML", [](bool region) { Orlune::KivReadConfigFromXML(region); }},
        {"virtual-map XML", [](bool region) { Orlune::KivReadConfigTableFromXML(region); }},
        {"table pointers", [](bool) { Orlune::KivInitConfigPointer(); }},
};

// The first instance of a process removes the built-in key-0 entries before it loads anything.
inline void PruneKeyZeroPlaceholders() {
    ConfigUpdate update;
    update.Tables().gVituralMapTable.erase(0);
    update.Tables().gRealMapTable.erase(0);
    update.Tables().gRealMapTableExt.erase(0);
}

// Runs the whole load as the effect's first set-up does, publishing the tables once at the end
// (each step run on its own publishes what it changed).
inline void LoadConfigurationOnce(bool musicRegionEnable) {
    ConfigUpdate update;
    PruneKeyZeroPlaceholders();
    for (const ConfigLoadStep& step : kConfigLoadSteps) {
        step.run(musicRegionEnable);
    }
}

// Empties every table the load fills, so that the next load starts from nothing.
inline void ResetConfigurationTables() {
    ConfigUpdate update;
    update.Tables() = ParamTableSet();
    Orlune::gTempRealParam = AudioOrluneMobilePara{};
    Orlune::gTempRealParamExt = AudioOrluneMobileParaExt{};
    for (int16_t& w : Orlune::gVolumeThrRaw) {
        w = 0;
    }
}
