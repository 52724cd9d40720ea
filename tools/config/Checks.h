// The checks of orlune-config. Each reads the tables the library's readers filled, the lines
// they logged and the files they chose, and adds what it found to the report.
#pragma once

#include <stdint.h>

#include <vector>

#include "tools/config/ConfigReport.h"
#include "tools/config/LogCollector.h"

struct ValueCount {
    int32_t id;
    int given;
    int capacity;
};

// Starts recording, through the main XML reader's observer, how many values each element gave.
void StartCountingValues();
const std::vector<ValueCount>& CountedValues();

// Index of a step of kConfigLoadSteps by its name.
int LoadStepIndex(const char* name);

void InspectFiles(const LogCollector& log, ConfigReport* report);
void InspectTables(ConfigReport* report);
void InspectUiType(ConfigReport* report);
void InspectVirtualIds(ConfigReport* report);
void InspectElements(const LogCollector& log, ConfigReport* report);
void InspectThresholds(ConfigReport* report);
