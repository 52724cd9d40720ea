// System properties from the file named by ORLUNE_PROPERTIES.
#include <cutils/properties.h>

#include <gtest/gtest.h>

#include <string>

#include "tests/platform/TempTree.h"

namespace {

class PlatformProperties : public ::testing::Test {
protected:
    void SetProps(const std::string& content) { mTree.Write("props.txt", content); }
    std::string Get(const char* key, const char* def, int* len = nullptr) {
        char value[PROPERTY_VALUE_MAX];
        memset(value, 'x', sizeof value);
        int n = property_get(key, value, def);
        if (len != nullptr) {
            *len = n;
        }
        EXPECT_EQ(static_cast<size_t>(n), strlen(value));
        return value;
    }

    TempTree mTree;
    ScopedEnv mEnv{"ORLUNE_PROPERTIES", (mTree.Path() + "/props.txt").c_str()};
};

TEST_F(PlatformProperties, DefaultsWithoutVariableFileOrKey) {
    {
        ScopedEnv unset("ORLUNE_PROPERTIES", nullptr);
        EXPECT_EQ(Get("a", "def"), "def");
        EXPECT_EQ(property_get_int32("a", 5), 5);
    }
    EXPECT_EQ(Get("a", "def"), "def");  // the file does not exist yet
    EXPECT_EQ(property_get_int32("a", -3), -3);
    SetProps("a=1\n");
    int len = -1;
    EXPECT_EQ(Get("b", nullptr, &len), "");
    EXPECT_EQ(len, 0);
    EXPECT_EQ(Get("b", "", &len), "");
    EXPECT_EQ(len, 0);
}

TEST_F(PlatformProperties, FileRules) {
    SetProps(
            "# comment=1\n"
            "\n"
            "a=first\n"
            "#a=commented\n"
            "ro.x.y=1\n"
            "a=last\n"
            "eq=k=v\n"
            "empty=\n"
            "spaced = v \n"
            "noequals\n"
            "crlf=v\r\n"
            "tail=no newline");
    EXPECT_EQ(Get("a", "d"), "last");
    EXPECT_EQ(Get("# comment", "d"), "d");
    EXPECT_EQ(Get("#a", "d"), "d");
    EXPECT_EQ(Get("ro.x", "d"), "d");  // no prefix matches
    EXPECT_EQ(Get("eq", "d"), "k=v");
    EXPECT_EQ(Get("empty", "d"), "d");
    EXPECT_EQ(Get("spaced ", "d"), " v ");
    EXPECT_EQ(Get("noequals", "d"), "d");
    EXPECT_EQ(Get("crlf", "d"), "v");
    EXPECT_EQ(Get("tail", "d"), "no newline");

    SetProps("a=changed\n");  // read again at every call
    EXPECT_EQ(Get("a", "d"), "changed");
}

TEST_F(PlatformProperties, ValuesAndDefaultsAreCutAt91Characters) {
    const std::string longText(120, 'v');
    SetProps("long=" + longText + "\n");
    int len = 0;
    EXPECT_EQ(Get("long", "d", &len), longText.substr(0, 91));
    EXPECT_EQ(len, 91);
    const std::string longDefault(100, 'd');
    EXPECT_EQ(Get("missing", longDefault.c_str(), &len), longDefault.substr(0, 91));
    EXPECT_EQ(len, 91);
}

TEST_F(PlatformProperties, Int32ParsesLikeStrtoimaxBase0) {
    SetProps(
            "trail=12abc\noctal8=08\nhex=0x10\noctal=010\nneg= -7\nplus=+3\nnegHex=-0x10\n"
            "max=2147483647\nmin=-2147483648\nover=2147483648\nunder=-2147483649\n"
            "huge=99999999999999999999999\nletters=abc\nempty=\nblank= \n");
    EXPECT_EQ(property_get_int32("trail", -1), 12);
    EXPECT_EQ(property_get_int32("octal8", -1), 0);
    EXPECT_EQ(property_get_int32("hex", -1), 16);
    EXPECT_EQ(property_get_int32("octal", -1), 8);
    EXPECT_EQ(property_get_int32("neg", -1), -7);
    EXPECT_EQ(property_get_int32("plus", -1), 3);
    EXPECT_EQ(property_get_int32("negHex", -1), -16);
    EXPECT_EQ(property_get_int32("max", -1), 2147483647);
    EXPECT_EQ(property_get_int32("min", -1), INT32_MIN);
    EXPECT_EQ(property_get_int32("over", -1), -1);
    EXPECT_EQ(property_get_int32("under", -1), -1);
    EXPECT_EQ(property_get_int32("huge", -1), -1);
    EXPECT_EQ(property_get_int32("letters", -1), -1);
    EXPECT_EQ(property_get_int32("empty", -1), -1);
    EXPECT_EQ(property_get_int32("blank", -1), -1);
    EXPECT_EQ(property_get_int32("missing", 77), 77);
}

}  // namespace
