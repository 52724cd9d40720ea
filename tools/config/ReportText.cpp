#include <string>

#include "config/NameLists.h"
#include "tools/config/ReportOutput.h"

const char* SeverityName(Severity severity) {
    switch (severity) {
        case Severity::Error:
            return "error";
        case Severity::Warning:
            return "warning";
        default:
            return "info";
    }
}

const char* IdGroupName(IdGroup group) {
    switch (group) {
        case IdGroup::Headphone:
            return "headphone";
        case IdGroup::Speaker:
            return "speaker";
        default:
            return "headphone-extra";
    }
}

namespace {

void PrintIds(const ConfigReport& r, IdGroup group, const char* title, FILE* out) {
    int total = 0, resolved = 0;
    for (const IdResolution& id : r.ids) {
        if (id.group == group) {
            ++total;
            resolved += id.resolved ? 1 : 0;
        }
    }
    fprintf(out, "  %s: %d of %d resolve\n", title, resolved, total);
    for (const IdResolution& id : r.ids) {
        if (id.group != group) {
            continue;
        }
        if (id.resolved) {
            fprintf(out, "    %5d %-38s ID %d EXTID %d%s\n", id.virtualId, id.name.c_str(), id.id,
                    id.extId, id.hasTables ? "" : " (no tables)");
        } else if (id.mapped) {
            fprintf(out, "    %5d %-38s ID %d EXTID %d: records missing\n", id.virtualId,
                    id.name.c_str(), id.id, id.extId);
        } else {
            fprintf(out, "    %5d %-38s not mapped\n", id.virtualId, id.name.c_str());
        }
    }
}

}  // namespace

void PrintReportText(const ConfigReport& r, FILE* out) {
    fprintf(out, "device root: %s\n", r.deviceRoot.c_str());
    fprintf(out, "properties: %s\n",
            r.propertiesFile.empty() ? "(none: every property has its default)"
                                     : r.propertiesFile.c_str());
    fprintf(out, "product name: %s\n", r.productKnown ? r.productName.c_str() : "(none)");
    fprintf(out, "region: %s, region files %s\n", r.region.c_str(),
            r.regionEnabled ? "enabled" : "disabled");
    if (r.ota.offered) {
        fprintf(out, "over-the-air: version %s (%d), local version %d: %s\n", r.ota.version.c_str(),
                r.ota.versionNumber, r.ota.localVersion, r.ota.taken ? "taken" : "not taken");
    } else {
        fprintf(out, "over-the-air: none offered, local version %d\n", r.ota.localVersion);
    }

    fprintf(out, "\nfiles\n");
    for (const FileChoice& f : r.files) {
        fprintf(out, "  %-16s %-44s %s", f.role.c_str(), f.path.empty() ? "-" : f.path.c_str(),
                f.choice.c_str());
        if (f.expectedSize >= 0 && f.size >= 0) {
            fprintf(out, ", %lld bytes%s", f.size, f.size == f.expectedSize ? "" : " (wrong size)");
        }
        fprintf(out, " (%s)\n", f.why.c_str());
    }

    fprintf(out, "\nvirtual ids\n");
    PrintIds(r, IdGroup::Headphone, "headphone ids with table pointers", out);
    PrintIds(r, IdGroup::Speaker, "speaker ids with table pointers", out);
    PrintIds(r, IdGroup::HeadphoneExtra, "further headphone ids (kinds 1..3, levels 4..6)", out);

    fprintf(out, "\nvolume thresholds (switch %d)\n", r.thresholdRaw[0]);
    for (int row = 0; row < 6; ++row) {
        fprintf(out, "  %-10s", kSceneNames[row]);
        for (int i = 0; i < 6; ++i) {
            fprintf(out, " %6d", r.thresholdRaw[1 + 6 * row + i]);
        }
        fprintf(out, "\n");
    }
    fprintf(out, "\nui type: xml %d, device tree %s\n", r.uiTypeXml,
            r.uiTypeNodePresent ? std::to_string(r.uiTypeNode).c_str() : "(none)");

    fprintf(out, "\nfindings\n");
    if (r.findings.empty()) {
        fprintf(out, "  none\n");
    }
    for (const Finding& f : r.findings) {
        fprintf(out, "  %s: %s\n", SeverityName(f.severity), f.message.c_str());
    }
    fprintf(out, "\n%d error(s), %d warning(s)\n", r.Count(Severity::Error),
            r.Count(Severity::Warning));
}
