#include "tools/play/EffectLog.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <android/log.h>

namespace {

EffectLogFacts gFacts;
bool gEcho = false;
EffectLogListener gListener = nullptr;
void* gListenerContext = nullptr;
constexpr size_t kMaxProblems = 20;

bool StartsWith(const char* text, const char* prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

// Integer that follows `marker` in `text`, if the marker is there.
bool IntAfter(const char* text, const char* marker, int* value) {
    const char* at = strstr(text, marker);
    if (at == nullptr) {
        return false;
    }
    *value = static_cast<int>(strtol(at + strlen(marker), nullptr, 10));
    return true;
}

void NoteTuning(const char* msg) {
    // "<fn> <n>: SPK NvMode is currentParamMode: <id> <names> currentRealParamID: <a>
    //  currentRealParamExtID: <b>" and its headphone twin.
    const char* mode = strstr(msg, "currentParamMode: ");
    const char* real = strstr(msg, " currentRealParamID: ");
    int id = 0, ext = 0;
    if (mode == nullptr || real == nullptr || !IntAfter(real, "currentRealParamID: ", &id) ||
        !IntAfter(real, "currentRealParamExtID: ", &ext)) {
        return;
    }
    const char* start = mode + strlen("currentParamMode: ");
    std::string text(start, static_cast<size_t>(real - start));
    text += " -> " + std::to_string(id) + "/" + std::to_string(ext);
    text = (strstr(msg, "HP NvMode") != nullptr ? "headphone " : "speaker ") + text;
    gFacts.tunings.push_back(text);
}

void NoteVersions(const char* msg) {
    // "cgtVersion: A, releaseVersion: B, releaseDate: C"
    const char* keys[3] = {"cgtVersion: ", ", releaseVersion: ", ", releaseDate: "};
    const char* at[3];
    for (int i = 0; i < 3; ++i) {
        at[i] = strstr(msg, keys[i]);
        if (at[i] == nullptr) {
            return;
        }
    }
    for (int i = 0; i < 3; ++i) {
        const char* begin = at[i] + strlen(keys[i]);
        const char* end = i < 2 ? at[i + 1] : begin + strlen(begin);
        gFacts.versions[i] = std::string(begin, end > begin ? static_cast<size_t>(end - begin) : 0);
    }
}

void Note(int priority, const char* tag, const char* msg) {
    const std::string t = tag != nullptr ? tag : "";
    int code = 0;
    bool counted = true;
    if (strstr(msg, "Load orlune algo lib OK.") != nullptr) {
        gFacts.bound = true;
    } else if (strstr(msg, "load orlune effect fail.") != nullptr) {
        gFacts.bindFailed = true;
    } else if (StartsWith(msg, "cgtVersion: ")) {
        NoteVersions(msg);
    } else if (StartsWith(msg, "InitKiv, tid:")) {
        ++gFacts.initialisations;
    } else if (StartsWith(msg, "KivOutProcPlaySamples currentStatus")) {
        ++gFacts.statusLines;
    } else if (IntAfter(msg, "Orlune algorithm apply failed, ret = ", &code) ||
               IntAfter(msg, "Quex_KIV_Apply result is ", &code)) {
        ++gFacts.applyErrors[code];
    } else if (strstr(msg, "NvMode is currentParamMode") != nullptr) {
        NoteTuning(msg);
    } else if (strstr(msg, "do not find currentParamID") != nullptr ||
               strstr(msg, "do not find currentRealParamID") != nullptr) {
        ++gFacts.missingTunings;
    } else if (t == "tova_view" && StartsWith(msg, "report ")) {
        gFacts.events.push_back(msg);
    } else if (strstr(msg, "returned untouched") != nullptr ||
               strstr(msg, "block ignored") != nullptr ||
               strstr(msg, "output dropped") != nullptr) {
        gFacts.refusals.push_back(msg);
    } else {
        counted = false;
    }
    if (!counted && priority >= ANDROID_LOG_ERROR) {
        ++gFacts.otherErrors;
    }
    // "InitKiv" logs at error level on purpose; it is not a problem.
    if (priority >= ANDROID_LOG_WARN && !StartsWith(msg, "InitKiv, tid:") &&
        gFacts.problems.size() < kMaxProblems) {
        gFacts.problems.push_back((priority >= ANDROID_LOG_ERROR ? "E/" : "W/") +
                                  (t.empty() ? std::string("-") : t) + ": " + msg);
    }
}

void Logger(const __android_logger_data* data, const char* message) {
    const char* msg = message != nullptr ? message : "";
    Note(data->priority, data->tag, msg);
    if (gListener != nullptr) {
        gListener(gListenerContext, data->priority, data->tag, msg);
    }
    if (gEcho) {
        static const char kLetters[] = "??VDIWEF";
        const int p = data->priority;
        fprintf(stderr, "%c/%s: %s\n", (p >= 0 && p < 8) ? kLetters[p] : '?',
                data->tag != nullptr ? data->tag : "", msg);
    }
}

}  // namespace

void EffectLog::Install(bool echo) {
    gEcho = echo;
    __android_log_set_logger(Logger);
    __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
}

EffectLogFacts& EffectLog::Facts() {
    return gFacts;
}

void EffectLog::Reset() {
    gFacts = EffectLogFacts();
}

void EffectLog::SetListener(EffectLogListener listener, void* context) {
    gListener = listener;
    gListenerContext = context;
}
