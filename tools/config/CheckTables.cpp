// The seven binary tables: which file each reader found and whether its size is right.
#include <errno.h>
#include <sys/stat.h>

#include <string>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"

namespace {

struct TableFile {
    const char* name;
    long long values;
};

constexpr TableFile kTableFiles[] = {
        {"tws_config1", kTwsScenes* kTwsSceneWords},
        {"tws_config2", kTwsScenes* kTwsSceneWords},
        {"sur_config", kSurWords},
        {"lph_config", kLphRows* kLphRowWords},
        {"teh_config", kTehWords},
        {"ascconfig1", kAsc1Words},
        {"ascconfig2", kAsc2Words},
};

}  // namespace

void InspectTables(ConfigReport* r) {
    for (const TableFile& t : kTableFiles) {
        FileChoice f;
        f.role = t.name;
        f.expectedSize = t.values * 2;
        char path[kPathBytes] = {};
        if (Orlune::GetRealConfigFile(t.name, "bin", path) != nullptr) {
            f.path = path;
            struct stat st;
            f.size = orlune_platform::DevStat(path, &st) == 0 ? st.st_size : -1;
        }
        const std::string generic = std::string(kKivDir) + t.name + ".bin";
        if (f.path.empty()) {
            // Tell a file that is there but cannot be used (a directory, a device node, an
            // oversized or unreadable file) from one that is absent.
            const ConfigFileOpen opened = OpenConfigFile(generic.c_str(), ConfigFileKind::Table);
            if (opened.file != nullptr) {
                fclose(opened.file);
            }
            const bool absent = opened.error == ENOENT;
            f.choice = absent ? "missing" : "refused";
            f.why = absent ? "the table stays zero" : opened.reason;
            r->Add(Severity::Error, absent ? "table_missing" : "table_refused",
                   absent ? std::string(t.name) + ".bin is missing: the table stays zero"
                          : generic + " refused: " + opened.reason + ": the table stays zero");
        } else {
            f.choice = f.path == generic ? "generic" : "product-specific";
            f.why = f.choice == "generic" && r->productKnown
                            ? "no usable " + std::string(t.name) + "_" + r->productName + ".bin"
                            : (f.choice == "generic" ? "no product name in the device tree"
                                                     : "product name " + r->productName);
            if (f.size < f.expectedSize) {
                r->Add(Severity::Error, "table_size",
                       f.path + " is " + std::to_string(f.size) + " bytes, expected " +
                               std::to_string(f.expectedSize) + ": the unread tail stays zero");
            } else if (f.size > f.expectedSize) {
                r->Add(Severity::Error, "table_size",
                       f.path + " is " + std::to_string(f.size) + " bytes, expected " +
                               std::to_string(f.expectedSize) + ": the extra bytes are ignored");
            }
        }
        r->files.push_back(f);
    }
    // ReadTWS reads neither file unless both exist.
    const size_t tws1 = r->files.size() - 7;
    const bool has1 = !r->files[tws1].path.empty();
    const bool has2 = !r->files[tws1 + 1].path.empty();
    if (has1 != has2) {
        r->Add(Severity::Error, "table_missing",
               std::string(has1 ? "tws_config1.bin" : "tws_config2.bin") +
                       " is not read either: both TWS tables need both files");
    }
}
