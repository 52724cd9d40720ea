#include "tests/support/DeviceRoot.h"

#include <stdio.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

// The variable's value, or nothing when it is not set.
std::optional<std::string> Env(const char* name) {
    const char* value = getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void SetEnv(const char* name, const std::optional<std::string>& value) {
    value ? setenv(name, value->c_str(), 1) : unsetenv(name);
}

}  // namespace

DeviceRoot::DeviceRoot()
    : mSavedRoot(Env("ORLUNE_DEVICE_ROOT")), mSavedProperties(Env("ORLUNE_PROPERTIES")) {
    std::string pattern = (fs::temp_directory_path() / "orlune-device-XXXXXX").string();
    if (mkdtemp(&pattern[0]) == nullptr) {
        ADD_FAILURE() << "mkdtemp failed for " << pattern;
        return;
    }
    // The properties file lives beside the device tree, not inside it.
    mProperties = fs::canonical(pattern).string() + "/.properties";
    std::ofstream(mProperties).flush();
    mRoot = fs::path(mProperties).parent_path().string() + "/device";
    fs::create_directories(mRoot);
    setenv("ORLUNE_DEVICE_ROOT", mRoot.c_str(), 1);
    setenv("ORLUNE_PROPERTIES", mProperties.c_str(), 1);
}

DeviceRoot::~DeviceRoot() {
    SetEnv("ORLUNE_DEVICE_ROOT", mSavedRoot);
    SetEnv("ORLUNE_PROPERTIES", mSavedProperties);
    if (!mRoot.empty()) {
        std::error_code ec;
        fs::remove_all(fs::path(mRoot).parent_path(), ec);
    }
}

std::string DeviceRoot::HostPath(const std::string& devicePath) const {
    return devicePath.empty() || devicePath[0] != '/' ? mRoot + "/" + devicePath
                                                      : mRoot + devicePath;
}

void DeviceRoot::WriteFile(const std::string& devicePath, const std::string& content) const {
    const fs::path host = HostPath(devicePath);
    fs::create_directories(host.parent_path());
    std::ofstream out(host, std::ios::binary | std::ios::trunc);
    out << content;
    if (!out) {
        ADD_FAILURE() << "cannot write " << host;
    }
}

void DeviceRoot::WriteKiv(const std::string& name, const std::string& content) const {
    WriteFile("/odm/etc/kiv/" + name, content);
}

void DeviceRoot::WriteTable(const std::string& name, size_t values, int sign) const {
    std::string bytes(values * 2, '\0');
    for (size_t i = 0; i < values; ++i) {
        const uint16_t v = static_cast<uint16_t>(sign * static_cast<int>(i + 1));
        bytes[2 * i] = static_cast<char>(v & 0xff);  // the device's byte order: little-endian
        bytes[2 * i + 1] = static_cast<char>(v >> 8);
    }
    WriteKiv(name, bytes);
}

void DeviceRoot::SetProductNode(int node, const std::string& text) const {
    WriteFile(node == 0 ? "/proc/device-tree/soc/audio_alg_info/product_name"
                        : "/proc/device-tree/audio_hw_config/product_name",
              text);
}

void DeviceRoot::SetUiTypeNode(const std::string& text) const {
    WriteFile("/proc/device-tree/soc/audio_alg_info/audio_capability/kiv_ui_type", text);
}

void DeviceRoot::SetOta(const std::string& xml, const std::string& version) const {
    WriteFile("/soundalgorithm/kiv_config.xml", xml);
    WriteFile("/soundalgorithm/cfg_version", version + "\n");
}

void DeviceRoot::SetOtaDirOnly() const {
    fs::create_directories(HostPath("/soundalgorithm"));
}

void DeviceRoot::SetProperty(const std::string& key, const std::string& value) const {
    std::ofstream out(mProperties, std::ios::app);
    out << key << "=" << value << "\n";
}

void DeviceRoot::Remove(const std::string& devicePath) const {
    std::error_code ec;
    fs::remove_all(HostPath(devicePath), ec);
}

void DeviceRoot::CopyTree(const std::string& hostDir) const {
    std::error_code ec;
    fs::copy(hostDir, mRoot, fs::copy_options::recursive | fs::copy_options::overwrite_existing,
             ec);
    if (ec) {
        ADD_FAILURE() << "cannot copy " << hostDir << ": " << ec.message();
    }
}

std::string NvRecord(int32_t id, const std::vector<int>& values) {
    std::string text;
    char word[16];
    for (size_t i = 0; i < values.size(); ++i) {
        snprintf(word, sizeof(word), "%s0x%x", i == 0 ? "" : ",",
                 static_cast<unsigned>(values[i]) & 0xffffu);
        text += word;
    }
    return "<NV ID=\"" + std::to_string(id) + "\" PARAM_VALUE=\"" + text + "\"/>";
}

std::string NvMap(int32_t numId, int32_t id, int32_t extId) {
    return "<NV NUMID=\"" + std::to_string(numId) + "\" ID=\"" + std::to_string(id) +
           "\" EXTID=\"" + std::to_string(extId) + "\"/>";
}

std::string XmlDocument(const std::vector<std::string>& elements) {
    std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<config>\n";
    for (const std::string& e : elements) {
        out += "  " + e + "\n";
    }
    return out + "</config>\n";
}
