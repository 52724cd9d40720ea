// The usage reports seen in the log: one "tova_view" line per report, in order.
#pragma once

#include <string>
#include <vector>

#include "tests/support/LogCapture.h"

inline std::vector<std::string> Reports(const LogCapture& log) {
    std::vector<std::string> reports;
    for (const LogLine& line : log.Lines()) {
        if (line.tag == "tova_view") {
            reports.push_back(line.message);
        }
    }
    return reports;
}
