// The elements of both XML files: repeated ids, value lists shorter or longer than their
// target, and every element the readers skipped, as their log lines tell.
#include <stdio.h>
#include <string.h>

#include <map>
#include <string>

#include <expat.h>
#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ValueCountObserver.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"
#include "config/ConfigLoad.h"

namespace {

std::vector<ValueCount> sCounts;

void RecordCount(int32_t id, int given, int capacity) {
    sCounts.push_back({id, given, capacity});
}

// Messages of the readers that mean an element or file was skipped, and what that means.
struct LogRule {
    const char* prefix;
    Severity severity;
    const char* kind;
    const char* meaning;
};

constexpr LogRule kLogRules[] = {
        {"StartElement() attrValue is null", Severity::Error, "element_skipped",
         "main XML: an NV element without ID or PARAM_VALUE was skipped"},
        {" StartElementMapTable() attrNUMID or attrID or attrEXTID is null", Severity::Error,
         "element_skipped",
         "virtual-map XML: an NV element without NUMID, ID or EXTID was skipped"},
        {"StartElement() strcpy_s fail", Severity::Error, "value_too_long",
         "a PARAM_VALUE of 3000 characters or more was dropped whole"},
        {"unsupport cfg id:", Severity::Warning, "element_skipped",
         "virtual-map XML: a CFG element with a NUMID other than 0 was ignored"},
        {"XmlCfgParamParse cfgID is null", Severity::Error, "element_skipped",
         "virtual-map XML: a CFG element without NUMID was ignored"},
        {"XmlCfgParamParse cfgValue is null", Severity::Error, "element_skipped",
         "virtual-map XML: a CFG element without PARAM_VALUE was ignored"},
        {"XmlHpMapParse cfgID is null", Severity::Error, "element_skipped",
         "virtual-map XML: an HPMAP element without NAME was ignored"},
        {"XmlHpMapParse cfgValue is null", Severity::Error, "element_skipped",
         "virtual-map XML: an HPMAP element without NUMID was ignored"},
        {"XmlHpMapParse strcpy_s fail", Severity::Error, "value_too_long",
         "virtual-map XML: an HPMAP NAME of 3000 characters or more became an empty name"},
};

// Where expat stops in a file, for a syntax error the reader reported.
std::string SyntaxErrorPlace(const std::string& devicePath) {
    FILE* fp = OpenConfigFile(devicePath.c_str(), ConfigFileKind::Xml).file;
    if (fp == nullptr) {
        return "";
    }
    XML_Parser parser = XML_ParserCreate(nullptr);
    std::string place;
    char chunk[4096];
    for (;;) {
        const size_t got = fread(chunk, 1, sizeof(chunk), fp);
        const bool final = got < sizeof(chunk);
        if (XML_Parse(parser, chunk, static_cast<int>(got), final) == XML_STATUS_ERROR) {
            place = " at line " + std::to_string(XML_GetCurrentLineNumber(parser)) + ": " +
                    XML_ErrorString(XML_GetErrorCode(parser));
            break;
        }
        if (final) {
            break;
        }
    }
    XML_ParserFree(parser);
    fclose(fp);
    return place;
}

void CheckDuplicateIds(const LogCollector& log, ConfigReport* r) {
    std::map<int32_t, int> seen;
    std::vector<int32_t> order;
    for (const std::string& m : log.Messages(LoadStepIndex("main XML"))) {
        int id = 0;
        if (sscanf(m.c_str(), "attrIDValue:%d", &id) == 1 && seen[id]++ == 0) {
            order.push_back(id);
        }
    }
    for (int32_t id : order) {
        if (seen[id] > 1) {
            r->duplicateIds.insert(id);
            r->Add(Severity::Error, "duplicate_id",
                   "main XML: " + std::to_string(seen[id] - 1) + " later element(s) with ID " +
                           std::to_string(id) + " dropped: the first element is kept");
        }
    }
}

void CheckDuplicateNumids(const LogCollector& log, ConfigReport* r) {
    std::map<int32_t, std::pair<int, int>> first;
    for (const std::string& m : log.Messages(LoadStepIndex("virtual-map XML"))) {
        int numId = 0, id = 0, extId = 0;
        if (sscanf(m.c_str(),
                   "StartElementMapTable attrNUMIDValue:%d, attrIDValue:%d, attrIDValue:%d", &numId,
                   &id, &extId) != 3) {
            continue;
        }
        auto known = first.find(numId);
        if (known == first.end()) {
            first[numId] = {id, extId};
        } else {
            r->duplicateNumids.insert(numId);
            r->Add(Severity::Error, "duplicate_numid",
                   "virtual-map XML: NUMID " + std::to_string(numId) + " -> ID " +
                           std::to_string(id) + " / EXTID " + std::to_string(extId) +
                           " dropped: an earlier element maps it to ID " +
                           std::to_string(known->second.first) + " / EXTID " +
                           std::to_string(known->second.second));
        }
    }
}

void CheckValueCounts(ConfigReport* r) {
    for (const ValueCount& c : sCounts) {
        const std::string id = "ID " + std::to_string(c.id);
        const bool record = c.id != 30160 && c.id != 30181 && c.id != 30182;
        const bool ext = record && c.id % 2 == 0;
        // Extended records own 356 words; the XML may run on into the pointer area.
        const int words = ext ? kExtParaWords : c.capacity;
        if (c.capacity == 0) {
            r->Add(Severity::Error, "no_target",
                   "main XML: " + id + " is negative and odd: the element has no record");
            continue;
        }
        if (c.given < words) {
            const std::string rest = record ? std::string("keep the previous ") +
                                                      (ext ? "even" : "odd") + " element's values"
                                            : "keep their earlier values";
            r->Add(Severity::Error, "short_values",
                   "main XML: " + id + " gives " + std::to_string(c.given) + " of " +
                           std::to_string(words) + " words; words " + std::to_string(c.given) +
                           ".." + std::to_string(words - 1) + " " + rest);
        } else if (c.given > c.capacity) {
            r->Add(Severity::Error, "values_beyond_end",
                   "main XML: " + id + " gives " + std::to_string(c.given) + " values; the " +
                           std::to_string(c.given - c.capacity) + " beyond its " +
                           std::to_string(c.capacity) + " words are dropped");
        } else if (c.given > words) {
            r->Add(Severity::Warning, "values_in_pointer_area",
                   "main XML: " + id + " gives " + std::to_string(c.given) +
                           " values; those past word 355 land in the table pointer area");
        }
    }
}

void ApplyLogRules(const LogCollector& log, ConfigReport* r) {
    for (const LogRule& rule : kLogRules) {
        int n = 0;
        for (const std::string& m : log.Messages(-2)) {
            n += m.rfind(rule.prefix, 0) == 0 ? 1 : 0;
        }
        if (n > 0) {
            r->Add(rule.severity, rule.kind,
                   std::string(rule.meaning) + (n > 1 ? " (" + std::to_string(n) + " times)" : ""));
        }
    }
    const struct {
        const char* message;
        const char* role;
    } kSyntax[] = {{"KivReadConfigFromXML status error", "main XML"},
                   {"KivReadConfigTableFromXML status error", "virtual-map XML"}};
    for (const auto& s : kSyntax) {
        for (const std::string& m : log.Messages(-2)) {
            if (m != s.message) {
                continue;
            }
            std::string path;
            for (const FileChoice& f : r->files) {
                path = f.role == s.role ? f.path : path;
            }
            r->Add(Severity::Error, "xml_syntax",
                   std::string(s.role) + " " + path + ": syntax error" + SyntaxErrorPlace(path) +
                           "; the elements after it are ignored");
        }
    }
}

}  // namespace

void StartCountingValues() {
    sCounts.clear();
    SetValueCountObserver(RecordCount);
}

const std::vector<ValueCount>& CountedValues() {
    return sCounts;
}

int LoadStepIndex(const char* name) {
    for (size_t i = 0; i < kConfigLoadStepCount; ++i) {
        if (strcmp(kConfigLoadSteps[i].name, name) == 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void InspectElements(const LogCollector& log, ConfigReport* r) {
    SetValueCountObserver(nullptr);
    CheckDuplicateIds(log, r);
    CheckDuplicateNumids(log, r);
    CheckValueCounts(r);
    ApplyLogRules(log, r);
}
