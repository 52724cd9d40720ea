// The shipped library exports exactly its five functions and nothing else of its own. (That it
// is built for the machine the tests run on, every test that loads it shows.)
#include <gtest/gtest.h>

#include <stdio.h>

#include <set>
#include <string>

namespace {

// Defined symbols of the library's dynamic symbol table, as the dynamic loader sees them. The
// target's nm reads them (a cross build's library is not in the build machine's format).
std::set<std::string> DefinedDynamicSymbols(const char* path) {
    std::set<std::string> names;
    std::string cmd = std::string(ORLUNE_NM) + " -D --defined-only --format=just-symbols " + path;
    FILE* p = popen(cmd.c_str(), "r");
    if (p == nullptr) {
        return names;
    }
    char name[512];
    while (fscanf(p, "%511s", name) == 1) {
        names.insert(name);
    }
    pclose(p);
    return names;
}

TEST(ExportsTest, DynamicSymbolTableHoldsExactlyTheFiveFunctions) {
    const std::set<std::string> expected = {"GetOrluneInstance", "DeleteOrluneInstance",
                                            "CuttingEdgeFadeinoutInit", "ClearCachedBuffer",
                                            "CuttingEdgeProcess"};
    EXPECT_EQ(DefinedDynamicSymbols(ORLUNE_LIB_PATH), expected);
}

}  // namespace
