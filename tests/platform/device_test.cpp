// The host's system properties: read from the file named by ORLUNE_PROPERTIES at every call.
// (Device paths and the customisation stub are checked where the configuration readers and
// orlune-config use them.)
#include <cutils/properties.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <string>

#include "tests/support/DeviceRoot.h"

namespace orlune_platform {
namespace {

class PlatformProperties : public ::testing::Test {
protected:
    void SetProps(const std::string& content) {
        std::ofstream(mRoot.PropertiesPath(), std::ios::trunc) << content;
    }
    // The value copied; the returned length must be its length.
    std::string Get(const char* key, const char* def) {
        char value[PROPERTY_VALUE_MAX];
        memset(value, 'x', sizeof value);
        int n = property_get(key, value, def);
        EXPECT_EQ(static_cast<size_t>(n), strlen(value));
        return value;
    }
    DeviceRoot mRoot;
};

TEST_F(PlatformProperties, FileRulesDefaultsAndTruncationTo91Characters) {
    const std::string longText(120, 'v');
    SetProps(
            "# comment=1\n\na=first\n#a=commented\nro.x.y=1\na=last\neq=k=v\nempty=\n"
            "spaced = v \nnoequals\ncrlf=v\r\nlong=" +
            longText + "\ntail=no newline");
    std::string got;
    for (const char* key : {"a", "# comment", "#a", "ro.x", "eq", "empty", "spaced ", "noequals",
                            "crlf", "tail", "long"}) {
        got += Get(key, "d") + "|";
    }
    // No prefix of a key matches; a value is cut at 91 characters.
    EXPECT_EQ(got, "last|d|d|d|k=v|d| v |d|v|no newline|" + longText.substr(0, 91) + "|");
    EXPECT_EQ(Get("missing", longText.c_str()), longText.substr(0, 91));
    SetProps("a=changed\n");  // read again at every call
    EXPECT_EQ(Get("a", "d"), "changed");
    EXPECT_EQ(Get("b", nullptr), "");
    // No file, or no variable: the default.
    setenv("ORLUNE_PROPERTIES", (mRoot.Path() + "/missing").c_str(), 1);
    EXPECT_EQ(Get("a", "def"), "def");
    unsetenv("ORLUNE_PROPERTIES");
    EXPECT_EQ(property_get_int32("a", 5), 5);
}

}  // namespace
}  // namespace orlune_platform
