// The seven binary coefficient tables: raw little-endian 16-bit values without header, read once
// per process into the static tables. A missing file leaves its table zero, a short one its
// tail.
#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "base/Log.h"
#include "effect/orlune.h"

namespace {

constexpr int kTwsLength = kTwsSceneWords;
constexpr long kTwsSceneBytes = kTwsSceneWords * 2L;

// The configured file `name`.bin, resolved and opened, or null. `realpathMessage` is logged
// when the found file cannot be resolved (the open then fails).
FILE* OpenTable(const char* name, const char* realpathMessage) {
    char path[kPathBytes] = {};
    if (Orlune::GetRealConfigFile(name, "bin", path) == nullptr) {
        return nullptr;
    }
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(path, resolved) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s", realpathMessage);
        resolved[0] = '\0';
    }
    return OpenConfigFile(resolved, ConfigFileKind::Table).file;
}

// ReadTWS opens both files before reading either; it has its own messages for each step.
FILE* OpenTwsFile(const char* name) {
    char path[kPathBytes] = {};
    if (Orlune::GetRealConfigFile(name, "bin", path) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s: get TWS config filename failed", "ReadTWS");
        return nullptr;
    }
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(path, resolved) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s: ReadTWS realpath is null", "ReadTWS");
        return nullptr;
    }
    FILE* fp = OpenConfigFile(resolved, ConfigFileKind::Table).file;
    if (fp == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s: open TWS config failed", "ReadTWS");
    }
    return fp;
}

}  // namespace

int Orlune::ReadTWS(int16_t* tables[2], int length) {
    if (length != kTwsLength) {
        ORLUNE_LOGE(kTagMobile, "%s: length error", "ReadTWS");
        return -1;
    }
    FILE* first = OpenTwsFile("tws_config1");
    if (first == nullptr) {
        return 0;
    }
    FILE* second = OpenTwsFile("tws_config2");
    if (second == nullptr) {
        fclose(first);
        return 0;
    }
    FILE* files[2] = {first, second};
    bool complete = true;
    for (int scene = 0; scene < kTwsScenes && complete; ++scene) {
        for (int config = 0; config < 2; ++config) {
            fseek(files[config], scene * kTwsSceneBytes, SEEK_SET);
            const size_t got = fread(tables[config] + scene * kTwsSceneWords, sizeof(int16_t),
                                     kTwsSceneWords, files[config]);
            if (got != static_cast<size_t>(kTwsSceneWords)) {
                ORLUNE_LOGE(kTagMobile, "%s: fread error at scene %d, config %d, elmtRead = %zu",
                            "ReadTWS", scene, config, got);
                complete = false;
                break;
            }
        }
    }
    if (complete) {
        ORLUNE_LOGI(kTagMobile, "%s: ReadTWS config complete", "ReadTWS");
    }
    fclose(first);
    fclose(second);
    return 0;
}

int Orlune::ReadSUR(int16_t* table, int length) {
    if (length != kSurReadLength) {
        ORLUNE_LOGE(kTagMobile, "%s: length error", "ReadSUR");
        return -1;
    }
    FILE* fp = OpenTable("sur_config", "ReadSUR: ReadSUR realpath is null");
    if (fp == nullptr) {
        return -1;
    }
    const size_t want = static_cast<size_t>(length) * 2;
    const size_t got = fread(table, sizeof(int16_t), want, fp);
    if (got != want) {
        ORLUNE_LOGW(kTagMobile, "%s: fread error, elmtRead = %d", "ReadSUR", static_cast<int>(got));
    }
    fclose(fp);
    ORLUNE_LOGI(kTagMobile, "%s: ReadSUR config complete", "ReadSUR");
    return 0;
}

int Orlune::ReadLPH(int16_t (*table)[kLphRowWords], int length) {
    if (length != kLphRowWords) {
        ORLUNE_LOGE(kTagMobile, "%s: length error", "ReadLPH");
        return -1;
    }
    FILE* fp = OpenTable("lph_config", "ReadLPH: ReadLPH realpath is null");
    if (fp == nullptr) {
        return -1;
    }
    for (int row = 0; row < kLphRows; ++row) {
        const size_t got = fread(table[row], sizeof(int16_t), kLphRowWords, fp);
        if (got != static_cast<size_t>(kLphRowWords)) {
            ORLUNE_LOGW(kTagMobile, "%s: fread error, elmtRead = %d", "ReadLPH",
                        static_cast<int>(got));
        }
    }
    fclose(fp);
    ORLUNE_LOGI(kTagMobile, "%s: ReadLPH config complete", "ReadLPH");
    return 0;
}

int Orlune::ReadTEH(int16_t* table, int length) {
    if (length != kTehWords) {
        ORLUNE_LOGE(kTagMobile, "%s: length error", "ReadTEH");
        return -1;
    }
    FILE* fp = OpenTable("teh_config", "ReadTEH: ReadTEH realpath is null");
    if (fp == nullptr) {
        return -1;
    }
    const size_t got = fread(table, sizeof(int16_t), kTehWords, fp);
    if (got != static_cast<size_t>(kTehWords)) {
        ORLUNE_LOGE(kTagMobile, "%s: fread error, elmtRead = %d", "ReadTEH", static_cast<int>(got));
    }
    fclose(fp);
    ORLUNE_LOGI(kTagMobile, "Read config complete");
    return 0;
}

namespace {

// ReadASC1 and ReadASC2 take their length as given: the caller passes its table's size.
int ReadAsc(const char* name, const char* realpathMessage, int16_t* table, int length) {
    FILE* fp = OpenTable(name, realpathMessage);
    if (fp == nullptr) {
        return -1;
    }
    const size_t want = length > 0 ? static_cast<size_t>(length) : 0;
    const size_t got = fread(table, sizeof(int16_t), want, fp);
    if (got != want) {
        ORLUNE_LOGI(kTagMobile, "fread error, elmtRead = %d", static_cast<int>(got));
    }
    fclose(fp);
    ORLUNE_LOGI(kTagMobile, "Read config complete");
    return 0;
}

}  // namespace

int Orlune::ReadASC1(int16_t* table, int length) {
    return ReadAsc("ascconfig1", "ReadASC1 realpath is null", table, length);
}

int Orlune::ReadASC2(int16_t* table, int length) {
    return ReadAsc("ascconfig2", "ReadASC2 realpath is null", table, length);
}
