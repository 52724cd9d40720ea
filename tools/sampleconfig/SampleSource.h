// The readable source of the sample device (sample_device.conf): what it says, parsed.
#pragma once

#include <stdint.h>

#include <string>
#include <utility>
#include <vector>

#include "config/NameLists.h"

struct ToneSetting {
    double gainDb = 0.0;
    double width = 1.0;
    bool given = false;
};

struct SampleSource {
    std::string version;
    int uiType = 0;
    int volumeSwitch = 0;
    int thresholds[6][6] = {};  // MUSIC, GAME, MOVIE, EDUCATION, VIDEO, LOWPOWER
    bool thresholdsGiven[6] = {};
    double speakerLevelStepDb = 0.0;
    ToneSetting speaker[SCENE_COUNT];
    double headphoneKindStepDb = 0.0;
    double headphoneLevelStepDb = 0.0;
    ToneSetting headphone[9];
    std::vector<std::pair<std::string, int>> headsets;
    std::vector<std::pair<std::string, int>> tables;  // name, ramp start
    double ladLimitDbfs = -1.0;
    std::vector<std::pair<std::string, std::string>> properties;
};

// Reads and checks the source; on failure returns false with a message naming the line.
bool ParseSampleSource(const std::string& path, SampleSource* source, std::string* error);
