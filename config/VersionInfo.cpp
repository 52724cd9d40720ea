// The version of the local configuration, from the words of version.txt.
#include <string.h>

#include <string>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "config/TokenList.h"
#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

constexpr size_t kWordBytes = 100;
// The number starts at this index of a word such as version=1.2.3, wherever "version" stands in
// the word.
constexpr size_t kVersionValueIndex = 8;

std::string WithoutPoints(const char* text) {
    std::string out;
    for (const char* p = text; *p != '\0'; ++p) {
        if (*p != '.') {
            out += *p;
        }
    }
    return out;
}

}  // namespace

int32_t Orlune::GetVersionInfo(const std::string& dir) {
    const std::string path = dir + "version.txt";
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(path.c_str(), resolved) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "read version.txt realpath is null");
        return -1;
    }
    ORLUNE_LOGI(kTagMobile, "Read version.txt realpath %s", resolved);
    FILE* fp = OpenConfigFile(resolved, ConfigFileKind::Text).file;
    if (fp == nullptr) {
        ORLUNE_LOGE(kTagMobile, "open %s fail", path.c_str());
        return -1;
    }
    int32_t version = -1;
    char word[kWordBytes] = {};
    while (fscanf_s(fp, "%s", word, static_cast<unsigned>(sizeof(word))) == 1) {
        const size_t len = strnlen(word, sizeof(word));
        if (len < 7 || strstr(word, "version") == nullptr) {
            continue;
        }
        // A word too short to reach the value index has an empty value, which reads as 0.
        const char* value = len > kVersionValueIndex ? word + kVersionValueIndex : "";
        const std::string digits = WithoutPoints(value);
        if (!DecimalText(digits.c_str(), &version)) {
            LogOutOfRange("read version.txt", "version", digits.c_str());
        }
    }
    fclose(fp);
    return version;
}
