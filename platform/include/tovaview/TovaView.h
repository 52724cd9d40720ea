// The maker's event-reporting platform. An event is an id plus key/value pairs in put order.
// The device build links the maker's library (libtovaview); a host build has a stub that logs
// each report (platform/src/TovaView.cpp).
#pragma once

#include <string>
#include <utility>
#include <vector>

class TovaEvent {
public:
    explicit TovaEvent(int eventId) : mId(eventId) {}
    void PutFloat(const std::string& key, float value);
    void PutString(const std::string& key, const std::string& value);
    int Id() const { return mId; }
    // "KEY=VALUE" per value in put order (floats printed with "%f").
    const std::vector<std::pair<std::string, std::string>>& Values() const { return mValues; }

private:
    int mId;
    std::vector<std::pair<std::string, std::string>> mValues;
};

class TovaView {
public:
    // Host: one info line with tag "tova_view": "report <id>" then " KEY=VALUE" per value.
    static int Report(TovaEvent& event);
};
