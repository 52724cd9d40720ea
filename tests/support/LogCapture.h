// Captures the Android log lines of the process for assertions. Install one LogCapture per
// test; it lowers liblog's minimum priority so that debug lines are seen, and restores the
// stderr logger when destroyed.
#pragma once

#include <android/log.h>

#include <mutex>
#include <string>
#include <vector>

struct LogLine {
    int priority;
    std::string tag;  // "" for lines logged without a tag
    std::string message;
};

class LogCapture {
public:
    LogCapture();
    ~LogCapture();

    std::vector<LogLine> Lines() const;
    void Clear();
    // Number of lines whose message equals `message` exactly (and whose tag and priority match
    // when given; priority 0 and tag nullptr match anything).
    int Count(const std::string& message, const char* tag = nullptr, int priority = 0) const;
    bool Has(const std::string& message, const char* tag = nullptr, int priority = 0) const {
        return Count(message, tag, priority) > 0;
    }
    // Number of lines whose message contains `part` (tag and priority as for Count).
    int CountContaining(const std::string& part, const char* tag = nullptr, int priority = 0) const;
    // All lines, one per row as "P/tag: message", for failure output.
    std::string Dump() const;
};
