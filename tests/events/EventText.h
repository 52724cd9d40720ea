// Reading events back: the values of one event, and the reports seen in the log.
#pragma once

#include <string>
#include <vector>

#include <tovaview/TovaView.h>

#include "tests/support/LogCapture.h"

// The values of an event as "KEY=VALUE" joined by blanks, in put order.
inline std::string EventText(const TovaEvent& event) {
    std::string text;
    for (const auto& kv : event.Values()) {
        text += (text.empty() ? "" : " ") + kv.first + "=" + kv.second;
    }
    return text;
}

// One "tova_view" line per report, in order.
inline std::vector<std::string> Reports(const LogCapture& log) {
    std::vector<std::string> reports;
    for (const LogLine& line : log.Lines()) {
        if (line.tag == "tova_view") {
            reports.push_back(line.message);
        }
    }
    return reports;
}
