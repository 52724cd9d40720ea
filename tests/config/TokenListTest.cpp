// Splitting value lists and reading their tokens, against the C library's rules.
#include <stdlib.h>

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "config/TokenList.h"

namespace {

std::vector<std::string> Split(std::string text, const char* delimiters = kXmlDelimiters) {
    std::vector<std::string> out;
    TokenList tokens(text.data(), delimiters);
    for (const char* t = tokens.Next(); t != nullptr; t = tokens.Next()) {
        out.push_back(t);
    }
    return out;
}

int16_t Reference(const std::string& token) {
    return static_cast<int16_t>(static_cast<uint16_t>(strtol(token.c_str(), nullptr, 16)));
}

TEST(TokenList, EveryDelimiterSplitsAndRunsOfThemCountOnce) {
    EXPECT_EQ((std::vector<std::string>{"1A", "FF", "0x10", "7", "8", "9", "a\vb"}),
              Split("{1A;FF}[0x10]=7\t8\n9\r ,a\vb,,;"));
    EXPECT_TRUE(Split(" ,;{}[]=\t\n\r").empty());
    EXPECT_TRUE(Split("").empty());
    EXPECT_EQ((std::vector<std::string>{"a", "b c"}), Split("a;b c", ";"));
}

TEST(HexToken, ReadsLikeStrtolWithBase16) {
    const char* const tricky[] = {
            "0",
            "ffff",
            "FFFF",
            "10000",
            "1ffff",
            "8000",
            "7fff",
            "-1",
            "-8000",
            "+12",
            "0x1G",
            "ZZ",
            "0x",
            "0xg",
            "x12",
            "-",
            "--1",
            " 12",
            "\v\f1",
            "-0x10",
            "0X7fff",
            "12zz",
            "ffffffffffffffff",
            "7fffffffffffffff",
            "8000000000000000",
            "-8000000000000000",
            "-8000000000000001",
            "10000000000000000",
            "-10000000000000000",
            "00000000000000000000001",
    };
    for (const char* t : tricky) {
        EXPECT_EQ(Reference(t), HexToken(t)) << "token \"" << t << "\"";
    }
}

TEST(HexToken, AgreesWithStrtolOnRandomTokens) {
    std::mt19937 rng(7);
    const std::string alphabet = "0123456789abcdefABCDEFxXgz+- \t";
    for (int i = 0; i < 20000; ++i) {
        std::string token;
        const int length = 1 + static_cast<int>(rng() % 20);
        for (int j = 0; j < length; ++j) {
            token += alphabet[rng() % alphabet.size()];
        }
        ASSERT_EQ(Reference(token), HexToken(token.c_str())) << "token \"" << token << "\"";
    }
}

TEST(IntegerAttr, DetectsTheBase) {
    EXPECT_EQ(30160, IntegerAttr("0x75D0"));
    EXPECT_EQ(30160, IntegerAttr("30160"));
    EXPECT_EQ(8, IntegerAttr("010"));
    EXPECT_EQ(0, IntegerAttr("08"));
    EXPECT_EQ(-5, IntegerAttr(" -5x"));
    EXPECT_EQ(0, IntegerAttr("abc"));
}

}  // namespace
