// Which XML files were read and why: product name, region, over-the-air copy.
#include <stdlib.h>
#include <string.h>

#include <set>
#include <string>

#include <cutils/properties.h>
#include <vardocust/download_cfg.h>

#include "config/ConfigPaths.h"
#include "config/TokenList.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"

namespace {

const char kMainReadPrefix[] = "Read orlune config file ";
const char kVmapReadPrefix[] = "Read orlune config vmap file ";

// The path a reader logged that it read, or "" when it logged none.
std::string PathRead(const LogCollector& log, int step, const char* prefix) {
    std::string path;
    for (const std::string& m : log.Messages(step)) {
        if (m.rfind(prefix, 0) == 0) {
            path = m.substr(strlen(prefix));
        }
    }
    return path;
}

int32_t VersionNumber(const std::string& text) {
    std::string digits;
    for (char c : text) {
        if (c != '.') {
            digits += c;
        }
    }
    int32_t version = -1;  // beyond 32 bits: the library refuses it too
    DecimalText(digits.c_str(), &version);
    return version;
}

void ReadOtaState(ConfigReport* r) {
    r->ota.localVersion = Orlune::GetVersionInfo(kKivDir);
    DownloadCfgInfo* info = get_download_cfg_file(kOtaDir, kOtaMainXml);
    r->ota.serviceAnswered = info != nullptr;
    if (info != nullptr && info->found != 0) {
        r->ota.offered = true;
        r->ota.version = std::string(info->version, strnlen(info->version, sizeof(info->version)));
        r->ota.versionNumber = VersionNumber(r->ota.version);
    }
    free(info);
}

// Fills choice and why of an XML file read from `path` with base name `base`.
void Classify(const ConfigReport& r, const std::string& base, FileChoice* f) {
    const std::string regionNote =
            r.regionEnabled && r.region != kRegionDefault ? "region " + r.region + ", " : "";
    const std::string generic = std::string(kKivDir) + base + ".xml";
    const std::string product = std::string(kKivDir) + base + "_" + r.productName + ".xml";
    if (f->path.empty()) {
        f->choice = "missing";
        f->why = regionNote + "neither kiv/" + base + ".xml nor a product-specific form exists";
    } else if (f->path.rfind(kOtaDir, 0) == 0) {
        f->choice = "over-the-air";
        f->why = "downloaded version " + r.ota.version + " (" +
                 std::to_string(r.ota.versionNumber) + ") is newer than the local version " +
                 std::to_string(r.ota.localVersion);
    } else if (r.productKnown && f->path == product) {
        f->choice = "product-specific";
        f->why = regionNote + "product name " + r.productName;
    } else if (f->path == generic) {
        f->choice = "generic";
        f->why = regionNote + (r.productKnown
                                       ? "no usable kiv/" + base + "_" + r.productName + ".xml"
                                       : std::string("no product name in the device tree"));
    } else {
        f->choice = "resolved";
        f->why = regionNote + "a link resolved to this path";
    }
}

std::string OtaNotTakenReason(const OtaState& ota) {
    if (ota.localVersion == -1) {
        return "the local /odm/etc/kiv/version.txt gives no version";
    }
    return "version " + std::to_string(ota.versionNumber) + " is not newer than the local " +
           std::to_string(ota.localVersion);
}

}  // namespace

void InspectFiles(const LogCollector& log, ConfigReport* r) {
    r->productKnown = Orlune::gGetProductNameResult != 0;
    r->productName = std::string(Orlune::gProductName,
                                 strnlen(Orlune::gProductName, sizeof(Orlune::gProductName)));
    char region[PROPERTY_VALUE_MAX] = {};
    property_get(kRegionProperty, region, kRegionDefault);
    r->region = region;
    ReadOtaState(r);

    const bool regionFiles = r->regionEnabled && r->region != kRegionDefault;
    FileChoice main{"main XML", PathRead(log, LoadStepIndex("main XML"), kMainReadPrefix), "", ""};
    Classify(*r, regionFiles ? "kiv_config_" + r->region : "kiv_config", &main);
    r->ota.taken = main.choice == "over-the-air";
    if (r->ota.offered && !r->ota.taken) {
        main.why += "; downloaded version " + r->ota.version +
                    " not taken: " + OtaNotTakenReason(r->ota);
    }
    FileChoice vmap{"virtual-map XML",
                    PathRead(log, LoadStepIndex("virtual-map XML"), kVmapReadPrefix), "", ""};
    Classify(*r, regionFiles ? "kiv_config_" + r->region : "kiv_config_vmap", &vmap);

    for (const FileChoice* f : {&main, &vmap}) {
        if (f->choice == "missing") {
            r->Add(Severity::Error, "file_missing",
                   "no " + f->role + " was read (" + f->why + ")" +
                           (f == &main ? ": every record keeps its built-in value"
                                       : ": no virtual id resolves"));
        }
    }
    if (!r->regionEnabled && r->region != kRegionDefault) {
        r->Add(Severity::Info, "region",
               "ro.config.music_region is " + r->region +
                       ": its files are read only when parameter 1 enables regions before the "
                       "first set-up (check them with --region)");
    }
    r->files.push_back(main);
    r->files.push_back(vmap);

    // Files the library refused while loading, with its own reason; it treats them as missing.
    std::set<std::string> refused;
    for (const CollectedLine& line : log.Lines()) {
        const std::string& m = line.message;
        if (line.step >= 0 && m.rfind("config file ", 0) == 0 &&
            m.find(" refused: ") != std::string::npos && refused.insert(m).second) {
            r->Add(Severity::Error, "file_refused", m + ": read as if it were missing");
        }
    }
    const int channelOut = property_get_int32("msc.brisel.config_channel_out", 2);
    if (channelOut != 2 && channelOut != 4) {
        r->Add(Severity::Warning, "config_channel_out",
               "msc.brisel.config_channel_out is " + std::to_string(channelOut) +
                       ", neither 2 nor 4: the effect takes the four-channel tables");
    }
}
