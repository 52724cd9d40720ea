// Writes the sample device tree from its source and tunings.
#pragma once

#include <string>

#include "tools/sampleconfig/SampleSource.h"
#include "tools/sampleconfig/SampleTuning.h"

// Replaces the device files under `outDir` (odm/, proc/, sample.properties, sample-tuning.txt).
bool WriteSampleDevice(const SampleSource& source, const SampleTuning& tuning,
                       const std::string& outDir, std::string* error);
