// The device implementations of the platform seam (platform/device): device paths are the real
// paths whatever ORLUNE_DEVICE_ROOT says, and properties are the platform's own.
#include <cutils/properties.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <platform/device_fs.h>
#include <platform/properties.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

// The platform's property functions as this test's platform answers them: "ro.a" is "on",
// "ro.n" is "0x10"; every call is recorded.
namespace {
std::string gCalls;
}

extern "C" int property_get(const char* key, char* value, const char* defaultValue) {
    gCalls += std::string("get ") + key + ";";
    const char* v = strcmp(key, "ro.a") == 0 ? "on" : defaultValue != nullptr ? defaultValue : "";
    strcpy(value, v);
    return static_cast<int>(strlen(v));
}

extern "C" int32_t property_get_int32(const char* key, int32_t defaultValue) {
    gCalls += std::string("int ") + key + ";";
    return strcmp(key, "ro.n") == 0 ? 16 : defaultValue;
}

namespace orlune_platform {
namespace {

// A real file, and a device root that holds a file the real root lacks.
struct RealAndRooted : ::testing::Test {
    fs::path real = fs::temp_directory_path() / ("orlune-seam-" + std::to_string(getpid()));
    std::string file = (real / "version.txt").string();

    void SetUp() override {
        fs::create_directories(real / "root");
        std::ofstream(file) << "real\n";
        std::ofstream(real / "root/only-rooted.txt") << "x\n";
        setenv("ORLUNE_DEVICE_ROOT", (real / "root").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("ORLUNE_DEVICE_ROOT");
        fs::remove_all(real);
    }
};

TEST_F(RealAndRooted, PathsAreTheRealPathsWhateverTheDeviceRoot) {
    char line[16] = {};
    FILE* fp = DevFopen(file.c_str(), "r");
    ASSERT_NE(fp, nullptr);
    EXPECT_NE(fgets(line, sizeof line, fp), nullptr);
    fclose(fp);
    EXPECT_STREQ(line, "real\n");
    EXPECT_EQ(DevFopen("/only-rooted.txt", "r"), nullptr);

    char resolved[PATH_MAX];
    ASSERT_NE(DevRealpath(file.c_str(), resolved), nullptr);
    EXPECT_EQ(std::string(resolved), fs::canonical(file).string());
    struct stat st;
    EXPECT_EQ(DevStat(file.c_str(), &st), 0);
    EXPECT_EQ(st.st_size, 5);
    EXPECT_EQ(DevAccess(file.c_str(), R_OK), 0);
    EXPECT_NE(DevAccess("/only-rooted.txt", F_OK), 0);
}

TEST(DeviceSeam, PropertiesAreThePlatformsOwn) {
    gCalls.clear();
    char value[kPropertyValueMax];
    EXPECT_EQ(PropertyGet("ro.a", value, "off"), 2);
    EXPECT_STREQ(value, "on");
    EXPECT_EQ(PropertyGet("ro.b", value, "off"), 3);
    EXPECT_STREQ(value, "off");
    EXPECT_EQ(PropertyGetInt32("ro.n", 2), 16);
    EXPECT_EQ(gCalls, "get ro.a;get ro.b;int ro.n;");
}

}  // namespace
}  // namespace orlune_platform
