#include "tools/config/LogCollector.h"

#include <android/log.h>

#include "tools/config/LoadOrder.h"

namespace {

std::vector<CollectedLine> sLines;
int sStep = -1;

void Collect(const __android_logger_data* data, const char* message) {
    sLines.push_back({data->priority, data->tag != nullptr ? data->tag : "",
                      message != nullptr ? message : "", sStep});
}

}  // namespace

LogCollector::LogCollector() {
    sLines.clear();
    __android_log_set_logger(Collect);
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
}

LogCollector::~LogCollector() {
    __android_log_set_logger(__android_log_stderr_logger);
}

void LogCollector::SetStep(int step) {
    sStep = step;
}

void LogCollector::Load(bool musicRegionEnable) {
    LoadAsFirstInstance(musicRegionEnable, [](int step, void*) { sStep = step; });
    sStep = -1;
}

const std::vector<CollectedLine>& LogCollector::Lines() const {
    return sLines;
}

std::vector<std::string> LogCollector::Messages(int step) const {
    std::vector<std::string> out;
    for (const CollectedLine& line : sLines) {
        if (step == -2 || line.step == step) {
            out.push_back(line.message);
        }
    }
    return out;
}
