// The shipped library exports exactly its five functions and nothing else of its own.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <stdio.h>

#include <set>
#include <string>

#include "tests/support/HostEffect.h"

namespace {

// Defined symbols of the library's dynamic symbol table, as the dynamic loader sees them.
std::set<std::string> DefinedDynamicSymbols(const char* path) {
    std::set<std::string> names;
    std::string cmd = std::string("nm -D --defined-only ") + path;
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

TEST(ExportsTest, ExportsResolveWithUnmangledNames) {
    HostLibrary lib;
    ASSERT_TRUE(lib.Loaded()) << dlerror();
    for (const char* name :
         {"GetOrluneInstance", "DeleteOrluneInstance", "CuttingEdgeFadeinoutInit",
          "ClearCachedBuffer", "CuttingEdgeProcess"}) {
        EXPECT_NE(lib.Symbol(name), nullptr) << name;
    }
    EXPECT_EQ(lib.Symbol("_ZN6OrluneC1Ev"), nullptr);
}

}  // namespace
