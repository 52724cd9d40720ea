// Everything orlune-play reports about a run comes from the effect's own log lines, caught
// through liblog's logger hook: the same lines a user sees on the device.
#pragma once

#include <map>
#include <string>
#include <vector>

struct EffectLogFacts {
    bool bound = false;                 // "Load orlune algo lib OK."
    bool bindFailed = false;            // "load orlune effect fail."
    std::string versions[3];            // compiler version, release version, release date
    int initialisations = 0;            // "InitKiv, tid:..." lines
    int statusLines = 0;                // the pipeline's every-250-blocks status line
    std::map<int, int> applyErrors;     // algorithm status code -> occurrences
    int otherErrors = 0;                // error lines that are neither of the above
    std::vector<std::string> events;    // platform event reports, as logged
    std::vector<std::string> tunings;   // "<virtual id> <names> -> <ID>/<EXTID>", in order
    int missingTunings = 0;             // blocks whose virtual id resolved to nothing
    std::vector<std::string> refusals;  // blocks the effect handed back untouched
    std::vector<std::string> problems;  // warning and error lines, first 20
};

// Sees every log line as it is logged, on the thread that logs it.
using EffectLogListener = void (*)(void* context, int priority, const char* tag,
                                   const char* message);

class EffectLog {
public:
    // Installs the logger; `echo` also prints every line to stderr like logcat.
    static void Install(bool echo);
    static EffectLogFacts& Facts();
    // Clears the facts gathered so far (keeps the logger).
    static void Reset();
    // One further listener (null removes it), for the HTML report's recorder.
    static void SetListener(EffectLogListener listener, void* context);
};
