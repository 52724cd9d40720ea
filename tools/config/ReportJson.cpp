#include <string>

#include "config/NameLists.h"
#include "tools/config/ReportOutput.h"

namespace {

std::string Quoted(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (c < 0x20) {
                    char esc[8];
                    snprintf(esc, sizeof(esc), "\\u%04x", c);
                    out += esc;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

const char* Bool(bool b) {
    return b ? "true" : "false";
}

}  // namespace

void PrintReportJson(const ConfigReport& r, FILE* out) {
    fprintf(out, "{\n  \"device_root\": %s,\n", Quoted(r.deviceRoot).c_str());
    fprintf(out, "  \"properties\": %s,\n",
            r.propertiesFile.empty() ? "null" : Quoted(r.propertiesFile).c_str());
    fprintf(out, "  \"product_name\": %s,\n",
            r.productKnown ? Quoted(r.productName).c_str() : "null");
    fprintf(out, "  \"region\": {\"property\": %s, \"enabled\": %s},\n", Quoted(r.region).c_str(),
            Bool(r.regionEnabled));
    fprintf(out,
            "  \"over_the_air\": {\"offered\": %s, \"version\": %s, \"version_number\": %d, "
            "\"local_version\": %d, \"taken\": %s},\n",
            Bool(r.ota.offered), Quoted(r.ota.version).c_str(), r.ota.versionNumber,
            r.ota.localVersion, Bool(r.ota.taken));

    fprintf(out, "  \"files\": [\n");
    for (size_t i = 0; i < r.files.size(); ++i) {
        const FileChoice& f = r.files[i];
        fprintf(out, "    {\"role\": %s, \"path\": %s, \"choice\": %s, \"why\": %s",
                Quoted(f.role).c_str(), f.path.empty() ? "null" : Quoted(f.path).c_str(),
                Quoted(f.choice).c_str(), Quoted(f.why).c_str());
        if (f.expectedSize >= 0) {
            fprintf(out, ", \"size\": %lld, \"expected_size\": %lld", f.size, f.expectedSize);
        }
        fprintf(out, "}%s\n", i + 1 < r.files.size() ? "," : "");
    }
    fprintf(out, "  ],\n");

    int pointerSet = 0, pointerSetResolved = 0, extra = 0, extraResolved = 0;
    for (const IdResolution& id : r.ids) {
        int& total = id.group == IdGroup::HeadphoneExtra ? extra : pointerSet;
        int& resolved = id.group == IdGroup::HeadphoneExtra ? extraResolved : pointerSetResolved;
        ++total;
        resolved += id.resolved ? 1 : 0;
    }
    fprintf(out,
            "  \"virtual_ids\": {\"pointer_set_total\": %d, \"pointer_set_resolved\": %d, "
            "\"headphone_extra_total\": %d, \"headphone_extra_resolved\": %d, \"ids\": [\n",
            pointerSet, pointerSetResolved, extra, extraResolved);
    for (size_t i = 0; i < r.ids.size(); ++i) {
        const IdResolution& id = r.ids[i];
        fprintf(out, "    {\"virtual_id\": %d, \"group\": \"%s\", \"name\": %s, \"resolved\": %s",
                id.virtualId, IdGroupName(id.group), Quoted(id.name).c_str(), Bool(id.resolved));
        if (id.mapped) {
            fprintf(out, ", \"id\": %d, \"ext_id\": %d, \"tables\": %s", id.id, id.extId,
                    Bool(id.hasTables));
        }
        fprintf(out, "}%s\n", i + 1 < r.ids.size() ? "," : "");
    }
    fprintf(out, "  ]},\n");

    fprintf(out, "  \"ui_type\": {\"xml\": %d, \"device_tree\": %s},\n", r.uiTypeXml,
            r.uiTypeNodePresent ? std::to_string(r.uiTypeNode).c_str() : "null");
    fprintf(out, "  \"volume_thresholds\": {\"switch\": %d", r.thresholdRaw[0]);
    for (int row = 0; row < 6; ++row) {
        fprintf(out, ", \"%s\": [", kSceneNames[row]);
        for (int i = 0; i < 6; ++i) {
            fprintf(out, "%s%d", i == 0 ? "" : ", ", r.thresholdRaw[1 + 6 * row + i]);
        }
        fprintf(out, "]");
    }
    fprintf(out, "},\n  \"findings\": [\n");
    for (size_t i = 0; i < r.findings.size(); ++i) {
        const Finding& f = r.findings[i];
        fprintf(out, "    {\"severity\": \"%s\", \"kind\": %s, \"message\": %s}%s\n",
                SeverityName(f.severity), Quoted(f.kind).c_str(), Quoted(f.message).c_str(),
                i + 1 < r.findings.size() ? "," : "");
    }
    fprintf(out, "  ],\n  \"errors\": %d,\n  \"warnings\": %d\n}\n", r.Count(Severity::Error),
            r.Count(Severity::Warning));
}
