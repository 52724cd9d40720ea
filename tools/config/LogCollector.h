// Collects the library's log lines while the configuration loads, with the load step each line
// came from, so that the readers' own messages tell what happened.
#pragma once

#include <string>
#include <vector>

struct CollectedLine {
    int priority;
    std::string tag;
    std::string message;
    int step;  // index into kConfigLoadSteps, or -1 outside the load
};

class LogCollector {
public:
    LogCollector();   // installs itself as the process's liblog logger
    ~LogCollector();  // restores the stderr logger
    void SetStep(int step);
    // Loads the configuration as the first effect instance does, each line tagged with its
    // step.
    void Load(bool musicRegionEnable);
    const std::vector<CollectedLine>& Lines() const;
    // Messages of one step (or of all steps with -2).
    std::vector<std::string> Messages(int step) const;
};
