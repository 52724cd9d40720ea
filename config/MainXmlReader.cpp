// The main XML configuration: tuning records by real id, the volume thresholds and the
// headphone-type words. Elements are merged into the process-wide tables; an id that is already
// present keeps its first record.
#include <string.h>

#include <memory>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "config/MainConfigChoice.h"
#include "config/TokenList.h"
#include "config/ValueCountObserver.h"
#include "config/XmlStream.h"
#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

constexpr int32_t kIdVolumeThr = 30160;
constexpr int32_t kIdHpTypeFirst = 30181;   // headphone-type words 0..255
constexpr int32_t kIdHpTypeSecond = 30182;  // headphone-type words 256..287
constexpr int kHpTypeFirstWords = 256;
// A record element takes up to this many values; only those within the record are stored.
constexpr int kRecordValueStep = 512;

// Elements of the file being read that stored a record or a fixed table (under the load lock).
int gRecordsTaken = 0;

struct Fill {
    int taken;    // values read (stored or dropped)
    bool ranOut;  // the list ended within the limit
    int given;    // all values of the list, counted only for the observer
};

// Reads values from `first` on: at most `limit` of them, of which the first `capacity` are
// stored word by word into `target` (the bytes of a table or record).
Fill FillWords(TokenList& tokens, const char* first, unsigned char* target, int capacity,
               int limit) {
    Fill fill{0, false, 0};
    const char* token = first;
    while (token != nullptr && fill.taken < limit) {
        if (fill.taken < capacity) {
            const int16_t value = HexToken(token);
            memcpy(target + 2 * fill.taken, &value, sizeof(value));
        }
        ++fill.taken;
        token = tokens.Next();
    }
    fill.ranOut = token == nullptr;
    fill.given = fill.taken;
    if (token != nullptr && GetValueCountObserver() != nullptr) {
        for (; token != nullptr; token = tokens.Next()) {
            ++fill.given;
        }
    }
    return fill;
}

void ReportValueCount(int32_t id, int given, int capacity) {
    if (ValueCountObserver observer = GetValueCountObserver()) {
        observer(id, given, capacity);
    }
}

void LogNoValues() {
    ORLUNE_LOGE(kTagMobile, "StartElement() paramPtr or elem is null, elemNum: %d", 0);
}

// Ids 30160, 30181 and 30182 fill fixed tables from their first word on.
void FillFixedTable(ParamTableSet& tables, int32_t id, TokenList& tokens, const char* first) {
    int16_t* table = Orlune::gVolumeThrRaw;
    int capacity = kVolumeThrRawWords;
    if (id == kIdHpTypeFirst) {
        table = tables.gParameterHpType;
        capacity = kHpTypeFirstWords;
    } else if (id == kIdHpTypeSecond) {
        table = tables.gParameterHpType + kHpTypeFirstWords;
        capacity = kHpTypeWords - kHpTypeFirstWords;
    }
    if (first == nullptr) {
        LogNoValues();
        ReportValueCount(id, 0, capacity);
        return;
    }
    const Fill fill =
            FillWords(tokens, first, reinterpret_cast<unsigned char*>(table), capacity, capacity);
    if (fill.ranOut) {
        ORLUNE_LOGI(kTagMobile, "XMLLengthCheck:%d", id);
    }
    ReportValueCount(id, fill.given, capacity);
    ++gRecordsTaken;
}

// Any other id: the staging record of its parity takes the values, then a copy of the whole
// staging record is merged. The staging records are never cleared, so a short list patches only
// the front of what the previous element of the same parity left.
void MergeRecord(ParamTableSet& tables, int32_t id, TokenList& tokens, const char* first) {
    const bool even = id % 2 == 0;
    const bool odd = id % 2 == 1;  // a negative odd id has no target
    unsigned char* target = nullptr;
    int capacity = 0;
    if (odd) {
        target = reinterpret_cast<unsigned char*>(&Orlune::gTempRealParam);
        capacity = sizeof(AudioOrluneMobilePara) / 2;
    } else if (even) {
        target = reinterpret_cast<unsigned char*>(&Orlune::gTempRealParamExt);
        capacity = sizeof(AudioOrluneMobileParaExt) / 2;
    }
    if (target == nullptr || first == nullptr) {
        LogNoValues();
        ReportValueCount(id, 0, capacity);
    } else {
        const Fill fill = FillWords(tokens, first, target, capacity, kRecordValueStep);
        if (fill.ranOut) {
            ORLUNE_LOGI(kTagMobile, "XMLLengthCheck:%d", id);
        }
        ReportValueCount(id, fill.given, capacity);
    }
    ORLUNE_LOGI(kTagMobile, "attrIDValue:%d", id);
    // emplace never replaces: the first element with an id wins.
    if (odd) {
        tables.gRealMapTable.emplace(id, Orlune::gTempRealParam);
        ++gRecordsTaken;
    } else if (even) {
        tables.gRealMapTableExt.emplace(id, Orlune::gTempRealParamExt);
        ++gRecordsTaken;
    }
}

enum class MainRead { NotOpened, Broken, NoRecord, Read };

MainRead ReadMainFile(const char* path) {
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(path, resolved) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "read kiv_config.xml realpath is null");
        resolved[0] = '\0';
    }
    ORLUNE_LOGI(kTagMobile, "Read orlune config file %s", resolved);
    FILE* fp = OpenConfigFile(resolved, ConfigFileKind::Xml).file;
    if (fp == nullptr) {
        return MainRead::NotOpened;
    }
    gRecordsTaken = 0;
    const bool ok = ParseConfigXml(fp, Orlune::StartElement, "KivReadConfigFromXML status error");
    fclose(fp);
    return !ok ? MainRead::Broken : gRecordsTaken == 0 ? MainRead::NoRecord : MainRead::Read;
}

// Everything that reading the main XML changes, so that a rejected downloaded file can be
// undone as a whole.
struct MainXmlSnapshot {
    explicit MainXmlSnapshot(const ParamTableSet& tables)
        : tables(tables), temp(Orlune::gTempRealParam), tempExt(Orlune::gTempRealParamExt) {
        memcpy(thresholds, Orlune::gVolumeThrRaw, sizeof(thresholds));
    }
    void Restore(ParamTableSet& target) const {
        target = tables;
        Orlune::gTempRealParam = temp;
        Orlune::gTempRealParamExt = tempExt;
        memcpy(Orlune::gVolumeThrRaw, thresholds, sizeof(thresholds));
    }

    ParamTableSet tables;
    AudioOrluneMobilePara temp;
    AudioOrluneMobileParaExt tempExt;
    int16_t thresholds[kVolumeThrRawWords];
};

}  // namespace

void Orlune::KivReadConfigFromXML(bool musicRegionEnable) {
    ConfigUpdate update;  // the elements go into the set being built
    char path[kPathBytes] = {};
    char local[kPathBytes] = {};
    bool downloaded = false;
    if (!ChooseMainConfigFile(musicRegionEnable, path, &downloaded, local)) {
        return;
    }
    if (!downloaded) {
        ReadMainFile(path);
        return;
    }
    // A downloaded file is taken whole or not at all: a cut or empty download must not leave
    // the device with half its tuning and nothing to fall back on.
    const auto before = std::make_unique<MainXmlSnapshot>(update.Tables());
    const MainRead read = ReadMainFile(path);
    if (read == MainRead::Read) {
        return;
    }
    before->Restore(update.Tables());
    const char* why = read == MainRead::NotOpened ? "cannot be read"
                      : read == MainRead::Broken  ? "is not well-formed"
                                                  : "holds no record";
    ORLUNE_LOGE(kTagMobile, "downloaded %s %s, reading the local kiv_config.xml instead", path,
                why);
    if (IsNoPath(local)) {
        ORLUNE_LOGE(kTagMobile, "read kiv_config.xml:path is null");
        return;
    }
    ReadMainFile(local);
}

void Orlune::StartElement(void* /*userData*/, const char* name, const char** attrs) {
    ConfigUpdate update;
    const bool isNv = strcmp(name, "NV") == 0;
    if (attrs == nullptr || attrs[0] == nullptr) {
        if (isNv) {
            ORLUNE_LOGE(kTagMobile, "StartElement() attrValue is null");
        }
        return;
    }
    const char* idText = nullptr;
    const char* valueText = nullptr;
    for (int i = 0; attrs[i] != nullptr && attrs[i + 1] != nullptr; i += 2) {
        if (strcmp(attrs[i], "ID") == 0) {
            idText = attrs[i + 1];
        } else if (strcmp(attrs[i], "PARAM_VALUE") == 0) {
            valueText = attrs[i + 1];
        }
    }
    if (!isNv) {
        return;
    }
    if (idText == nullptr) {
        ORLUNE_LOGE(kTagMobile, "StartElement() attrValue is null");
        return;
    }
    int32_t id = 0;
    if (!IntegerAttr(idText, &id)) {
        LogOutOfRange("StartElement()", "ID", idText);
        return;
    }
    if (valueText == nullptr) {
        ORLUNE_LOGE(kTagMobile, "StartElement() attrValue is null");
        return;
    }
    char value[kXmlValueBufferBytes] = {};
    if (strcpy_s(value, sizeof(value), valueText) != EOK) {
        ORLUNE_LOGE(kTagMobile, "StartElement() strcpy_s fail");
    }
    // A value that is no 16-bit word refuses the whole element: none of it is stored.
    if (const char* unfit = FirstUnfitToken(value)) {
        LogOutOfRange("StartElement()", "PARAM_VALUE", unfit);
        return;
    }
    TokenList tokens(value);
    const char* first = tokens.Next();
    if (id == kIdVolumeThr || id == kIdHpTypeFirst || id == kIdHpTypeSecond) {
        FillFixedTable(update.Tables(), id, tokens, first);
    } else {
        MergeRecord(update.Tables(), id, tokens, first);
    }
}

void Orlune::EndElement(void* userData, const char* /*name*/) {
    int32_t* depth = static_cast<int32_t*>(userData);
    if (depth != nullptr) {
        --*depth;
    }
}

int Orlune::XmlParamParse(char* text, const char* delimiters, int16_t* target, int count) {
    if (text == nullptr || delimiters == nullptr) {
        LogNoValues();
        return 0;
    }
    TokenList tokens(text, delimiters);
    const char* first = tokens.Next();
    if (target == nullptr || first == nullptr || count < 1) {
        LogNoValues();
        return 0;
    }
    const Fill fill =
            FillWords(tokens, first, reinterpret_cast<unsigned char*>(target), count, count);
    if (fill.ranOut) {
        ORLUNE_LOGI(kTagMobile, "XMLLengthCheck:%d", fill.taken);
    }
    return fill.taken;
}

bool Orlune::XMLLengthCheck(int a, int b) {
    return a == 0 && b < 511;
}
