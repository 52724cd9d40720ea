// The print and scan functions of safe_funcs.h, bounded here over the C library in both builds.
//
// Printing bounds vsnprintf itself: libsafec's own formatter differs from the C library's
// ("%g" prints 0.0001 as "0.000100000", large "%f" and "%a" go wrong) and its snprintf_s has no
// count argument. Scanning runs one conversion at a time and bounds every %s, %[ and %c by the
// size that follows its buffer: libsafec's fscanf_s passes the format to vfscanf unchanged and
// ignores the size arguments.
#include <safe_funcs.h>

#include <limits.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include <string>

namespace safe_funcs {

int VsprintfS(char* dest, size_t destMax, const char* format, va_list ap) {
    if (dest == nullptr || destMax == 0 || destMax > static_cast<size_t>(INT_MAX) ||
        format == nullptr) {
        return -1;
    }
    int n = vsnprintf(dest, destMax, format, ap);
    if (n < 0 || static_cast<size_t>(n) >= destMax) {
        dest[0] = '\0';
        return -1;
    }
    return n;
}

int VsnprintfS(char* dest, size_t destMax, size_t count, const char* format, va_list ap) {
    if (dest == nullptr || destMax == 0 || destMax > static_cast<size_t>(INT_MAX) ||
        format == nullptr) {
        return -1;
    }
    size_t limit = count < destMax - 1 ? count : destMax - 1;
    int n = vsnprintf(dest, limit + 1, format, ap);
    if (n < 0) {
        dest[0] = '\0';
        return -1;
    }
    if (static_cast<size_t>(n) > limit) {
        // Cut: by `count` the cut text stays; by the buffer's size nothing stays.
        if (count >= destMax) {
            dest[0] = '\0';
        }
        return -1;
    }
    return n;
}

namespace {

// Runs `pattern` (one conversion or none, then "%n") on the stream. Returns the fscanf result
// and sets *reached when the whole piece matched.
int ScanPiece(FILE* stream, const std::string& pattern, void* target, bool* reached) {
    int consumed = -1;
    std::string f = pattern + "%n";
    int r = target != nullptr ? fscanf(stream, f.c_str(), target, &consumed)
                              : fscanf(stream, f.c_str(), &consumed);
    *reached = consumed >= 0;
    return r;
}

// True when the next character would have continued the word that %s or %[set] just read.
bool WordContinues(FILE* stream, char conversion, const std::string& set) {
    std::string pattern = conversion == 's' ? std::string("%1[^ \t\n\v\f\r]") : "%1" + set;
    char next[2];
    if (fscanf(stream, pattern.c_str(), next) != 1) {
        return false;
    }
    ungetc(static_cast<unsigned char>(next[0]), stream);
    return true;
}

}  // namespace

int VfscanfS(FILE* stream, const char* format, va_list ap) {
    if (stream == nullptr || format == nullptr) {
        return EOF;
    }
    va_list args;
    va_copy(args, ap);
    int converted = 0;
    std::string literal;  // text before the next conversion
    const char* p = format;
    for (;;) {
        if (*p != '\0' && (*p != '%' || p[1] == '%')) {
            literal.append(p, *p == '%' ? 2 : 1);
            p += *p == '%' ? 2 : 1;
            continue;
        }
        bool reached = false;
        if (*p == '\0') {  // trailing literal text
            if (!literal.empty()) {
                ScanPiece(stream, literal, nullptr, &reached);
            }
            break;
        }
        // One conversion: %[*][width][length]conversion.
        ++p;
        bool suppress = *p == '*';
        p += suppress ? 1 : 0;
        size_t width = 0;
        bool hasWidth = false;
        while (*p >= '0' && *p <= '9') {
            width = width * 10 + static_cast<size_t>(*p++ - '0');
            hasWidth = true;
            if (width > 1000000) {
                va_end(args);
                return converted;
            }
        }
        const char* lengthStart = p;
        while (*p != '\0' && strchr("hlLqjzt", *p) != nullptr) {
            ++p;
        }
        std::string length(lengthStart, p);
        char conversion = *p;
        std::string set;
        if (conversion == '[') {
            const char* q = p + 1;
            q += *q == '^' ? 1 : 0;
            q += *q == ']' ? 1 : 0;
            q = strchr(q, ']');
            if (q == nullptr) {
                break;
            }
            set.assign(p, q + 1);
            p = q;
        }
        if (conversion == '\0' || conversion == 'n' ||
            strchr("diouxXaAeEfFgGpsc[", conversion) == nullptr) {
            break;  // malformed, %n, or not supported here: stop where we are
        }
        ++p;
        std::string pattern = literal + "%" + (suppress ? "*" : "");
        literal.clear();
        std::string tail = length + (set.empty() ? std::string(1, conversion) : set);
        bool isText = conversion == 's' || conversion == 'c' || conversion == '[';
        void* target = nullptr;
        size_t limit = 0;
        bool checkWord = false;
        if (suppress) {
            pattern += (hasWidth ? std::to_string(width) : "") + tail;
        } else if (isText) {
            if (!length.empty()) {
                break;  // wide characters are not supported
            }
            char* buf = va_arg(args, char*);
            unsigned size = va_arg(args, unsigned);
            size_t want = conversion == 'c' ? (hasWidth ? width : 1) : 0;
            if (buf == nullptr || size == 0 || (conversion == 'c' && size < want)) {
                if (buf != nullptr && size > 0) {
                    buf[0] = '\0';
                }
                break;
            }
            if (conversion == 'c') {
                limit = want;
            } else {
                limit = size - 1;
                checkWord = !(hasWidth && width <= limit);
                limit = checkWord ? limit : width;
                if (limit == 0) {  // one-byte buffer: no word fits
                    buf[0] = '\0';
                    break;
                }
            }
            pattern += std::to_string(limit) + tail;
            target = buf;
        } else {
            pattern += (hasWidth ? std::to_string(width) : "") + tail;
            target = va_arg(args, void*);
        }
        int r = ScanPiece(stream, pattern, target, &reached);
        if (r == EOF) {
            va_end(args);
            return converted > 0 ? converted : EOF;
        }
        if (!reached || (!suppress && r != 1)) {
            break;  // matching failure
        }
        if (checkWord && strlen(static_cast<char*>(target)) == limit &&
            WordContinues(stream, conversion, set)) {
            static_cast<char*>(target)[0] = '\0';
            break;  // the word does not fit
        }
        converted += suppress ? 0 : 1;
    }
    va_end(args);
    return converted;
}

}  // namespace safe_funcs
