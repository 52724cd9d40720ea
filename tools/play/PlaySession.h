// One run of orlune-play: an effect instance set up against a device root, parameters
// applied at the start and along a timeline, and a WAV file processed block by block.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "tools/play/EffectLoader.h"
#include "tools/play/PlayOptions.h"

struct PlayResult {
    int64_t blocks = 0;
    int64_t inputFrames = 0;
    int64_t outputFrames = 0;
    int64_t framesFed = 0;  // input plus the silence that pushed the latency out
    int rate = 48000;
    int fileChannels = 0;
    int outChannels = 0;  // channels of the output file
    int nominalLatency = 0;
    int64_t measuredLatency = -1;      // onset in the output minus onset in the input; -1 unknown
    double processSeconds = 0.0;       // time spent inside the effect's block call
    std::vector<std::string> applied;  // parameter calls, as "at 1.50 s: 12=2"
    std::vector<std::string> dumpFiles;
    std::vector<std::string> notes;
};

// Reads "key=value" property files the way the platform layer does (last line wins).
int PropertyInt(const std::string& file, const char* key, int defaultValue);

// Processes the input file; false with `error` set when a file cannot be used.
bool RunPlay(const PlayOptions& options, PlayEffect* effect, PlayResult* result,
             std::string* error);

// Parameter calls and their printable form.
void ApplyParam(PlayEffect* effect, const ParamEvent& event);
std::string DescribeParam(const ParamEvent& event);
