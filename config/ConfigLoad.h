// The configuration load as one sequence: the files in the order the first set-up reads them,
// and the part a reload by key reads again. The effect's set-up and reload, orlune-config, the
// benchmarks and the tests all run these steps, so that they read the same files the same way.
#pragma once

#include <stddef.h>

#include "config/ParamTableSet.h"

struct ConfigLoadStep {
    const char* name;
    // Run again by a reload: the two XML files and the table pointers into their records. The
    // other steps (product name, binary tables) run once per process.
    bool reloaded;
    void (*run)(bool musicRegionEnable);
};

// Product name, the six binary table readers, the main XML, the virtual-map XML, the table
// pointers.
extern const ConfigLoadStep kConfigLoadSteps[];
extern const size_t kConfigLoadStepCount;

// Called before step `step` (an index into kConfigLoadSteps) runs; tools use it to tell the
// steps' log lines apart.
using ConfigStepObserver = void (*)(int step, void* context);

// Runs every step in order under ConfigLoadLock. From the first reloaded step on they build
// one set of tables, published when the load ends (or with the caller's ConfigUpdate); the
// binary tables are filled before it points into them.
void RunConfigLoad(bool musicRegionEnable, ConfigStepObserver observer = nullptr,
                   void* context = nullptr);

// The reload by key: empties the four maps (the key-0 placeholders too), logs it and runs the
// reloaded steps again, all into the set being built: the caller's ConfigUpdate, or its own.
// The binary tables, the headphone-type rows and the UI type stay as loaded.
void RunConfigReload(bool musicRegionEnable);

// The built-in key-0 entries let a lookup succeed before any configuration is loaded; the
// first instance of a process (or a tool, as that instance would) removes them from `next`.
void PruneKeyZeroPlaceholders(ParamTableSet& next);
