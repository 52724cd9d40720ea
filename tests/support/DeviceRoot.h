// A temporary device for tests: a directory that stands for the handset's file system (see the
// host layer's device paths) plus a properties file. While a DeviceRoot lives, ORLUNE_DEVICE_ROOT
// and ORLUNE_PROPERTIES point at it; the destructor removes the tree and restores both
// variables. Paths given to the methods are device paths ("/odm/etc/kiv/...").
//
//   DeviceRoot root;
//   root.WriteKiv("kiv_config.xml", MainXml({NvRecord(41, {0x10, 0x20})}));
//   root.WriteTable("tws_config1.bin", 16 * 4105);
//   root.SetProperty("ro.config.music_region", "eu");
#pragma once

#include <stdint.h>

#include <optional>
#include <string>
#include <vector>

class DeviceRoot {
public:
    DeviceRoot();
    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    // The host directory that stands for "/".
    const std::string& Path() const { return mRoot; }
    // The host path of a device path.
    std::string HostPath(const std::string& devicePath) const;
    // The properties file named by ORLUNE_PROPERTIES.
    const std::string& PropertiesPath() const { return mProperties; }

    // Writes a file (parent directories are created).
    void WriteFile(const std::string& devicePath, const std::string& content) const;
    // A file of /odm/etc/kiv/.
    void WriteKiv(const std::string& name, const std::string& content) const;
    // A binary table of /odm/etc/kiv/ holding `values` little-endian 16-bit values; value i
    // is the low 16 bits of sign * (i + 1), so a value read from the file is never 0 before the
    // wrap.
    void WriteTable(const std::string& name, size_t values, int sign = 1) const;

    // Product name nodes: node 0 is /proc/device-tree/soc/audio_alg_info/product_name, node 1
    // /proc/device-tree/audio_hw_config/product_name. The text is written as given.
    void SetProductNode(int node, const std::string& text) const;
    // /proc/device-tree/soc/audio_alg_info/audio_capability/kiv_ui_type.
    void SetUiTypeNode(const std::string& text) const;
    // The over-the-air main XML /soundalgorithm/kiv_config.xml and its version file
    // /soundalgorithm/cfg_version.
    void SetOta(const std::string& xml, const std::string& version) const;
    // Only the /soundalgorithm directory, without a downloaded file.
    void SetOtaDirOnly() const;

    // Appends key=value to the properties file (a later line for a key wins).
    void SetProperty(const std::string& key, const std::string& value) const;

    // Removes a device file or directory tree.
    void Remove(const std::string& devicePath) const;
    // Copies the contents of a host directory (such as a generated sample device) into the
    // root.
    void CopyTree(const std::string& hostDir) const;

private:
    std::string mRoot;
    std::string mProperties;
    std::optional<std::string> mSavedRoot;
    std::optional<std::string> mSavedProperties;
};

// XML text builders for the two configuration files.
// One "NV" element of the main file: ID and the values as 0x hexadecimal words.
std::string NvRecord(int32_t id, const std::vector<int>& values);
// One "NV" element of the virtual-map file.
std::string NvMap(int32_t numId, int32_t id, int32_t extId);
// Wraps elements into a root element with an XML declaration.
std::string XmlDocument(const std::vector<std::string>& elements);
