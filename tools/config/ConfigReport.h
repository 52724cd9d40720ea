// What orlune-config found out about a device's configuration.
#pragma once

#include <stdint.h>

#include <set>
#include <string>
#include <vector>

enum class Severity { Error, Warning, Info };

struct Finding {
    Severity severity;
    std::string kind;  // stable key for scripts, e.g. "duplicate_id"
    std::string message;
};

struct FileChoice {
    std::string role;             // "main XML", "virtual-map XML", or a table's name
    std::string path;             // device path read, "" when none
    std::string choice;           // "product-specific", "generic", "over-the-air", "missing"
    std::string why;              // one line for people
    long long size = -1;          // bytes, binary tables only
    long long expectedSize = -1;  // bytes, binary tables only
};

// Which ids the mode logic asks for: those that get table pointers, and the further headphone
// levels and kinds, which only work through a record that some pointer-set id also reaches.
enum class IdGroup { Headphone, Speaker, HeadphoneExtra };

struct IdResolution {
    int32_t virtualId;
    IdGroup group;
    std::string name;
    bool resolved = false;
    bool mapped = false;  // present in the virtual map
    int32_t id = 0;
    int32_t extId = 0;
    bool hasTables = false;  // the extended record carries the binary table pointers
};

struct OtaState {
    bool offered = false;  // the service has a downloaded file
    bool serviceAnswered = false;
    std::string version;
    int32_t versionNumber = -1;
    int32_t localVersion = -1;
    bool taken = false;
};

struct ConfigReport {
    std::string deviceRoot;
    std::string propertiesFile;  // "" when none was given
    bool productKnown = false;
    std::string productName;
    std::string region;
    bool regionEnabled = false;
    OtaState ota;
    std::vector<FileChoice> files;
    std::vector<IdResolution> ids;
    int uiTypeXml = 0;
    bool uiTypeNodePresent = false;
    int uiTypeNode = 0;
    int16_t thresholdRaw[37] = {};
    std::vector<Finding> findings;
    // Ids given more than once, whose later elements the readers dropped: NUMIDs of the
    // virtual-map XML and record IDs of the main XML.
    std::set<int32_t> duplicateNumids;
    std::set<int32_t> duplicateIds;

    void Add(Severity severity, const std::string& kind, const std::string& message) {
        findings.push_back({severity, kind, message});
    }
    int Count(Severity severity) const {
        int n = 0;
        for (const Finding& f : findings) {
            n += f.severity == severity ? 1 : 0;
        }
        return n;
    }
};
