// The values of an event as "KEY=VALUE" joined by blanks, in put order.
#pragma once

#include <string>

#include <tovaview/TovaView.h>

inline std::string EventText(const TovaEvent& event) {
    std::string text;
    for (const auto& kv : event.Values()) {
        if (!text.empty()) {
            text += ' ';
        }
        text += kv.first + "=" + kv.second;
    }
    return text;
}
