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
    bool IsDelimiter(char c) const { return mDelimiter[static_cast<unsigned char>(c)]; }

    char* mRest;
    bool mDelimiter[256] = {};  // a table rather than strspn: files hold ~10^5 tokens
};

// A token read in base 16 exactly as strtol(token, nullptr, 16) reads it (leading blanks, a
// sign, an optional 0x prefix; text after the digits is ignored; no digits give 0; out of range
// saturates), kept as its low 16 bits.
int16_t HexToken(const char* token);

// Whether HexToken(token) keeps the whole number: it lies in -0x8000..0xFFFF, so that it is
// a 16-bit word written signed or unsigned.
bool HexTokenFits(const char* token);
// The first token of a value list (split as TokenList does, the text left unchanged) that
// does not fit, or null when all do.
const char* FirstUnfitToken(const char* text);

// An attribute read as an integer with base detection (like strtol with base 0). Returns false,
// leaving `value` alone, when the number does not fit 32 bits.
bool IntegerAttr(const char* text, int32_t* value);

// A decimal text read like atoi (leading blanks and a sign, trailing text ignored). Returns
// false, leaving `value` alone, when the number does not fit 32 bits.
bool DecimalText(const char* text, int32_t* value);

// Logs "<where> <what> out of range: <text>" (the text cut at 40 characters) for a refused
// number.
void LogOutOfRange(const char* where, const char* what, const char* text);
