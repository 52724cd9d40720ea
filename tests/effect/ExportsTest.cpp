// The shipped library is built for the machine the tests run on and exports exactly its five
// functions and nothing else of its own.
#include <gtest/gtest.h>

#include <elf.h>
#include <stdio.h>

#include <set>
#include <string>

namespace {

// Defined symbols of the library's dynamic symbol table, as the dynamic loader sees them. The
// target's nm reads them (a cross build's library is not in the build machine's format).
std::set<std::string> DefinedDynamicSymbols(const char* path) {
    std::set<std::string> names;
    std::string cmd = std::string(ORLUNE_NM) + " -D --defined-only " + path;
    FILE* p = popen(cmd.c_str(), "r");
    if (p == nullptr) {
        return names;
    }
    char line[512];
    while (fgets(line, sizeof(line), p) != nullptr) {
        char addr[64], type[8], name[400];
        if (sscanf(line, "%63s %7s %399s", addr, type, name) == 3) {
            names.insert(name);
        }
    }
    pclose(p);
    return names;
}

#if defined(__aarch64__)
constexpr int kTargetMachine = EM_AARCH64;
#elif defined(__x86_64__)
constexpr int kTargetMachine = EM_X86_64;
#else
#error "name the ELF machine of this target"
#endif

// This test program is compiled for the target; the library must be a 64-bit shared object of
// the same machine (an arm64 cross build that picked up a host compiler fails here).
TEST(ExportsTest, LibraryIsA64BitSharedObjectOfTheTargetMachine) {
    Elf64_Ehdr header{};
    FILE* f = fopen(ORLUNE_LIB_PATH, "rb");
    ASSERT_NE(f, nullptr);
    const size_t n = fread(&header, sizeof header, 1, f);
    fclose(f);
    ASSERT_EQ(n, 1u);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(header.e_ident), SELFMAG), ELFMAG);
    EXPECT_EQ(header.e_ident[EI_CLASS], ELFCLASS64);
    EXPECT_EQ(header.e_type, ET_DYN);
    EXPECT_EQ(header.e_machine, kTargetMachine);
}

TEST(ExportsTest, DynamicSymbolTableHoldsExactlyTheFiveFunctions) {
    const std::set<std::string> expected = {"GetOrluneInstance", "DeleteOrluneInstance",
                                            "CuttingEdgeFadeinoutInit", "ClearCachedBuffer",
                                            "CuttingEdgeProcess"};
    std::set<std::string> found = DefinedDynamicSymbols(ORLUNE_LIB_PATH);
    // The version node itself is listed by nm on some toolchains; it is not a symbol of ours.
    for (auto it = found.begin(); it != found.end();) {
        it = (it->rfind("VERS_", 0) == 0) ? found.erase(it) : std::next(it);
    }
    EXPECT_EQ(found, expected);
}

}  // namespace
