// orlune-play --report FILE.html: one self-contained page about a run. Its size is bounded
// whatever the input's length (under 2 MB): every plot is decimated to 1200 columns and every
// list and marker row is capped.
#pragma once

#include <string>

#include "tools/play/EffectLog.h"
#include "tools/play/PlayOptions.h"
#include "tools/play/PlaySession.h"
#include "tools/play/RunTrace.h"

struct PlayReportInput {
    const PlayOptions* options;
    const PlayResult* result;
    const EffectLogFacts* facts;
    const RunTrace* trace;
    std::string effectLib;
    std::string algoLib;    // "" when none was preloaded
    std::string detectLib;  // "" when none was preloaded
};

std::string PlayReportPage(const PlayReportInput& input);
bool WritePlayReport(const std::string& path, const PlayReportInput& input, std::string* error);
