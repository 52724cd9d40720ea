// Bounds-checked memory and string functions with the call shapes the effect is written
// against (the C11 Annex K family as the handset's platform library offers it). On the host
// they are backed by libsafec; this header adapts the shapes where the two differ, so that
// product code never sees libsafec's own macros.
//
// Results: 0 (EOK) for success and non-zero for failure, except the print functions, which
// return the number of characters written or -1, and fscanf_s, which returns the number of
// fields converted (EOF at end of input).
#pragma once

#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>

#ifndef EOK
#define EOK 0
#endif

namespace safe_funcs {
int MemcpyS(void* dest, size_t destMax, const void* src, size_t count);
int MemsetS(void* dest, size_t destMax, int c, size_t count);
int StrcpyS(char* dest, size_t destMax, const char* src);
int StrncpyS(char* dest, size_t destMax, const char* src, size_t count);
int VsprintfS(char* dest, size_t destMax, const char* format, va_list ap);
int VsnprintfS(char* dest, size_t destMax, size_t count, const char* format, va_list ap);
int VfscanfS(FILE* stream, const char* format, va_list ap);
}  // namespace safe_funcs

inline int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
    return safe_funcs::MemcpyS(dest, destMax, src, count);
}
inline int memset_s(void* dest, size_t destMax, int c, size_t count) {
    return safe_funcs::MemsetS(dest, destMax, c, count);
}
inline int strcpy_s(char* dest, size_t destMax, const char* src) {
    return safe_funcs::StrcpyS(dest, destMax, src);
}
// Copies at most `count` characters and always terminates; fails when they do not fit.
inline int strncpy_s(char* dest, size_t destMax, const char* src, size_t count) {
    return safe_funcs::StrncpyS(dest, destMax, src, count);
}
// Fails (-1, dest emptied) when the text does not fit into destMax - 1 characters.
__attribute__((format(printf, 3, 4))) inline int sprintf_s(char* dest, size_t destMax,
                                                           const char* format, ...) {
    va_list ap;
    va_start(ap, format);
    int r = safe_funcs::VsprintfS(dest, destMax, format, ap);
    va_end(ap);
    return r;
}
// Writes at most `count` characters (and never more than destMax - 1); returns -1 when the
// text was cut or on a bad argument.
__attribute__((format(printf, 4, 5))) inline int snprintf_s(char* dest, size_t destMax,
                                                            size_t count, const char* format, ...) {
    va_list ap;
    va_start(ap, format);
    int r = safe_funcs::VsnprintfS(dest, destMax, count, format, ap);
    va_end(ap);
    return r;
}
// Scans like fscanf; every %s conversion takes its buffer and then the buffer's size
// (unsigned int). A word that does not fit fails the conversion.
inline int fscanf_s(FILE* stream, const char* format, ...) {
    va_list ap;
    va_start(ap, format);
    int r = safe_funcs::VfscanfS(stream, format, ap);
    va_end(ap);
    return r;
}
