// The UI type of the virtual-map XML against the device tree's, as the effect's set-up compares
// them.
#include <stdlib.h>

#include <string>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"

namespace {

const char kUiTypeNode[] = "/proc/device-tree/soc/audio_alg_info/audio_capability/kiv_ui_type";

}  // namespace

void InspectUiType(ConfigReport* r) {
    r->uiTypeXml = PublishedTables().gUiType;
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(kUiTypeNode, resolved) == nullptr) {
        r->Add(Severity::Info, "ui_type", std::string("no ") + kUiTypeNode + " node to compare");
        return;
    }
    const ConfigFileOpen opened = OpenConfigFile(resolved, ConfigFileKind::Text);
    FILE* fp = opened.file;
    if (fp == nullptr) {
        r->Add(opened.refused ? Severity::Warning : Severity::Info, "ui_type",
               std::string(kUiTypeNode) + (opened.refused ? " refused: " : " cannot be opened: ") +
                       opened.reason);
        return;
    }
    char line[92] = {};
    const bool read = fgets(line, sizeof(line), fp) != nullptr;
    fclose(fp);
    if (!read) {
        r->Add(Severity::Warning, "ui_type", std::string(kUiTypeNode) + " is empty");
        return;
    }
    r->uiTypeNodePresent = true;
    r->uiTypeNode = atoi(line);
    if (r->uiTypeNode != r->uiTypeXml) {
        r->Add(Severity::Error, "ui_type_mismatch",
               "UI type " + std::to_string(r->uiTypeXml) +
                       " of the virtual-map XML differs from the device tree's " +
                       std::to_string(r->uiTypeNode) + " (the XML value stays in force)");
    }
}
