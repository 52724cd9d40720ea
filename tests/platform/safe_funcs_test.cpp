// The contracts of safe_funcs.h that product code relies on: a failure code instead of a cut or
// an overflow, and nothing ever written past the buffer.
#include <safe_funcs.h>

#include <gtest/gtest.h>
#include <string.h>

#include <string>

namespace {

// A buffer followed by guard bytes, to see writes past its end.
struct Guarded {
    char buf[8];
    char guard[8];
    Guarded() { memset(this, '#', sizeof *this); }
    ~Guarded() { EXPECT_EQ(std::string(guard, 8), "########"); }
};

TEST(PlatformSafeFuncs, CopiesAndPrintsRefuseWhatDoesNotFit) {
    Guarded g;
    auto Result = [&g](int r) { return std::to_string(r) + " " + g.buf; };
    EXPECT_NE(memcpy_s(g.buf, sizeof g.buf, "abcdefghijk", 9), EOK);
    EXPECT_NE(memset_s(g.buf, sizeof g.buf, 'y', 9), EOK);
    EXPECT_NE(strcpy_s(g.buf, sizeof g.buf, "12345678"), EOK);
    EXPECT_EQ(Result(strncpy_s(g.buf, sizeof g.buf, "abcdefghij", 3)), "0 abc");
    EXPECT_NE(strncpy_s(g.buf, sizeof g.buf, "abcdefghij", 8), EOK);
    EXPECT_EQ(Result(sprintf_s(g.buf, sizeof g.buf, "%s %d", "ab", 1075)), "7 ab 1075");
    EXPECT_EQ(Result(sprintf_s(g.buf, sizeof g.buf, "%s", "12345678")), "-1 ");
    EXPECT_EQ(Result(snprintf_s(g.buf, sizeof g.buf, 3, "%s", "abcdef")), "-1 abc");  // by count
    EXPECT_EQ(Result(snprintf_s(g.buf, sizeof g.buf, 100, "%s", "abcdefghijkl")), "-1 ");  // size
    EXPECT_EQ(Result(snprintf_s(g.buf, sizeof g.buf, 100, "%s", "abcdefg")), "7 abcdefg");
}

// The fields converted, the word and the number, for `text` scanned with "%s %d" into 8 bytes.
std::string Scan(std::string text) {
    Guarded g;
    int n = 0;
    FILE* fp = fmemopen(&text[0], text.size(), "r");
    const int fields = fscanf_s(fp, "%s %d", g.buf, (unsigned)sizeof g.buf, &n);
    fclose(fp);
    return std::to_string(fields) + (fields > 0 ? std::string(" ") + g.buf : "") +
           (fields > 1 ? " " + std::to_string(n) : "");
}

TEST(PlatformSafeFuncs, ScanBoundsEveryStringBySizeArgument) {
    EXPECT_EQ(Scan("product 42"), "2 product 42");
    // A word that does not fit with its terminator fails the conversion and writes nothing past
    // the buffer.
    EXPECT_EQ(Scan("12345678 7"), "0");
}

}  // namespace
