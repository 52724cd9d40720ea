// The contracts of safe_funcs.h that product code relies on, above all that nothing is
// written past the buffer.
#include <safe_funcs.h>

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

namespace {

// A buffer followed by guard bytes, to see writes past its end.
struct Guarded {
    char buf[8];
    char guard[8];
    Guarded() { memset(this, '#', sizeof *this); }
    bool GuardIntact() const { return std::string(guard, 8) == "########"; }
};

TEST(PlatformSafeFuncs, MemoryAndStringCopies) {
    Guarded g;
    EXPECT_EQ(memcpy_s(g.buf, sizeof g.buf, "abcdefgh", 8), EOK);
    EXPECT_EQ(std::string(g.buf, 8), "abcdefgh");
    EXPECT_EQ(memcpy_s(g.buf, sizeof g.buf, "abc", 0), EOK);
    EXPECT_NE(memcpy_s(g.buf, sizeof g.buf, "abcdefghijk", 9), EOK);
    EXPECT_NE(memcpy_s(nullptr, 8, "abc", 3), EOK);
    EXPECT_EQ(memset_s(g.buf, sizeof g.buf, 'z', 8), EOK);
    EXPECT_EQ(std::string(g.buf, 8), "zzzzzzzz");
    EXPECT_NE(memset_s(g.buf, sizeof g.buf, 'y', 9), EOK);
    EXPECT_TRUE(g.GuardIntact());

    EXPECT_EQ(strcpy_s(g.buf, sizeof g.buf, "1234567"), EOK);
    EXPECT_STREQ(g.buf, "1234567");
    EXPECT_NE(strcpy_s(g.buf, sizeof g.buf, "12345678"), EOK);
    EXPECT_EQ(strncpy_s(g.buf, sizeof g.buf, "abcdefghij", 3), EOK);
    EXPECT_STREQ(g.buf, "abc");
    EXPECT_EQ(strncpy_s(g.buf, sizeof g.buf, "ab", 7), EOK);
    EXPECT_STREQ(g.buf, "ab");
    EXPECT_NE(strncpy_s(g.buf, sizeof g.buf, "abcdefghij", 8), EOK);
    EXPECT_TRUE(g.GuardIntact());
}

TEST(PlatformSafeFuncs, PrintFailsWhenTheTextIsCut) {
    Guarded g;
    EXPECT_EQ(sprintf_s(g.buf, sizeof g.buf, "%s %d", "ab", 1075), 7);
    EXPECT_STREQ(g.buf, "ab 1075");
    EXPECT_EQ(sprintf_s(g.buf, sizeof g.buf, "%s", "12345678"), -1);
    EXPECT_STREQ(g.buf, "");
    EXPECT_EQ(sprintf_s(g.buf, sizeof g.buf, "%g|%.1f", 0.0001, 2.25), -1);
    EXPECT_STREQ(g.buf, "");  // "0.0001|2.2" does not fit either
    EXPECT_EQ(sprintf_s(g.buf, sizeof g.buf, "%g", 0.0001), 6);
    EXPECT_STREQ(g.buf, "0.0001");

    EXPECT_EQ(snprintf_s(g.buf, sizeof g.buf, sizeof g.buf - 1, "%d", 42), 2);
    EXPECT_STREQ(g.buf, "42");
    EXPECT_EQ(snprintf_s(g.buf, sizeof g.buf, 3, "%s", "abcdef"), -1);  // cut by count
    EXPECT_STREQ(g.buf, "abc");
    EXPECT_EQ(snprintf_s(g.buf, sizeof g.buf, 100, "%s", "abcdefghijkl"), -1);  // by size
    EXPECT_STREQ(g.buf, "");
    EXPECT_EQ(snprintf_s(g.buf, sizeof g.buf, 100, "%s", "abcdefg"), 7);
    EXPECT_EQ(snprintf_s(g.buf, 0, 5, "%s", "a"), -1);
    EXPECT_EQ(snprintf_s(nullptr, 8, 5, "%s", "a"), -1);
    EXPECT_TRUE(g.GuardIntact());
}

FILE* Input(const std::string& text) {
    static std::vector<std::string> keep;  // fmemopen needs the text alive
    keep.push_back(text);
    return fmemopen(&keep.back()[0], keep.back().size(), "r");
}

TEST(PlatformSafeFuncs, ScanBoundsEveryStringBySizeArgument) {
    Guarded g;
    int n = 0;
    FILE* fp = Input("product 42 rest");
    EXPECT_EQ(fscanf_s(fp, "%s %d", g.buf, (unsigned)sizeof g.buf, &n), 2);
    EXPECT_STREQ(g.buf, "product");
    EXPECT_EQ(n, 42);
    EXPECT_EQ(fscanf_s(fp, "%s", g.buf, (unsigned)sizeof g.buf), 1);
    EXPECT_STREQ(g.buf, "rest");
    EXPECT_EQ(fscanf_s(fp, "%s", g.buf, (unsigned)sizeof g.buf), EOF);
    fclose(fp);

    // A word longer than the buffer fails the conversion and writes nothing past it.
    fp = Input("abcdefghijklmnop 7");
    EXPECT_EQ(fscanf_s(fp, "%s %d", g.buf, (unsigned)sizeof g.buf, &n), 0);
    EXPECT_STREQ(g.buf, "");
    EXPECT_TRUE(g.GuardIntact());
    fclose(fp);
    fp = Input("12345678");  // exactly the buffer's size: no room for the terminator
    EXPECT_EQ(fscanf_s(fp, "%s", g.buf, (unsigned)sizeof g.buf), 0);
    EXPECT_TRUE(g.GuardIntact());
    fclose(fp);
    std::vector<char> heap(4);  // exact-size heap buffer for the sanitizer
    fp = Input("toolong");
    EXPECT_EQ(fscanf_s(fp, "%s", heap.data(), 4u), 0);
    fclose(fp);

    // Explicit widths, sets, characters, suppression and literal text.
    char a[8], b[8], c[3];
    fp = Input("key=value\n  abcdefXYZ ok-go rest");
    EXPECT_EQ(fscanf_s(fp, "key=%7[a-z] %3s%*s %2c", a, 8u, b, 8u, c, 3u), 3);
    EXPECT_STREQ(a, "value");
    EXPECT_STREQ(b, "abc");
    EXPECT_EQ(std::string(c, 2), "ok");
    EXPECT_EQ(fscanf_s(fp, "-%2c", c, 1u), 0);  // two characters do not fit one byte
    fclose(fp);
    fp = Input("x 1");
    EXPECT_EQ(fscanf_s(fp, "%d", &n), 0);  // matching failure
    fclose(fp);
}

}  // namespace
