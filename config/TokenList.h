// Number lists and numeric attributes of the XML configuration files.
//
// A value list is split at any character of kXmlDelimiters, so that {0x10, 0x20} and 1A;FF
// read alike; each token is a hexadecimal number kept as its low 16 bits. Numeric attributes
// (ids) detect their base from the text: decimal, 0x hexadecimal, or octal after a leading 0.
#pragma once

#include <stdint.h>

inline constexpr const char kXmlDelimiters[] = " ,;{}[]=\t\n\r";

// Size of the buffer an attribute value is copied into before it is split; a value of this
// many characters or more does not fit.
constexpr int kXmlValueBufferBytes = 3000;

// Splits a text in place, one token at a time (like strtok_r, without hidden state).
class TokenList {
public:
    TokenList(char* text, const char* delimiters = kXmlDelimiters);
    // The next token, or null when none is left.
    const char* Next();

private:
    char* mRest;
    const char* mDelimiters;
};

// A token read in base 16 (an optional 0x prefix; text after the digits is ignored; no digits
// give 0), kept as its low 16 bits.
int16_t HexToken(const char* token);

// An attribute read as an integer with base detection, kept as 32 bits.
int32_t IntegerAttr(const char* text);

// A decimal text read like atoi (leading blanks and a sign, trailing text ignored), kept as
// 32 bits whatever its size.
int32_t DecimalText(const char* text);
