#include "tools/sampleconfig/SampleSource.h"

#include <stdlib.h>
#include <string.h>

#include <fstream>
#include <sstream>

namespace {

// Splits a line into words; a word in double quotes may hold blanks.
bool SplitWords(const std::string& line, std::vector<std::string>* words) {
    words->clear();
    size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
            ++i;
        } else if (line[i] == '#') {
            break;
        } else if (line[i] == '"') {
            const size_t end = line.find('"', i + 1);
            if (end == std::string::npos) {
                return false;
            }
            words->push_back(line.substr(i + 1, end - i - 1));
            i = end + 1;
        } else {
            size_t end = i;
            while (end < line.size() && line[end] != ' ' && line[end] != '\t' &&
                   line[end] != '\r' && line[end] != '#') {
                ++end;
            }
            words->push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return true;
}

bool ToInt(const std::string& text, int* value) {
    char* end = nullptr;
    const long v = strtol(text.c_str(), &end, 0);
    if (text.empty() || *end != '\0' || v < -32768 || v > 65535) {
        return false;
    }
    *value = static_cast<int>(v);
    return true;
}

bool ToDouble(const std::string& text, double* value) {
    char* end = nullptr;
    *value = strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0';
}

template <int N>
int IndexOf(const char* const (&names)[N], const std::string& name) {
    for (int i = 0; i < N; ++i) {
        if (name == names[i]) {
            return i;
        }
    }
    return -1;
}

constexpr const char* kTableNames[] = {"tws_config1", "tws_config2", "sur_config", "lph_config",
                                       "teh_config",  "ascconfig1",  "ascconfig2"};

// One line of the source; false with a reason when it is not understood.
bool ParseLine(const std::vector<std::string>& w, SampleSource* s, std::string* why) {
    const std::string& key = w[0];
    const size_t n = w.size();
    if (key == "version" && n == 2) {
        s->version = w[1];
        return true;
    }
    if (key == "ui_type" && n == 2) {
        return ToInt(w[1], &s->uiType);
    }
    if (key == "volume_switch" && n == 2) {
        return ToInt(w[1], &s->volumeSwitch);
    }
    if (key == "thresholds" && n == 8) {
        const int scene = IndexOf(kSceneNames, w[1]);
        if (scene < 0 || scene > SCENE_LOWPOWER) {
            *why = "thresholds are configured for MUSIC .. LOWPOWER only";
            return false;
        }
        for (int i = 0; i < 6; ++i) {
            if (!ToInt(w[2 + i], &s->thresholds[scene][i])) {
                return false;
            }
        }
        s->thresholdsGiven[scene] = true;
        return true;
    }
    if (key == "speaker_level_step_db" && n == 2) {
        return ToDouble(w[1], &s->speakerLevelStepDb);
    }
    if (key == "headphone_kind_step_db" && n == 2) {
        return ToDouble(w[1], &s->headphoneKindStepDb);
    }
    if (key == "headphone_level_step_db" && n == 2) {
        return ToDouble(w[1], &s->headphoneLevelStepDb);
    }
    if ((key == "speaker" || key == "headphone") && n == 4) {
        const int index =
                key == "speaker" ? IndexOf(kSceneNames, w[1]) : IndexOf(kHpModeNames, w[1]);
        if (index < 0) {
            *why = "unknown name " + w[1];
            return false;
        }
        ToneSetting& t = key == "speaker" ? s->speaker[index] : s->headphone[index];
        t.given = true;
        return ToDouble(w[2], &t.gainDb) && ToDouble(w[3], &t.width);
    }
    if (key == "headset" && n == 3) {
        int type = 0;
        if (!ToInt(w[2], &type)) {
            return false;
        }
        s->headsets.emplace_back(w[1], type);
        return true;
    }
    if (key == "table" && n == 3) {
        int start = 0;
        if (IndexOf(kTableNames, w[1]) < 0 || !ToInt(w[2], &start)) {
            *why = "unknown table or bad start";
            return false;
        }
        s->tables.emplace_back(w[1], start);
        return true;
    }
    if (key == "lad_limit_dbfs" && n == 2) {
        return ToDouble(w[1], &s->ladLimitDbfs);
    }
    if (key == "property" && n == 3) {
        s->properties.emplace_back(w[1], w[2]);
        return true;
    }
    *why = "unknown keyword or wrong number of values";
    return false;
}

}  // namespace

bool ParseSampleSource(const std::string& path, SampleSource* source, std::string* error) {
    std::ifstream in(path);
    if (!in) {
        *error = "cannot read " + path;
        return false;
    }
    std::string line;
    std::vector<std::string> words;
    for (int number = 1; std::getline(in, line); ++number) {
        std::string why = "bad value";
        if (!SplitWords(line, &words)) {
            *error = path + ":" + std::to_string(number) + ": unterminated quote";
            return false;
        }
        if (!words.empty() && !ParseLine(words, source, &why)) {
            *error = path + ":" + std::to_string(number) + ": " + why;
            return false;
        }
    }
    for (int i = 0; i < SCENE_COUNT; ++i) {
        if (!source->speaker[i].given) {
            *error = std::string("no speaker line for ") + kSceneNames[i];
            return false;
        }
    }
    for (int i = 0; i < 9; ++i) {
        if (!source->headphone[i].given) {
            *error = std::string("no headphone line for ") + kHpModeNames[i];
            return false;
        }
    }
    for (int i = 0; i < 6; ++i) {
        if (!source->thresholdsGiven[i]) {
            *error = std::string("no thresholds for ") + kSceneNames[i];
            return false;
        }
    }
    for (const char* name : kTableNames) {
        int lines = 0;
        for (const auto& table : source->tables) {
            lines += table.first == name ? 1 : 0;
        }
        if (lines != 1) {
            *error = std::string("table ") + name + " needs exactly one line";
            return false;
        }
    }
    return true;
}
