// AudioParameter: parsing, byte-order storage, get/add results and toString.
#include <media/AudioParameter.h>

#include <gtest/gtest.h>

namespace android {
namespace {

std::string Str(const String8& s) {
    return s.c_str();
}

std::string Get(const AudioParameter& p, const char* key) {
    String8 value("<untouched>");
    status_t r = p.get(String8(key), value);
    return (r == NO_ERROR ? "" : "[" + std::to_string(r) + "]") + Str(value);
}

TEST(PlatformAudioParameter, ParsesPiecesAtSemicolonAndFirstEquals) {
    AudioParameter p(String8("b=2;;a=1;k=;bare;eq=x=y;; sp = v ;rep=1;rep=2;"));
    EXPECT_EQ(p.size(), 7u);
    EXPECT_EQ(Get(p, "a"), "1");
    EXPECT_EQ(Get(p, "k"), "");
    EXPECT_EQ(Get(p, "bare"), "");
    EXPECT_EQ(Get(p, "eq"), "x=y");
    EXPECT_EQ(Get(p, " sp "), " v ");  // no trimming
    EXPECT_EQ(Get(p, "sp"), "[-22]<untouched>");
    EXPECT_EQ(Get(p, "rep"), "2");
    EXPECT_EQ(Str(p.toString()), " sp = v ;a=1;b=2;bare=;eq=x=y;k=;rep=2");

    EXPECT_EQ(Str(AudioParameter(String8("")).toString()), "");
    EXPECT_EQ(Str(AudioParameter(String8(";;;")).toString()), "");
    EXPECT_EQ(Str(AudioParameter().toString()), "");
}

TEST(PlatformAudioParameter, KeysAreSortedByByteOrder) {
    AudioParameter p(String8("ab=4;a.b=3;a=2;B=1"));
    EXPECT_EQ(Str(p.toString()), "B=1;a=2;a.b=3;ab=4");
}

TEST(PlatformAudioParameter, AddReportsExistingKeyButStoresTheNewValue) {
    AudioParameter p;
    EXPECT_EQ(p.add(String8("k"), String8("1")), NO_ERROR);
    EXPECT_EQ(p.add(String8("k"), String8("2")), ALREADY_EXISTS);
    EXPECT_EQ(ALREADY_EXISTS, -17);
    EXPECT_EQ(Get(p, "k"), "2");

    EXPECT_EQ(p.addInt(String8("i"), -42), NO_ERROR);
    EXPECT_EQ(p.addInt(String8("i"), 7), ALREADY_EXISTS);
    EXPECT_EQ(p.addFloat(String8("f"), 0.5f), NO_ERROR);
    EXPECT_EQ(p.addFloat(String8("g"), 1.0f / 3.0f), NO_ERROR);
    EXPECT_EQ(p.addFloat(String8("h"), -2.0f), NO_ERROR);
    EXPECT_EQ(Str(p.toString()), "f=0.5000000000;g=0.3333333433;h=-2.0000000000;i=7;k=2");

    EXPECT_EQ(p.remove(String8("g")), NO_ERROR);
    EXPECT_EQ(p.remove(String8("g")), BAD_VALUE);
    EXPECT_EQ(BAD_VALUE, -22);
    EXPECT_EQ(Get(p, "g"), "[-22]<untouched>");
}

}  // namespace
}  // namespace android
