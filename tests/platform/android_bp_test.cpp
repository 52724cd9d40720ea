// Android.bp, which nothing here can build, kept in step with this build: the library module
// lists every product source that CMake compiles into the shipped library and every device
// implementation of the platform seam, and nothing else; every file the blueprint names exists;
// and it names nothing host-only (the host layer, the stand-ins, the host tools).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const std::string kLibraryModule = "liborlunemutilmobile7_1";
const char* const kHostOnly[] = {"platform/src", "standin/", "tools/"};

// The quoted strings of `text`, with // comments left out.
std::vector<std::string> Strings(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = line.substr(0, line.find("//"));
        std::istringstream pieces(line);  // every second piece between quotes is quoted
        int i = 0;
        for (std::string piece; std::getline(pieces, piece, '"'); ++i) {
            if (i % 2 == 1) {
                out.push_back(piece);
            }
        }
    }
    return out;
}

// What is wrong with `blueprint` against the sources the library must have, one line each.
// The library module runs from its name to the first line that is a lone "}".
std::vector<std::string> Problems(const std::string& blueprint,
                                  const std::set<std::string>& librarySources) {
    std::vector<std::string> problems;
    for (const std::string& s : Strings(blueprint)) {
        for (const char* prefix : kHostOnly) {
            if (s.rfind(prefix, 0) == 0) {
                problems.push_back("host-only: " + s);
            }
        }
        const fs::path ext = fs::path(s).extension();
        if ((ext == ".cpp" || ext == ".map") &&
            !fs::is_regular_file(fs::path(ORLUNE_SOURCE_DIR) / s)) {
            problems.push_back("missing: " + s);
        }
    }
    const size_t name = blueprint.find("name: \"" + kLibraryModule + "\"");
    if (name == std::string::npos) {
        return {"no module named " + kLibraryModule};
    }
    std::set<std::string> listed;
    for (const std::string& s :
         Strings(blueprint.substr(name, blueprint.find("\n}", name) - name))) {
        if (fs::path(s).extension() == ".cpp") {
            listed.insert(s);
        }
    }
    for (const std::string& s : librarySources) {
        if (listed.count(s) == 0) {
            problems.push_back("library misses " + s);
        }
    }
    for (const std::string& s : listed) {
        if (librarySources.count(s) == 0) {
            problems.push_back("library lists a non-product file: " + s);
        }
    }
    return problems;
}

// The product sources of this build (one per line, relative to the source folder), plus the
// device implementations of the platform seam, which only the device build compiles.
std::set<std::string> LibrarySources() {
    std::ifstream list(ORLUNE_PRODUCT_SOURCES);
    std::set<std::string> sources{std::istream_iterator<std::string>(list), {}};
    for (const char* dir : {"platform/device", "platform/common"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(ORLUNE_SOURCE_DIR) / dir)) {
            if (entry.path().extension() == ".cpp") {
                sources.insert(std::string(dir) + "/" + entry.path().filename().string());
            }
        }
    }
    return sources;
}

TEST(AndroidBp, MatchesTheProductSourcesOfThisBuild) {
    const std::set<std::string> sources = LibrarySources();
    ASSERT_GT(sources.size(), 30u);  // the list was generated
    ASSERT_EQ(sources.count("platform/device/device_fs.cpp"), 1u);
    std::ifstream file(fs::path(ORLUNE_SOURCE_DIR) / "Android.bp");
    const std::string bp{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(Problems(bp, sources), std::vector<std::string>{});
}

// The check itself, on a small blueprint with each kind of drift.
TEST(AndroidBp, ReportsEachKindOfDrift) {
    const std::string bp =
            "cc_library_shared {\n    name: \"liborlunemutilmobile7_1\",\n"
            "    srcs: [\"effect/Orlune.cpp\", \"platform/src/clock.cpp\"], // \"tools/x\"\n"
            "    local_include_dirs: [\"standin/include\"],\n"
            "    version_script: \"effect/none.map\",\n}\n"
            "cc_test {\n    srcs: [\"effect/SwapFade.cpp\"],\n}\n";
    EXPECT_EQ(Problems(bp, {"effect/Orlune.cpp", "effect/SwapFade.cpp"}),
              (std::vector<std::string>{
                      "host-only: platform/src/clock.cpp", "host-only: standin/include",
                      "missing: effect/none.map", "library misses effect/SwapFade.cpp",
                      "library lists a non-product file: platform/src/clock.cpp"}));
}

}  // namespace
