// Command line of orlune-play.
#pragma once

#include <string>
#include <vector>

enum class HostFormat { S16, S32, F32, S24 };

// One parameter call, at the start of the file (seconds 0, `atStart`) or during it.
struct ParamEvent {
    enum Kind { INT, FLOAT, STRING };
    double seconds = 0.0;
    bool atStart = true;
    Kind kind = INT;
    int id = 0;
    int intValue = 0;
    float floatValue = 0.0f;
    std::string text;
};

// The largest host block: the effect caches at most 76800 input samples and may hold up to one
// algorithm frame (480 frames) from the block before, so ten channels fit 7201 new frames.
constexpr int kMaxBlockFrames = 7200;

struct PlayOptions {
    bool info = false;
    bool help = false;
    std::string deviceRoot;
    std::string properties;
    std::string input;
    std::string output;
    std::string effectLib;  // empty: next to the program
    std::string algoLib;    // empty: the stand-in next to the program
    std::string detectLib;
    bool noAlgo = false;
    bool noDetect = false;
    int block = 480;
    HostFormat format = HostFormat::S16;
    int channels = 2;
    std::vector<ParamEvent> events;  // in command-line order
    bool dump = false;
    std::string report;       // HTML report of the run; empty: none
    bool log = false;         // echo the effect's log lines
    bool compensate = false;  // drop the effect's latency from the output's start
    bool noDefaults = false;  // no enable/loudspeaker defaults
    bool progress = true;
};

extern const char* const kPlayUsage;

// Parses argv; false with `error` set on a malformed command line.
bool ParsePlayOptions(int argc, char** argv, PlayOptions* options, std::string* error);

const char* HostFormatName(HostFormat format);
