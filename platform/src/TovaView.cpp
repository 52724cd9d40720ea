// Host stub of the maker's event platform: a report becomes one log line.
#include <tovaview/TovaView.h>

#include <android/log.h>
#include <stdio.h>

void TovaEvent::PutFloat(const std::string& key, float value) {
    char text[64];
    int n = snprintf(text, sizeof text, "%f", static_cast<double>(value));
    if (n >= 0 && static_cast<size_t>(n) < sizeof text) {
        mValues.emplace_back(key, text);
        return;
    }
    std::string big(static_cast<size_t>(n > 0 ? n : 0) + 1, '\0');  // huge floats
    snprintf(&big[0], big.size(), "%f", static_cast<double>(value));
    big.pop_back();
    mValues.emplace_back(key, big);
}

void TovaEvent::PutString(const std::string& key, const std::string& value) {
    mValues.emplace_back(key, value);
}

int TovaView::Report(TovaEvent& event) {
    std::string line = "report " + std::to_string(event.Id());
    for (const auto& kv : event.Values()) {
        line += ' ';
        line += kv.first;
        line += '=';
        line += kv.second;
    }
    __android_log_print(ANDROID_LOG_INFO, "tova_view", "%s", line.c_str());
    return 0;
}
