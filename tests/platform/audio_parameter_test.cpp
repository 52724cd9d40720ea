// AudioParameter as the effect uses it: parsing, byte-order storage, get, add and toString.
#include <media/AudioParameter.h>

#include <gtest/gtest.h>

namespace android {
namespace {

// The value, or "[status]<untouched>" when get fails and leaves the value alone.
std::string Get(const AudioParameter& p, const char* key) {
    String8 value("<untouched>");
    status_t r = p.get(String8(key), value);
    return (r == NO_ERROR ? "" : "[" + std::to_string(r) + "]") + value.c_str();
}

TEST(PlatformAudioParameter, ParsesPiecesAtSemicolonAndFirstEqualsIntoByteOrder) {
    AudioParameter p(String8("b=2;;ab=4;a.b=3;a=1;B=1;k=;bare;eq=x=y;; sp = v ;rep=1;rep=2;"));
    EXPECT_EQ(Get(p, "k"), "");
    EXPECT_EQ(Get(p, "eq"), "x=y");
    EXPECT_EQ(Get(p, " sp "), " v ");  // no trimming
    EXPECT_EQ(Get(p, "sp"), "[-22]<untouched>");
    EXPECT_EQ(Get(p, "rep"), "2");
    EXPECT_EQ(std::string(p.toString().c_str()),
              " sp = v ;B=1;a=1;a.b=3;ab=4;b=2;bare=;eq=x=y;k=;rep=2");
    // Adding an existing key reports it but stores the new value.
    EXPECT_EQ(p.add(String8("k"), String8("1")), -17);
    EXPECT_EQ(p.add(String8("new"), String8("2")), 0);
    EXPECT_EQ(Get(p, "k"), "1");
}

}  // namespace
}  // namespace android
