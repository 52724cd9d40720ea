// The memory and string copies of safe_funcs.h on the host, over Debian's libsafec 3.7.1. The
// print and scan functions are the C library's, bounded in platform/common/safe_funcs_text.cpp.

// safe_funcs.h defines inline functions with libsafec's names; keep them out of the way of
// libsafec's declarations and macros in this file.
#define memcpy_s safe_funcs_inline_memcpy_s
#define memset_s safe_funcs_inline_memset_s
#define strcpy_s safe_funcs_inline_strcpy_s
#define strncpy_s safe_funcs_inline_strncpy_s
#define sprintf_s safe_funcs_inline_sprintf_s
#define snprintf_s safe_funcs_inline_snprintf_s
#define fscanf_s safe_funcs_inline_fscanf_s
#include <safe_funcs.h>
#undef memcpy_s
#undef memset_s
#undef strcpy_s
#undef strncpy_s
#undef sprintf_s
#undef snprintf_s
#undef fscanf_s

#include <safe_lib.h>
#include <safe_mem_lib.h>
#include <safe_str_lib.h>

#include <string.h>

namespace safe_funcs {

// The pop eliminator copies three times per algorithm frame on the audio thread, and
// libsafec's byte-wise copy shows in profiles: the constraints are checked here as libsafec
// checks them, and the copy itself is the C library's.
int MemcpyS(void* dest, size_t destMax, const void* src, size_t count) {
    if (dest == nullptr || src == nullptr || destMax == 0 || destMax > RSIZE_MAX_MEM ||
        count > destMax) {
        return memcpy_s(dest, destMax, src, count);  // libsafec reports the violation
    }
    const char* d = static_cast<const char*>(dest);
    const char* s = static_cast<const char*>(src);
    if ((d < s && d + count > s) || (s < d && s + count > d)) {
        return memcpy_s(dest, destMax, src, count);
    }
    memcpy(dest, src, count);
    return EOK;
}

int MemsetS(void* dest, size_t destMax, int c, size_t count) {
    return memset_s(dest, destMax, c, count);
}

int StrcpyS(char* dest, size_t destMax, const char* src) {
    return strcpy_s(dest, destMax, src);
}

int StrncpyS(char* dest, size_t destMax, const char* src, size_t count) {
    return strncpy_s(dest, destMax, src, count);
}

}  // namespace safe_funcs
