// Loading a device's configuration without an effect instance, for tools, tests and benchmarks:
// the effect's own load sequence (config/ConfigLoad.h), run as the first instance of a process
// runs it.
#pragma once

#include "config/ConfigLoad.h"
#include "effect/orlune.h"

// Removes the key-0 placeholders, as the first instance's construction does, then loads;
// `observer` is called before each step.
inline void LoadAsFirstInstance(bool musicRegionEnable, ConfigStepObserver observer = nullptr,
                                void* context = nullptr) {
    {
        ConfigUpdate update;
        PruneKeyZeroPlaceholders(update.Tables());
    }
    RunConfigLoad(musicRegionEnable, observer, context);
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
