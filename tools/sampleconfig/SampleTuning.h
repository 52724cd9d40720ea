// The sample device's tunings: which real records exist, what their two audible words hold, and
// which virtual ids map to them (the rules are documented in sample_device.conf).
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "tools/sampleconfig/SampleSource.h"

struct SampleRecord {
    int32_t id;
    int16_t word;  // main records: word 400 (gain); extended records: word 300 (width)
};

struct SampleMapping {
    int32_t virtualId;
    int32_t id;
    int32_t extId;
    double gainDb;
    double width;
    std::string name;  // e.g. SPEAKER_FULL_LANDSCAPE_GAME_LOUD, HEADPHONE_HP_3D_WIDE_MULTI_MODE_TWO
};

struct SampleTuning {
    std::vector<SampleRecord> mainRecords;
    std::vector<SampleRecord> extRecords;
    std::vector<SampleMapping> mappings;  // speaker ids first, then headphone ids
};

constexpr int kGainWord = 400;
constexpr int kWidthWord = 300;

// Builds the tunings; false with a message when two tunings of one device share a gain word.
bool BuildSampleTuning(const SampleSource& source, SampleTuning* tuning, std::string* error);

// The Q12 offsets that the stand-in algorithm reads.
int16_t GainWord(double gainDb);
int16_t WidthWord(double width);
