#include "tests/support/LogCapture.h"

#include <android/log.h>

#include <algorithm>

namespace {

std::mutex gMutex;
std::vector<LogLine> gLines;

void CaptureLogger(const __android_logger_data* data, const char* message) {
    std::lock_guard<std::mutex> lock(gMutex);
    gLines.push_back({data->priority, data->tag ? data->tag : "", message ? message : ""});
}

bool Matches(const LogLine& line, const char* tag, int priority) {
    return (tag == nullptr || line.tag == tag) && (priority == 0 || line.priority == priority);
}

}  // namespace

LogCapture::LogCapture() {
    Clear();
    __android_log_set_logger(CaptureLogger);
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
}

std::vector<LogLine> LogCapture::Lines() const {
    std::lock_guard<std::mutex> lock(gMutex);
    return gLines;
}

void LogCapture::Clear() {
    std::lock_guard<std::mutex> lock(gMutex);
    gLines.clear();
}

int LogCapture::Count(const std::string& message, const char* tag, int priority) const {
    const std::vector<LogLine> lines = Lines();
    return std::count_if(lines.begin(), lines.end(), [&](const LogLine& line) {
        return line.message == message && Matches(line, tag, priority);
    });
}

int LogCapture::CountContaining(const std::string& part, const char* tag, int priority) const {
    const std::vector<LogLine> lines = Lines();
    return std::count_if(lines.begin(), lines.end(), [&](const LogLine& line) {
        return line.message.find(part) != std::string::npos && Matches(line, tag, priority);
    });
}

std::string LogCapture::Dump() const {
    std::string out;
    for (const LogLine& line : Lines()) {
        out += std::to_string(line.priority) + "/" + line.tag + ": " + line.message + "\n";
    }
    return out;
}
